// What is an XML document (XML 1.0) and what is not.
#include "cimxml/Message.h"
#include "cimxml/WellFormed.h"

#include <gtest/gtest.h>

namespace embedded::cimxml {
namespace {

std::string judge(const std::string& afterDeclaration) {
    try {
        checkWellFormed("<?xml version=\"1.0\"?>" + afterDeclaration);
        return "good";
    } catch (const RequestRejected& rejected) {
        return rejected.cimError();
    }
}

std::string nested(std::size_t depth) {
    std::string body;
    for (std::size_t i = 0; i < depth; ++i) {
        body += "<a>";
    }
    for (std::size_t i = 0; i < depth; ++i) {
        body += "</a>";
    }
    return body;
}

TEST(XmlRules, AcceptWhatXmlAllows) {
    for (const char* body :
         {"<a/>", "<a />", "<a></a >", "\n<a b='x' c = \"y\"/>\n", "<a b='&quot;\"' c=\"'>]]>\"/>",
          "<a>x &amp; &lt;&gt;&quot;&apos; &#65;&#x41;&#x10FFFF;</a>",
          "<a><![CDATA[<&]]]]><![CDATA[>]]></a>", "<!----><a><!-- - --></a><?p?>", "<a:b-c.d_e/>",
          "<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</a>", "<\xC3\xA9/>"}) {
        EXPECT_EQ(judge(body), "good") << body;
    }
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
                             "<!DOCTYPE a"}) {
        EXPECT_EQ(judge(body), "request-not-well-formed") << body;
    }
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

TEST(XmlRules, RejectANulByte) {
    EXPECT_EQ(judge(std::string("<a>\0</a>", 8)), "request-not-well-formed");
}

TEST(XmlRules, BoundTheDepth) {
    EXPECT_EQ(judge(nested(maximumDepth)), "good");
    EXPECT_EQ(judge(nested(maximumDepth + 1)), "request-not-valid");
    EXPECT_EQ(judge(nested(1000000)), "request-not-valid");
}

TEST(XmlRules, BoundTheAttributes) {
    std::string attributes;
    for (std::size_t i = 0; i < maximumAttributes; ++i) {
        attributes += " a" + std::to_string(i) + "=''";
    }
    EXPECT_EQ(judge("<a" + attributes + "/>"), "good");
    EXPECT_EQ(judge("<a" + attributes + " b=''/>"), "request-not-valid");
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

TEST(XmlRules, SayWhere) {
    try {
        checkWellFormed("<?xml version=\"1.0\"?><a>&x;</a>");
        FAIL();
    } catch (const RequestRejected& rejected) {
        EXPECT_STREQ(rejected.what(), "unknown entity or character reference at byte 24");
    }
}

} // namespace
} // namespace embedded::cimxml
