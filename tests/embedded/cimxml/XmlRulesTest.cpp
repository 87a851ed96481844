// What is an XML document (XML 1.0) and what is not.
#include "cimxml/Document.h"
#include "cimxml/Message.h"
#include "limits/Limits.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <future>
#include <string>
#include <vector>

namespace embedded::cimxml {
namespace {

std::string judgeWhole(const std::string& text) {
    try {
        const Document document(text);
        return "good";
    } catch (const RequestRejected& rejected) {
        return rejected.cimError();
    }
}

std::string judge(const std::string& afterDeclaration) {
    return judgeWhole("<?xml version=\"1.0\"?>" + afterDeclaration);
}

std::string nested(std::size_t depth) {
    std::string body;
    for (std::size_t i = 0; i < depth; ++i)
        body += "<a>";
    for (std::size_t i = 0; i < depth; ++i)
        body += "</a>";
    return body;
}

TEST(XmlRules, AcceptWhatXmlAllows) {
    for (const char* body :
         {"<a/>", "<a />", "<a></a >", "\n<a b='x' c = \"y\"/>\n", "<a b='&quot;\"' c=\"'>]]>\"/>",
          "<a>x &amp; &lt;&gt;&quot;&apos; &#65;&#x41;&#x10FFFF;</a>",
          "<a><![CDATA[<&]]]]><![CDATA[>]]></a>", "<!----><a><!-- - --></a><?p?>", "<a:b-c.d_e/>",
          "<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</a>", "<\xC3\xA9/>"})
        EXPECT_EQ(judge(body), "good") << body;
}

TEST(XmlRules, RejectWhatIsNotWellFormed) {
    for (const char* body : {"<a>",
                             "</a>",
                             "<a></b>",
                             "<a><b></a></b>",
                             "<a/><b/>",
                             "<a/>text",
                             "text<a/>",
                             "<a/><![CDATA[]]>",
                             "<a b='1' b='2'/>",
                             "<a b='1'c='2'/>",
                             "<a b=1/>",
                             "<a b/>",
                             "<a b='<'/>",
                             "<a b='x/>",
                             "<a b='&x;'/>",
                             "<a =''/>",
                             "< a/>",
                             "<1/>",
                             "<a",
                             "<a/",
                             "<",
                             "<a>&</a>",
                             "<a>&amp</a>",
                             "<a>&nbsp;</a>",
                             "<a>&;</a>",
                             "<a>&#;</a>",
                             "<a>&#x;</a>",
                             "<a>&#-5;</a>",
                             "<a>&#0;</a>",
                             "<a>&#1;</a>",
                             "<a>&#xD800;</a>",
                             "<a>&#xFFFF;</a>",
                             "<a>&#x110000;</a>",
                             "<a>&#99999999999;</a>",
                             "<a>]]></a>",
                             "<a>\x01</a>",
                             "<a>\x1F</a>",
                             "<a>\xEF\xBF\xBF</a>",
                             "<!-- -- --><a/>",
                             "<!-- ---><a/>",
                             "<!-- <a/>",
                             "<a><![CDATA[</a>",
                             "<?xml version='1.0'?><a/>",
                             "<?XML?><a/>",
                             "<?p <a/>",
                             "<!ELEMENT a ANY><a/>",
                             "<!DOCTYPE a <a/>",
                             "<!DOCTYPE a"})
        EXPECT_EQ(judge(body), "request-not-well-formed") << body;
}

TEST(XmlRules, RejectBytesThatAreNotUtf8) {
    for (const char* bytes :
         {"\x80", "\xBF", "\xC3", "\xC3(", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xE0\x9F\xBF",
          "\xE2\x82", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF",
          "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFE", "\xFF"}) {
        EXPECT_EQ(judge("<a>" + std::string(bytes) + "</a>"), "request-not-valid");
        EXPECT_EQ(judge("<a/>" + std::string(bytes)), "request-not-valid");
    }
}

TEST(XmlRules, RejectBytesThatNoDocumentHoldsWhereverTheyAre) {
    const std::string nul(1, '\0');
    for (const std::string& body : std::vector<std::string>{
             "<a>" + nul + "</a>", "<a" + nul + "/>", "<a b='" + nul + "'/>", "<a/>" + nul,
             "<!--" + nul + "--><a/>", "</b>\x01", nested(limits::depth + 1) + "\x1F"}) {
        EXPECT_EQ(judge(body), "request-not-well-formed") << body;
        EXPECT_EQ(judge(body + "\x80"), "request-not-well-formed") << body;
        EXPECT_EQ(judge("\x80" + body), "request-not-valid") << body;
    }
    EXPECT_EQ(judgeWhole("\x01<a/>"), "request-not-well-formed");
    EXPECT_EQ(judgeWhole("\x80<a/>"), "request-not-valid");
}

TEST(XmlRules, TakeNoOtherEncoding) {
    const std::string text = "<?xml version=\"1.0\"?><a/>";
    std::string littleEndian;
    std::string bigEndian;
    for (const char c : text) {
        littleEndian.append(1, c).append(1, '\0');
        bigEndian.append(1, '\0').append(1, c);
    }
    for (const std::string& document : {littleEndian, bigEndian})
        EXPECT_EQ(judgeWhole(document), "request-not-well-formed"); // of zeros
    EXPECT_EQ(judgeWhole("\xFF\xFE" + littleEndian), "request-not-valid");
    EXPECT_EQ(judgeWhole("\xFE\xFF" + bigEndian), "request-not-valid");
    for (const char* name : {"UTF-16", "US-ASCII", "ISO-8859-1", "utf8", "x"})
        EXPECT_EQ(judgeWhole("<?xml version='1.0' encoding='" + std::string(name) + "'?><a/>"),
                  "request-not-valid")
            << name;
    EXPECT_EQ(judgeWhole("<?xml version='1.0' encoding='uTf-8'?><a/>"), "good");
}

TEST(XmlRules, WantTheDeclarationFirst) {
    for (const char* document : {"", "<a/>", " <?xml version='1.0'?><a/>", "<?xml", "<?xmlx ?><a/>",
                                 "\xEF\xBB\xBF", "\xEF\xBB\xBF<a/>"})
        EXPECT_EQ(judgeWhole(document), "request-not-valid") << document;
    EXPECT_EQ(judgeWhole("<?xml "), "request-not-well-formed");
    EXPECT_EQ(judgeWhole("\xEF\xBB\xBF<?xml version='1.0'?><a/>"), "good");
}

TEST(XmlRules, AreForAnyDepth) { EXPECT_EQ(judge(nested(1000000)), "request-not-valid"); }

TEST(XmlRules, BoundNoLengths) {
    const std::string longest(1000000, 'x');
    EXPECT_EQ(judge("<" + longest + " " + longest + "='" + longest + "'>" + longest + "</" +
                    longest + ">"),
              "good");
}

TEST(XmlRules, ExpandNoEntities) {
    std::string declarations = "<!ENTITY l0 \"lol\">";
    for (int i = 1; i < 10; ++i) {
        const std::string inner = "&l" + std::to_string(i - 1) + ";";
        declarations += "<!ENTITY l" + std::to_string(i) + " \"" + inner + inner + inner + "\">";
    }
    EXPECT_EQ(judge("<!DOCTYPE a [" + declarations + "]><a>&l9;</a>"), "request-not-valid");
    EXPECT_EQ(judge("<!DOCTYPE a SYSTEM \"file:///etc/passwd\"><a>&x;</a>"),
              "request-not-well-formed");
    EXPECT_EQ(judge("<!DOCTYPE a [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><a>&x;</a>"),
              "request-not-valid");
}

TEST(XmlRules, TakeNoEntityForDeclaredElsewhere) {
    const std::string type = "<!DOCTYPE a SYSTEM 'a.dtd'>";
    EXPECT_EQ(judge(type + "<a b='&x;'/>"), "request-not-well-formed");
    EXPECT_EQ(judge(type + "<a b='&lt;&x;'/>"), "request-not-well-formed");
    EXPECT_EQ(judge(type + "<a><b c=\"&ltx;\">text</b></a>"), "request-not-well-formed");
    EXPECT_EQ(judge(type + "<a>&x;</a>"), "request-not-well-formed");
    EXPECT_EQ(judge(type + "<a b='&lt;&gt;&amp;&quot;&apos;&#65;&#x41;'>&amp;</a>"), "good");
}

TEST(XmlRules, HoldForEachDocumentAfterAnyOther) {
    const std::string large = "<a b='" + std::string(1000000, 'x') + "'/>";
    for (const std::string& other :
         {std::string("<a><b"), std::string("<!DOCTYPE a SYSTEM 'x'><a/>"),
          nested(limits::depth + 1), large, large + "<"}) {
        judge(other);
        EXPECT_EQ(judge("<a>&x;</a>"), "request-not-well-formed");
        judge(other);
        EXPECT_EQ(judge("<a b='x'>&lt;</a>"), "good");
    }
}

TEST(XmlRules, OfSeveralThreadsDoNotMeet) {
    const auto all = [] {
        for (int round = 0; round < 5000; ++round) {
            const std::string name = "n" + std::to_string(round);
            if (judge("<" + name + ">&lt;</" + name + ">") != "good" ||
                judge("<" + name + ">") != "request-not-well-formed")
                return false;
        }
        return true;
    };
    auto other = std::async(std::launch::async, all);
    EXPECT_TRUE(all());
    EXPECT_TRUE(other.get());
}

// What malloc has given out and not got back; nothing where another one stands in for it.
std::size_t memoryInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

TEST(XmlRules, KeepNoMemoryOfALongDocument) {
    std::string attributes;
    for (int i = 0; i < 100000; ++i)
        attributes += " a" + std::to_string(i) + "=''";
    const std::string body = "<a" + attributes + "/>";
    judge("<a/>"); // from now on there is a parser of this thread
    const std::size_t before = memoryInUse();
    EXPECT_EQ(judge(body), "request-not-valid");
    EXPECT_EQ(judge("<a>" + std::string(8000000, 'x') + "</a>"), "good");
    EXPECT_LT(memoryInUse(), before + 100000);
}

TEST(Elements, HaveTheirNamesAttributesTextAndChildren) {
    const Document document("<?xml version='1.0'?><CLASS x='1' y=' &lt;\n2'>\n<VALUE>one</VALUE>\n"
                            "<HOST/><VALUE>t&amp;<!-- -->\r\nwo</VALUE></CLASS>");
    const Element root = document.root();
    EXPECT_EQ(root.name(), "CLASS");
    EXPECT_EQ(root.text(), "");
    EXPECT_FALSE(root.isMixed());
    EXPECT_EQ(root.attribute("x").value, "1");
    EXPECT_EQ(root.attribute("y").value, " < 2");
    EXPECT_FALSE(root.attribute("z"));
    std::string seen;
    for (const Element& child : root.children())
        seen.append(child.name()).append("=").append(child.text()).append(";");
    for (const Element& child : root.children("VALUE"))
        seen.append(child.text()).append(";");
    EXPECT_EQ(seen, "VALUE=one;HOST=;VALUE=t&\nwo;one;t&\nwo;");
    EXPECT_EQ(root.child("HOST").nextSibling().text(), "t&\nwo");
    EXPECT_FALSE(root.child("d"));
    EXPECT_FALSE(root.child("d").child("e"));
    EXPECT_EQ(root.child("d").attribute("f").value, "");
}

TEST(Elements, BehindOneThatNoRequestHasAreReadAndNotKept) {
    const Document document("<?xml version='1.0'?><CIM><HOST>h</HOST><a x='1'>t<HOST/></a>"
                            "<HOST>left</HOST>text</CIM>");
    std::string seen;
    for (const Element& child : document.root().children())
        seen.append(child.name()).append(";");
    EXPECT_EQ(seen, "HOST;a;");
    EXPECT_TRUE(document.root().isMixed()) << "which is found before its children are looked at";
    std::string open = "<CIM>";
    for (std::size_t i = 0; i < limits::unknownElements; ++i)
        open += "<a/>";
    EXPECT_EQ(judge(open + "</CIM>"), "good");
    EXPECT_EQ(judge(open + "&b;</CIM>"), "request-not-well-formed");
    EXPECT_EQ(judge(open + "<HOST"), "request-not-well-formed");
    EXPECT_EQ(judge(open + "<a/></CIM>"), "good");
    EXPECT_EQ(judge(open + "<a/><HOST"), "good") << "one more, and nobody reads on";
}

TEST(Elements, AreMixedWithTextOnAnySideOfAChild) {
    for (const char* content :
         {"x<b/>", "<b/>x", "<b/> <b/>x<b/>", "<![CDATA[x]]><b/>", "&amp;<b/>"}) {
        const Document document("<?xml version='1.0'?><a>" + std::string(content) + "</a>");
        EXPECT_TRUE(document.root().isMixed()) << content;
    }
}

TEST(XmlRules, SayWhere) {
    try {
        const Document document("<?xml version=\"1.0\"?><a>&x;</a>");
        FAIL();
    } catch (const RequestRejected& rejected) {
        EXPECT_STREQ(rejected.what(), "unknown entity or character reference at byte 24");
    }
}

} // namespace
} // namespace embedded::cimxml
