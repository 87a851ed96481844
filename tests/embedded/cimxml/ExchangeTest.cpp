// Which requests reach the CIM-XML reader, with what, and the exact form of every reply.
#include "cimxml/Exchange.h"
#include "Requests.h"

#include "http/Message.h"
#include "text/Ascii.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace embedded::cimxml {
namespace {

using http::Fields;
using http::Persistence;
using http::Request;
using http::wireHeader;
using text::equalIgnoringCase;

const Fields complete = {{"Host", "h"},
                         {"Content-Type", "application/xml; charset=\"utf-8\""},
                         {"CIMOperation", "MethodCall"},
                         {"CIMMethod", "GetClass"},
                         {"CIMObject", "root%2Fcimv2"}};

Request post(Fields fields = complete) {
    return {"POST", "/cimom", 11, std::move(fields), "<request/>"};
}

// `fields` with `name` set to `value`, or without it.
Fields with(Fields fields, const std::string& name, const std::optional<std::string>& value) {
    Fields result;
    for (auto& field : fields)
        if (!equalIgnoringCase(field.first, name))
            result.push_back(std::move(field));
    if (value)
        result.emplace_back(name, *value);
    return result;
}

const std::string manWith40 = "http://www.dmtf.org/cim/mapping/http/v1.0; ns=40";

Fields prefixed(const std::string& prefix, const std::string& man) {
    return {{"Host", "h"},
            {"Man", man},
            {"Content-Type", "text/xml"},
            {prefix + "CIMOperation", "MethodCall"},
            {prefix + "CIMMethod", "GetClass"},
            {prefix + "CIMObject", "root/cimv2"}};
}

// A document of these pieces.
class Pieces : public ReplyDocument {
  public:
    explicit Pieces(std::vector<std::string> pieces,
                    std::vector<const routing::Module*> modules = {})
        : _pieces(std::move(pieces)), _modules(std::move(modules)) {}
    const std::vector<const routing::Module*>& modules() const override { return _modules; }
    void giveUp(const std::string& why) override { _pieces = {why}; }
    bool ended() const override { return _at == _pieces.size(); }
    bool next(std::string& out) override {
        if (ended())
            return false;
        out += _pieces[_at++];
        return true;
    }

  private:
    std::vector<std::string> _pieces;
    const std::vector<const routing::Module*> _modules;
    std::size_t _at = 0;
};

http::Reply replyTo(const Request& request, const DocumentAnswer& answer) {
    return std::get<http::Reply>(exchange(request, answer));
}

// Answers with a fixed document and keeps what it was asked.
struct Reader {
    unsigned calls = 0;
    std::string body;
    Headers headers;

