// What a large request takes is given back to the system, not only to the allocator.
#include "Requests.h"

#include <Pegasus/Common/Exception.h>
#include <gtest/gtest.h>

#include <malloc.h>

#include <fstream>

namespace embedded::cimxml::test {
namespace {

std::size_t residentBytes() {
    std::ifstream statm("/proc/self/statm");
    std::size_t size = 0, resident = 0;
    statm >> size >> resident;
    return resident * 4096;
}

// An instance whose properties have as many qualifiers as they may.
std::string largeRequest() {
    std::string qualifiers;
    for (int i = 0; i < 990; ++i)
        qualifiers += "<QUALIFIER NAME=\"Q" + std::to_string(i) + "\" TYPE=\"string\"/>";
    std::string properties;
    for (int i = 0; i < 40; ++i)
        properties += "<PROPERTY NAME=\"P" + std::to_string(i) + "\" TYPE=\"string\">" +
                      qualifiers + "</PROPERTY>";
    return request("CreateInstance", parameter("NewInstance", "<INSTANCE CLASSNAME=\"X\">" +
                                                                  properties + "</INSTANCE>"));
}

/// Keeps nothing of what it is asked.
class Refusing : public routing::CimOperations {
  public:
    routing::Plan plan(const routing::Operation&) override {
        throw Pegasus::CIMException(Pegasus::CIM_ERR_ACCESS_DENIED, "");
    }
    bool hasNameSpace(const Pegasus::CIMNamespaceName&) override { return true; }
    std::vector<Pegasus::CIMName> keyNames(const Pegasus::CIMNamespaceName&,
                                           const Pegasus::CIMName&) override {
        return {};
    }
};

TEST(Memory, OfALargeRequestIsGivenBack) {
    mallopt(M_MMAP_THRESHOLD, 128 * 1024); // as a fixed one, whatever was freed before
    const std::string body = largeRequest();
    malloc_trim(0); // what other tests have left
    const std::size_t before = residentBytes();
    std::size_t within = 0;
    {
        Refusing operations;
        routing::Enumerations enumerations;
        const auto exchange =
            replyTo(body, headersFor("CreateInstance"), {}, operations, enumerations);
        within = residentBytes();
        std::string reply;
        exchange->next(reply);
        EXPECT_NE(reply.find("CIM_ERR_ACCESS_DENIED"), std::string::npos);
    }
    EXPECT_GT(within, before + 2 * body.size());
    EXPECT_LT(residentBytes(), before + body.size());
}

} // namespace
} // namespace embedded::cimxml::test
