// Which elements a request may hold (DSP0203).
#include "cimxml/ElementRules.h"

#include "cimxml/Message.h"

#include <gtest/gtest.h>

namespace embedded::cimxml {
namespace {

std::string judge(const std::string& element) {
    const Document document("<?xml version=\"1.0\"?>" + element);
    try {
        checkElement(document.root());
        return "good";
    } catch (const RequestRejected& rejected) {
        return rejected.cimError();
    }
}

const std::string space = "<LOCALNAMESPACEPATH><NAMESPACE NAME='root'/></LOCALNAMESPACEPATH>";
const std::string fullSpace = "<NAMESPACEPATH><HOST>h</HOST>" + space + "</NAMESPACEPATH>";
const std::string name = "<INSTANCENAME CLASSNAME='X'/>";
const std::string className = "<CLASSNAME NAME='X'/>";
const std::string reference = "<VALUE.REFERENCE>" + name + "</VALUE.REFERENCE>";
const std::string qualifier = "<QUALIFIER NAME='Q' TYPE='string'/>";
const std::string property = "<PROPERTY NAME='p' TYPE='string'/>";
const std::string scope = "<SCOPE CLASS='true'/>";

std::string in(const std::string& element, const std::string& content) {
    return "<" + element + ">" + content + "</" + element.substr(0, element.find(' ')) + ">";
}

TEST(ElementRules, AcceptWhatIsDeclared) {
    for (const std::string& element :
         {in("LOCALINSTANCEPATH", space + name), in("INSTANCEPATH", fullSpace + name),
          in("LOCALCLASSPATH", space + className), in("CLASSPATH", fullSpace + className),
          in("INSTANCENAME CLASSNAME='X'", "<KEYVALUE>1</KEYVALUE>"),
          in("INSTANCENAME CLASSNAME='X'", reference),
          in("INSTANCENAME CLASSNAME='X'", "<KEYBINDING NAME='a'><KEYVALUE/></KEYBINDING>"
                                           "<KEYBINDING NAME='b'>" +
                                               reference + "</KEYBINDING>"),
          in("VALUE.ARRAY", ""), in("VALUE.ARRAY", "<VALUE/><VALUE.NULL/><VALUE/>"),
          in("VALUE.REFARRAY", reference + "<VALUE.NULL/>"),
          in("INSTANCE CLASSNAME='X'", qualifier + qualifier + property),
          in("PROPERTY NAME='p' TYPE='string'", qualifier + "<VALUE/>"),
          in("CLASS NAME='C' SUPERCLASS='S'",
             qualifier + property + "<METHOD NAME='m' TYPE='string'>" + qualifier +
                 "<PARAMETER.REFERENCE NAME='r'/><PARAMETER NAME='p' TYPE='string'/>"
                 "<PARAMETER.ARRAY NAME='a' TYPE='string' ARRAYSIZE='2'/>"
                 "<PARAMETER.REFARRAY NAME='f'>" +
                 qualifier + "</PARAMETER.REFARRAY></METHOD>"),
          in("QUALIFIER.DECLARATION NAME='Q' TYPE='string' ISARRAY='true'",
             scope + "<VALUE.ARRAY/>"),
          in("SIMPLEREQ", "<CORRELATOR NAME='c' TYPE='string'><VALUE/></CORRELATOR>"
                          "<IMETHODCALL NAME='m'>" +
                              space + "</IMETHODCALL>")})
        EXPECT_EQ(judge(element), "good") << element;
}

TEST(ElementRules, RejectWhatIsMissing) {
    for (const std::string& element : {in("CIM CIMVERSION='2.0' DTDVERSION='2.0'", ""),
                                       in("MESSAGE ID='1' PROTOCOLVERSION='1.0'", ""),
                                       in("SIMPLEREQ", ""),
                                       in("IMETHODCALL NAME='m'", ""),
                                       in("METHODCALL NAME='m'", ""),
                                       in("LOCALNAMESPACEPATH", ""),
                                       in("NAMESPACEPATH", space),
                                       in("NAMESPACEPATH", "<HOST>h</HOST>"),
                                       in("LOCALINSTANCEPATH", space),
                                       in("INSTANCEPATH", fullSpace),
                                       in("INSTANCEPATH", name),
                                       in("CLASSPATH", fullSpace),
                                       in("KEYBINDING NAME='a'", ""),
                                       in("VALUE.REFERENCE", ""),
                                       in("VALUE.NAMEDINSTANCE", name),
                                       in("CORRELATOR NAME='c' TYPE='string'", ""),
                                       std::string("<CLASSNAME/>"),
                                       std::string("<NAMESPACE/>"),
                                       std::string("<INSTANCENAME/>"),
                                       std::string("<INSTANCE/>"),
                                       std::string("<PROPERTY NAME='p'/>"),
                                       std::string("<QUALIFIER TYPE='string'/>")})
        EXPECT_EQ(judge(element), "request-not-valid") << element;
}

TEST(ElementRules, RejectWhatHasNoPlace) {
    for (const std::string& element :
         {in("LOCALINSTANCEPATH", name + space),
          in("INSTANCENAME CLASSNAME='X'", "<KEYVALUE/><KEYVALUE/>"),
          in("INSTANCENAME CLASSNAME='X'", "<KEYVALUE/>" + reference),
          in("INSTANCENAME CLASSNAME='X'", "<KEYBINDING NAME='a'><KEYVALUE/></KEYBINDING>"
                                           "<KEYVALUE/>"),
          in("KEYBINDING NAME='a'", "<KEYVALUE/><KEYVALUE/>"), in("VALUE.REFERENCE", name + name),
          in("VALUE", "<VALUE/>"), in("VALUE.NULL", "text"), in("CLASSNAME NAME='X'", name),
          in("INSTANCE CLASSNAME='X'", property + qualifier), in("VALUE.ARRAY", reference),
          in("QUALIFIER.DECLARATION NAME='Q' TYPE='string'", "<VALUE/>" + scope),
          std::string("<SCOPE CLASS='true' EVERYTHING='true'/>"),
          std::string("<VALUE.OBJECTWITHPATH/>"), std::string("<class NAME='C'/>")})
        EXPECT_EQ(judge(element), "request-not-valid") << element;
}

TEST(ElementRules, SayWhatIsWrong) {
    const Document document("<?xml version=\"1.0\"?><VALUE.NAMEDINSTANCE/>");
    try {
        checkElement(document.root());
        FAIL();
    } catch (const RequestRejected& rejected) {
        EXPECT_STREQ(rejected.what(), "missing or misplaced elements in VALUE.NAMEDINSTANCE");
    }
}

TEST(ElementText, IsAllOfItsPieces) {
    const Document document(
        "<?xml version=\"1.0\"?><VALUE> a<!-- b -->c<![CDATA[<d>]]>&amp; </VALUE>");
    EXPECT_EQ(document.root().text(), " ac<d>& ");
}

} // namespace
} // namespace embedded::cimxml