    std::string wire(const Request& request) {
        const DocumentAnswer answer = [this](const std::string& text, const Headers& read) {
            ++calls;
            body = text;
            headers = read;
            return std::make_shared<Pieces>(std::vector<std::string>{"<reply/>"});
        };
        const http::Reply reply = replyTo(request, answer);
        return wireHeader(reply, Persistence::Silent) + reply.body;
    }
};

TEST(Exchange, AnswersPostWithTheFieldsInTheirOrder) {
    Reader reader;
    EXPECT_EQ(reader.wire(post()), "HTTP/1.1 200 OK\r\n"
                                   "Content-Type: application/xml; charset=utf-8\r\n"
                                   "content-length: 0000000008\r\n"
                                   "CIMOperation: MethodResponse\r\n"
                                   "\r\n"
                                   "<reply/>");
    EXPECT_EQ(reader.body, "<request/>");
    EXPECT_EQ(reader.headers.method, "GetClass");
    EXPECT_EQ(reader.headers.object, "root/cimv2");
    EXPECT_EQ(reader.headers.protocolVersion, "1.0");
}

TEST(Exchange, HandsTheProtocolVersionOn) {
    Reader reader;
    reader.wire(post(with(complete, "CIMProtocolVersion", "1.1")));
    EXPECT_EQ(reader.headers.protocolVersion, "1.1");
}

TEST(Exchange, AnswersAnExtendedPostInKind) {
    for (const std::string& man :
         {manWith40, std::string("\"http://www.dmtf.org/cim/mapping/http/v1.0\" ;ns=\"40\"")}) {
        Reader reader;
        Request request = post(prefixed("40-", man));
        request.verb = "M-POST";
        EXPECT_EQ(reader.wire(request), "HTTP/1.1 200 OK\r\n"
                                        "Content-Type: application/xml; charset=utf-8\r\n"
                                        "content-length: 0000000008\r\n"
                                        "Ext:\r\n"
                                        "Cache-Control: no-cache\r\n"
                                        "Man: http://www.dmtf.org/cim/mapping/http/v1.0; ns=40\r\n"
                                        "40-CIMOperation: MethodResponse\r\n"
                                        "\r\n"
                                        "<reply/>");
        EXPECT_EQ(reader.headers.method, "GetClass");
    }
}

TEST(Exchange, AnswersAnExtendedPostWithoutPrefix) {
    for (const std::optional<std::string>& man :
         {std::optional<std::string>(),
          std::optional<std::string>("http://www.dmtf.org/cim/mapping/http/v1.0")}) {
        Reader reader;
        Request request = post(with(complete, "Man", man));
        request.verb = "M-POST";
        const std::string wire = reader.wire(request);
        EXPECT_EQ(reader.calls, 1U);
        EXPECT_NE(wire.find("v1.0; ns=01\r\n01-CIMOperation: MethodResponse\r\n"),
                  std::string::npos);
    }
}

TEST(Exchange, TakesFieldsOfAnExtendedPostWithoutThePrefixThatItDeclares) {
    Fields mixed = with(prefixed("", manWith40), "CIMMethod", {});
    mixed.emplace_back("40-CIMMethod", "GetClass");
    for (const Fields& fields : {prefixed("", manWith40), mixed}) {
        Reader reader;
        Request request = post(fields);
        request.verb = "M-POST";
        const std::string wire = reader.wire(request);
        EXPECT_NE(wire.find("v1.0; ns=40\r\n40-CIMOperation: MethodResponse\r\n"),
                  std::string::npos)
            << wire;
        EXPECT_EQ(reader.headers.method, "GetClass");
        EXPECT_EQ(reader.headers.object, "root/cimv2");
    }
}

TEST(Exchange, PrefersTheFieldWithThePrefixThatAnExtendedPostDeclares) {
    Reader reader;
    Request request = post(with(prefixed("40-", manWith40), "CIMMethod", "GetInstance"));
    request.verb = "M-POST";
    reader.wire(request);
    EXPECT_EQ(reader.headers.method, "GetClass");
}

struct RefusedCase {
    const char* name;
    std::string verb;
    Fields fields;
    std::string reply; ///< without the content length
};

class RefusedExchange : public testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedExchange, GetsStatusAndCimError) {
    Reader reader;
    Request request = post(GetParam().fields);
    request.verb = GetParam().verb;
    EXPECT_EQ(reader.wire(request), "HTTP/1.1 " + GetParam().reply + "content-length: 0\r\n\r\n");
    EXPECT_EQ(reader.calls, 0U);
}

RefusedCase refused(const char* name, const char* field, const std::optional<std::string>& value,
                    const std::string& reply) {
    return {name, "POST", with(complete, field, value), reply};
}

const std::string bad = "400 Bad Request\r\n";
const std::string mismatch = bad + "CIMError: header-mismatch\r\nPGErrorDetail: ";

INSTANTIATE_TEST_SUITE_P(
    Exchange, RefusedExchange,
    testing::Values(
        refused("NotUtf8", "CIMObject", "root%FF",
                mismatch + "CIMObject%3A%20no%20UTF-8%3A%20root%25FF\r\n"),
        refused("NotUtf8AsItIs", "CIMMethod", "Get\xc3(",
                mismatch + "CIMMethod%3A%20no%20UTF-8%3A%20Get%C3%28\r\n"),
        // The field is quoted up to 256 bytes, whole characters; 16 stand before it.
        refused("LongField", "CIMOperation", std::string(236, 'x') + "\u20ac\u20ac",
                bad + "CIMError: unsupported-operation\r\nPGErrorDetail: CIMOperation%20is%20" +
                    std::string(236, 'x') + "%E2%82%AC...\r\n"),
        RefusedCase{"BadPrefix", "M-POST",
                    prefixed("4x-", "http://www.dmtf.org/cim/mapping/http/v1.0; ns=4x"),
                    bad + "PGErrorDetail: the%20prefix%20in%20Man%20is%20not%20two%20digits%3A%20"
                          "http%3A%2F%2Fwww.dmtf.org%2Fcim%2Fmapping%2Fhttp%2Fv1.0%3B%20ns%3D4x"
                          "\r\n"},
        RefusedCase{"ShortPrefix", "M-POST",
                    prefixed("4-", "http://www.dmtf.org/cim/mapping/http/v1.0; ns=4"),
                    bad +
                        "PGErrorDetail: the%20prefix%20in%20Man%20is%20not%20two%20digits%3A%20"
                        "http%3A%2F%2Fwww.dmtf.org%2Fcim%2Fmapping%2Fhttp%2Fv1.0%3B%20ns%3D4\r\n"},
        RefusedCase{"PrefixThatBeginsWithALetter", "M-POST",
                    prefixed("x4-", "http://www.dmtf.org/cim/mapping/http/v1.0; ns=x4"),
                    bad + "PGErrorDetail: the%20prefix%20in%20Man%20is%20not%20two%20digits%3A%20"
                          "http%3A%2F%2Fwww.dmtf.org%2Fcim%2Fmapping%2Fhttp%2Fv1.0%3B%20ns%3Dx4"
                          "\r\n"},
        RefusedCase{"OtherPrefix", "M-POST", prefixed("73-", manWith40), bad},
        RefusedCase{"BatchWithoutThePrefix", "M-POST",
                    with(prefixed("40-", manWith40), "CIMBatch", ""),
                    "501 Not Implemented\r\nCIMError: multiple-requests-unsupported\r\n"},
        RefusedCase{"BatchWithThePrefixAlone", "M-POST",
                    with(prefixed("", manWith40), "40-CIMBatch", ""),
                    "501 Not Implemented\r\nCIMError: multiple-requests-unsupported\r\n"},
        RefusedCase{"PrefixWithoutExtension", "POST", prefixed("40-", manWith40), bad},
        RefusedCase{"Options", "OPTIONS", complete,
                    "405 Method Not Allowed\r\nAllow: POST, M-POST\r\n"},
        RefusedCase{"LowerCaseVerb", "post", complete, "501 Not Implemented\r\n"}),
    [](const auto& rule) { return rule.param.name; });

