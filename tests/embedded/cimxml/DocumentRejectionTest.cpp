// Which documents get no reply but a status and a CIMError.
#include "FakeOperations.h"
#include "Requests.h"
#include "cimxml/Document.h"
#include "limits/Limits.h"

#include <gtest/gtest.h>

namespace embedded::cimxml::test {
namespace {

const std::string prolog = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n";
const std::string notWellFormed = "400 request-not-well-formed";
const std::string notValid = "400 request-not-valid";
const std::string mismatch = "400 header-mismatch";

// The request document with the first `from` in it replaced by `to`.
std::string changed(const std::string& from, const std::string& to) {
    std::string body =
        request("EnumerateInstanceNames", parameter("ClassName", "<CLASSNAME NAME=\"X\"/>"));
    const std::size_t at = body.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return body.replace(at, from.size(), to);
}

std::string rejected(const std::string& body) {
    return rejection(body, headersFor("EnumerateInstanceNames"));
}

TEST(DocumentElement, ThatIsNotThereHasNothing) {
    const Document document(prolog + "<A/>");
    const Element none = document.root().child("B");
    EXPECT_FALSE(none);
    EXPECT_EQ(none.name(), "");
    EXPECT_EQ(none.text(), "");
    EXPECT_FALSE(none.isMixed());
    EXPECT_FALSE(none.attribute("NAME"));
    EXPECT_FALSE(none.nextSibling());
}

TEST(DocumentRejection, LetsAGoodRequestPass) {
    EXPECT_EQ(rejected(changed("utf-8", "UTF-8")), "answered");
}

struct Row {
    const char* name;
    std::string from;
    std::string to;
    std::string expected;
};

class ChangedDocument : public testing::TestWithParam<Row> {};

TEST_P(ChangedDocument, IsJudgedBy) {
    EXPECT_EQ(rejected(changed(GetParam().from, GetParam().to)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rejection, ChangedDocument,
    testing::Values(
        Row{"DtdVersionOfAnotherMajor", "DTDVERSION=\"2.0\"", "DTDVERSION=\"3.0\"",
            "501 unsupported-dtd-version"},
        Row{"DtdVersionThatIsNone", "DTDVERSION=\"2.0\"", "DTDVERSION=\"2\"",
            "501 unsupported-dtd-version"},
        Row{"LaterMinorDtdVersion", "DTDVERSION=\"2.0\"", "DTDVERSION=\"2.4\"", "answered"},
        Row{"NoDtdVersion", " DTDVERSION=\"2.0\"", "", notValid},
        Row{"CimVersionOfAnotherMajor", "CIMVERSION=\"2.0\"", "CIMVERSION=\"1.0\"",
            "501 unsupported-cim-version"},
        Row{"LaterMinorCimVersion", "CIMVERSION=\"2.0\"", "CIMVERSION=\"2.8\"", "answered"},
        Row{"CimVersionLikeTwo", "CIMVERSION=\"2.0\"", "CIMVERSION=\"20.0\"",
            "501 unsupported-cim-version"},
        Row{"NoCimVersion", "CIMVERSION=\"2.0\" ", "", notValid},
        Row{"OtherProtocolVersionThanInTheHeader", "PROTOCOLVERSION=\"1.0\"",
            "PROTOCOLVERSION=\"1.1\"", mismatch},
        Row{"NoProtocolVersion", " PROTOCOLVERSION=\"1.0\"", "", notValid},
        Row{"NoMessageId", "ID=\"1001\" ", "", notValid},
        Row{"OtherMethodThanInTheHeader", "\"EnumerateInstanceNames\"", "\"GetClass\"", mismatch},
        Row{"MethodInOtherCase", "\"EnumerateInstanceNames\"", "\"enumerateinstancenames\"",
            "answered"},
        Row{"IllegalMethodName", "\"EnumerateInstanceNames\"", "\"Enumerate Instances\"", notValid},
        Row{"OtherNamespaceThanInTheHeader", "NAME=\"cimv2\"", "NAME=\"cimv3\"", mismatch},
        Row{"NamespaceInOtherCase", "NAME=\"cimv2\"", "NAME=\"CIMV2\"", "answered"},
        Row{"IllegalNamespaceName", "NAME=\"cimv2\"", "NAME=\"cim v2\"", notValid},
        Row{"NoNamespace", "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"></NAMESPACE>", "",
            notValid},
        Row{"IllegalClassName", "NAME=\"X\"", "NAME=\"1X\"", notValid},
        Row{"EmptyClassName", "NAME=\"X\"", "NAME=\"\"", notValid},
        Row{"UnknownElement", "<CLASSNAME NAME=\"X\"/>", "<KLASSNAME NAME=\"X\"/>", notValid},
        Row{"KnownElementInTheWrongPlace", "<CLASSNAME NAME=\"X\"/>", "<HOST>X</HOST>", notValid},
        Row{"ParameterOfTheWrongKind", "<CLASSNAME NAME=\"X\"/>", "<VALUE>X</VALUE>", notValid},
        Row{"UnknownAttribute", "NAME=\"X\"", "NAME=\"X\" COLOR=\"red\"", notValid},
        Row{"AttributeOfXmlItself", "NAME=\"X\"", "NAME=\"X\" xml:lang=\"en\"", "answered"},
        Row{"TwoValuesOfOneParameter", "<CLASSNAME NAME=\"X\"/>",
            "<CLASSNAME NAME=\"X\"/><CLASSNAME NAME=\"Y\"/>", notValid},
        Row{"TextBetweenElements", "<SIMPLEREQ>", "<SIMPLEREQ>text", notValid},
        Row{"CdataBetweenElements", "<SIMPLEREQ>", "<SIMPLEREQ><![CDATA[x]]>", notValid},
        Row{"BlanksBetweenElements", "<SIMPLEREQ>", "<SIMPLEREQ> \t\r\n", "answered"},
        Row{"CommentBetweenElements", "<SIMPLEREQ>", "<!-- a < b & c --><SIMPLEREQ>", "answered"},
        Row{"ProcessingInstruction", "<SIMPLEREQ>", "<SIMPLEREQ><?style sheet?>", "answered"},
        Row{"CommentAfterTheRoot", "</CIM>", "</CIM><!-- end -->\n", "answered"},
        Row{"DocumentTypeByName", "<CIM ", "<!DOCTYPE CIM SYSTEM \"CIM_DTD_V20.dtd\">\n<CIM ",
            "answered"},
        Row{"DocumentTypeWithDeclarations", "<CIM ", "<!DOCTYPE CIM [<!ELEMENT CIM ANY>]><CIM ",
            notValid},
        Row{"DocumentTypeAfterTheRoot", "</CIM>", "</CIM><!DOCTYPE CIM>", notWellFormed},
        Row{"TwoDocumentTypes", "<CIM ", "<!DOCTYPE CIM><!DOCTYPE CIM><CIM ", notWellFormed},
        Row{"OtherXmlVersion", "version=\"1.0\"", "version=\"1.1\"", notValid},
        Row{"OtherEncoding", "encoding=\"utf-8\"", "encoding=\"iso-8859-1\"", notValid},
        Row{"NoEncoding", " encoding=\"utf-8\"", "", "answered"},
        Row{"PrologInSingleQuotes", "version=\"1.0\"", "version='1.0'", "answered"},
        Row{"SecondXmlDeclaration", "<CIM ", "<?xml version=\"1.0\"?><CIM ", notWellFormed}),
    [](const auto& row) { return row.param.name; });

TEST(DocumentRejection, RejectsEmptyDocuments) {
    EXPECT_EQ(rejected(""), notValid);
    EXPECT_EQ(rejected(prolog), notValid);
    EXPECT_EQ(rejected(" "), notValid);
}

TEST(DocumentRejection, NamesTheFirstOfMoreUnknownElementsThanAreRead) {
    std::string unknown;
    for (std::size_t i = 0; i <= limits::unknownElements; ++i)
        unknown += "<A" + std::to_string(i) + "/>";
    const auto with = [&](const std::string& version) {
        const std::string body = changed("<SIMPLEREQ>", unknown + "<SIMPLEREQ>");
        return std::string(body).replace(body.find("2.0"), 3, version);
    };
    EXPECT_EQ(rejected(with("2.0")), notValid);
    EXPECT_EQ(rejected(with("3.0")), "501 unsupported-cim-version");
    try {
        FakeOperations operations;
        answer(with("2.0"), headersFor("EnumerateInstanceNames"), {}, operations,
               operations.enumerations);
        FAIL();
    } catch (const RequestRejected& reason) {
        EXPECT_STREQ(reason.what(), "unknown element A0");
    }
}

TEST(DocumentRejection, WantsTheXmlDeclarationFirst) {
    const std::string good = changed("X", "X");
    const std::string bare = good.substr(prolog.size());
    EXPECT_EQ(rejected(bare), notValid);
    EXPECT_EQ(rejected("\n" + good), notValid);
    EXPECT_EQ(rejected("<?xmlversion=\"1.0\"?>" + bare), notValid);
    EXPECT_EQ(rejected("\xEF\xBB\xBF" + good), "answered");
}

TEST(DocumentRejection, KnowsOneProtocol) {
    Headers headers = headersFor("EnumerateInstanceNames");
    const auto judge = [&](const std::string& version) {
        headers.protocolVersion = version;
        return rejection(changed("PROTOCOLVERSION=\"1.0\"", "PROTOCOLVERSION=\"" + version + "\""),
                         headers);
    };
    EXPECT_EQ(judge("1.4"), "answered");
    EXPECT_EQ(judge("2.0"), "501 unsupported-protocol-version");
}

TEST(DocumentRejection, ComparesTheHeaderFields) {
    const std::string body = changed("X", "X");
    EXPECT_EQ(rejection(body, {"EnumerateInstanceNames", "/root/cimv2", "1.0"}), "answered");
    EXPECT_EQ(rejection(body, {"EnumerateInstanceNames", "ROOT/cimv2", "1.0"}), "answered");
    EXPECT_EQ(rejection(body, {"EnumerateInstanceNames", "root", "1.0"}), mismatch);
    EXPECT_EQ(rejection(body, {"EnumerateInstanceNames", "", "1.0"}), mismatch);
    EXPECT_EQ(rejection(body, {"EnumerateInstances", "root/cimv2", "1.0"}), mismatch);
    EXPECT_EQ(rejection(body, {"", "root/cimv2", "1.0"}), mismatch);
    EXPECT_EQ(rejection(body, {"EnumerateInstanceNames", "root/cimv2", "1.1"}), mismatch);
}

TEST(DocumentRejection, DeclinesExportAndResponseMessages) {
    for (const char* element : {"SIMPLEEXPREQ", "SIMPLERSP", "MULTIEXPREQ"}) {
        const std::string name = element;
        EXPECT_EQ(rejected(prolog +
                           "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
                           "PROTOCOLVERSION=\"1.0\"><" +
                           name + "></" + name + "></MESSAGE></CIM>"),
                  notValid);
    }
}

} // namespace
} // namespace embedded::cimxml::test
