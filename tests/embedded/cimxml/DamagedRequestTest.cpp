// Requests that were cut off or garbled on their way: never a crash, and never an answer to a part
// of a document.
#include "Requests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <random>

namespace embedded::cimxml::test {
namespace {

struct Sample {
    std::string body;
    Headers headers;
};

std::vector<Sample> samples() {
    const auto intrinsic = [](const std::string& operation, const std::string& parameters) {
        return Sample{request(operation, parameters), headersFor(operation)};
    };
    const std::string space = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
                              "<NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>";
    const std::string association =
        "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"Antecedent\"><VALUE.REFERENCE>"
        "<INSTANCEPATH><NAMESPACEPATH><HOST>switch:5988</HOST>" +
        space + "</NAMESPACEPATH>" + instanceName() +
        "</INSTANCEPATH></VALUE.REFERENCE></KEYBINDING></INSTANCENAME>";
    const std::string instance =
        "<INSTANCE CLASSNAME=\"X\"><QUALIFIER NAME=\"q\" TYPE=\"string\" TRANSLATABLE=\"true\">"
        "<VALUE>\xE2\x82\xAC</VALUE></QUALIFIER>"
        "<PROPERTY NAME=\"b\" TYPE=\"boolean\"><VALUE>TRUE</VALUE></PROPERTY>"
        "<PROPERTY NAME=\"s\" TYPE=\"string\"><VALUE>a&lt;<![CDATA[<&]]>&#x20AC;</VALUE></PROPERTY>"
        "<PROPERTY NAME=\"d\" TYPE=\"datetime\"><VALUE>20200102030405.123456+060</VALUE></PROPERTY>"
        "<PROPERTY NAME=\"r\" TYPE=\"real32\"><VALUE>-1.5e-3</VALUE></PROPERTY>"
        "<PROPERTY.ARRAY NAME=\"u\" TYPE=\"uint16\" ARRAYSIZE=\"2\"><VALUE.ARRAY><VALUE>1</VALUE>"
        "<VALUE>0x2</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"
        "<PROPERTY.REFERENCE NAME=\"f\" REFERENCECLASS=\"X\"><VALUE.REFERENCE><LOCALINSTANCEPATH>" +
        space + instanceName() +
        "</LOCALINSTANCEPATH></VALUE.REFERENCE></PROPERTY.REFERENCE></INSTANCE>";
    return {
        intrinsic("EnumerateInstances",
                  parameter("ClassName", "<CLASSNAME NAME=\"X\"/>") +
                      parameter("DeepInheritance", "<VALUE>TRUE</VALUE>") +
                      parameter("PropertyList",
                                "<VALUE.ARRAY><VALUE>a</VALUE><VALUE>b</VALUE></VALUE.ARRAY>")),
        intrinsic("GetInstance", parameter("InstanceName", association)),
        intrinsic("CreateInstance", parameter("NewInstance", instance)),
        intrinsic("ModifyInstance",
                  parameter("ModifiedInstance", "<VALUE.NAMEDINSTANCE>" + instanceName() +
                                                    instance + "</VALUE.NAMEDINSTANCE>")),
        {"\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8' standalone='yes'?>"
         "<!DOCTYPE CIM SYSTEM \"CIM_DTD_V20.dtd\"><!-- - --><?p i?>"
         "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\">"
         "<SIMPLEREQ><METHODCALL NAME=\"Start\"><LOCALINSTANCEPATH>" +
             space + instanceName() +
             "</LOCALINSTANCEPATH></METHODCALL></SIMPLEREQ></MESSAGE></CIM>",
         {"Start", "root/cimv2:X.a=\"1\"", "1.0"}},
    };
}

// Answers it or rejects it; anything else is a failure.
bool isAnswered(const std::string& body, const Headers& headers) {
    FakeOperations operations;
    operations.cimClass = Pegasus::CIMClass(Pegasus::CIMName("X"));
    operations.instance = Pegasus::CIMInstance(Pegasus::CIMName("X"));
    operations.createdPath = Pegasus::CIMObjectPath("X");
    try {
        const std::string reply =
            answer(body, headers, routing::Caller(), operations, operations.enumerations);
        const std::string end = "</CIM>\n";
        EXPECT_EQ(reply.substr(reply.size() - end.size()), end);
        return true;
    } catch (const RequestRejected&) {
        EXPECT_TRUE(operations.calls.empty()) << operations.calls[0];
        return false;
    }
}

TEST(DamagedRequest, TheWholeSamplesAreAnswered) {
    for (const Sample& sample : samples())
        EXPECT_TRUE(isAnswered(sample.body, sample.headers)) << sample.body;
}

TEST(DamagedRequest, CutOffAnywhereIsRejected) {
    for (const Sample& sample : samples()) {
        for (std::size_t length = 0; length < sample.body.size(); ++length)
            EXPECT_FALSE(isAnswered(sample.body.substr(0, length), sample.headers))
                << sample.body.substr(0, length);
    }
}

TEST(DamagedRequest, WithBytesAfterItsEndIsRejected) {
    for (const Sample& sample : samples()) {
        for (const char* tail : {"x", "<", "</CIM>", "<CIM/>", "&#32;", "<![CDATA[]]>"})
            EXPECT_FALSE(isAnswered(sample.body + tail, sample.headers));
        EXPECT_FALSE(isAnswered(sample.body + std::string(1, '\0'), sample.headers));
        EXPECT_FALSE(isAnswered(sample.body + sample.body, sample.headers));
    }
}

TEST(DamagedRequest, WithAByteThatNoDocumentHasIsRejected) {
    for (const Sample& sample : samples())
        for (std::size_t at = 0; at < sample.body.size(); ++at)
            for (const char byte : {'\0', '\x01', '\xC0', '\xFF'}) {
                std::string body = sample.body;
                body[at] = byte;
                EXPECT_FALSE(isAnswered(body, sample.headers)) << at;
            }
}

// What follows damages them so that either may be right; isAnswered() judges what was done.

TEST(DamagedRequest, WithAByteChangedMissingOrDoubledIsAnsweredWholeOrDoesNothing) {
    for (const Sample& sample : samples()) {
        unsigned answered = 0;
        for (std::size_t at = 0; at < sample.body.size(); ++at) {
            for (const char byte : {' ', '<', '>', '"', '&', '/', '9', 'Z', '\x80'}) {
                std::string body = sample.body;
                body[at] = byte;
                answered += isAnswered(body, sample.headers);
            }
            std::string body = sample.body;
            answered += isAnswered(body.erase(at, 1), sample.headers);
            body = sample.body;
            answered += isAnswered(body.insert(at, 1, body[at]), sample.headers);
        }
        EXPECT_GT(answered, 0U) << "none was damaged where it does not matter";
        EXPECT_LT(answered, 11 * sample.body.size() / 2) << "most of them matter";
    }
}

TEST(DamagedRequest, WithPiecesSwappedIsAnsweredWholeOrDoesNothing) {
    std::mt19937 random(20); // NOLINT: the same requests in every run
    for (const Sample& sample : samples()) {
        unsigned answered = 0;
        for (int round = 0; round < 500; ++round) {
            std::string body = sample.body;
            const auto place = [&] { return random() % body.size(); };
            const std::string piece = body.substr(place(), 1 + random() % 60);
            answered += isAnswered(body.replace(place(), random() % 60, piece), sample.headers);
        }
        EXPECT_LT(answered, 50U);
    }
}

// Processor time, which other processes do not lengthen much, and of which the shortest counts.
double timeToAnswerWith(int elements) {
    std::string names;
    for (int i = 0; i < elements; ++i)
        names += "<VALUE>p" + std::to_string(i) + "</VALUE>";
    const std::string body =
        request("EnumerateInstances",
                parameter("ClassName", "<CLASSNAME NAME=\"X\"/>") +
                    parameter("PropertyList", "<VALUE.ARRAY>" + names + "</VALUE.ARRAY>"));
    double shortest = 1e9;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const std::clock_t began = std::clock();
        EXPECT_TRUE(isAnswered(body, headersFor("EnumerateInstances")));
        shortest = std::min(shortest, double(std::clock() - began));
    }
    return shortest;
}

TEST(DamagedRequest, OfManyElementsTakesTimeInProportion) {
    // 8 times as many; time that grew with the square would be 64 times as long.
    EXPECT_LT(timeToAnswerWith(64000), 24 * timeToAnswerWith(8000));
}

} // namespace
} // namespace embedded::cimxml::test