TEST(Exchange, AcceptsBothMediaTypesWithOrWithoutCharset) {
    for (const std::string type : {"application/xml", "text/xml", "Text/XML;charset=UTF-8",
                                   "application/xml ; x=y; charset=\"utf-8\"; z"}) {
        Reader reader;
        reader.wire(post(with(complete, "Content-Type", type)));
        EXPECT_EQ(reader.calls, 1U) << type;
    }
}

TEST(Exchange, SendsALongDocumentInPiecesWithoutALength) {
    const http::Reply reply = replyTo(post(), [](const std::string&, const Headers&) {
        return std::make_shared<Pieces>(std::vector<std::string>{"<a>", "<b/>", "</a>"});
    });
    EXPECT_EQ(reply.body, "<a>");
    EXPECT_EQ(http::findField(reply.fields, "content-length"), nullptr);
    std::string rest;
    while (reply.rest(rest)) {
    }
    EXPECT_EQ(rest, "<b/></a>");
}

const routing::Module first{3, "First"};
const routing::Module second{1, "Second"};

http::Answer answerIn(const std::vector<const routing::Module*>& modules) {
    return exchange(
        post(),
        [&](const std::string&, const Headers&) {
            return std::make_shared<Pieces>(std::vector<std::string>{"<reply/>"}, modules);
        });
}

TEST(Exchange, AnswersADocumentThatEntersNoModuleAtOnce) {
    EXPECT_EQ(std::get<http::Reply>(answerIn({})).body, "<reply/>");
}

TEST(Exchange, WorksOnADocumentInTheLanesOfTheModulesThatItEnters) {
    const http::Work work = std::get<http::Work>(answerIn({&first, &second}));
    EXPECT_EQ(work.lanes, (std::vector<unsigned>{3, 1}));
    EXPECT_EQ(std::get<http::Reply>(work.make()).body, "<reply/>");
}

TEST(Exchange, SaysWhichModulesDoNotAnswer) {
    EXPECT_EQ(std::get<http::Work>(answerIn({&first})).late().body,
              "Provider module First is not answering.");
    EXPECT_EQ(std::get<http::Work>(answerIn({&first, &second})).late().body,
              "Provider module First or Second is not answering.");
}

TEST(Exchange, ReadsALongRequestInALaneOfItsOwnAndAnswersItThereToo) {
    test::FakeOperations operations;
    operations.modules = {&first};
    Request request = post(with(complete, "CIMMethod", "EnumerateInstanceNames"));
    request.body = test::request("EnumerateInstanceNames",
                                 test::parameter("ClassName", "<CLASSNAME NAME=\"X\"/>"));
    const auto answered = [&](std::size_t length) {
        Request lengthened = request;
        lengthened.body.resize(length, '\n');
        return std::get<http::Work>(exchange(std::move(lengthened), routing::Caller(), operations,
                                             operations.enumerations, {7}));
    };
    EXPECT_EQ(answered(32 * 1024).lanes, (std::vector<unsigned>{3}));
    const http::Work reading = answered(32 * 1024 + 1);
    EXPECT_EQ(reading.lanes, (std::vector<unsigned>{7}));
    EXPECT_TRUE(operations.calls.size() == 1U) << "only the short one was read";
    const http::Work work = std::get<http::Work>(reading.make());
    EXPECT_EQ(work.lanes, (std::vector<unsigned>{3, 7}));
    EXPECT_NE(std::get<http::Reply>(work.make()).body.find("EnumerateInstanceNames"),
              std::string::npos);
    operations.modules = {};
    EXPECT_TRUE(std::holds_alternative<http::Reply>(answered(32 * 1024 + 1).make()));
}

} // namespace
} // namespace embedded::cimxml
