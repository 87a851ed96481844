// Pulled enumerations as requests ask for them and replies show them.
#include "Requests.h"

#include "limits/Limits.h"

#include <gtest/gtest.h>

#include <atomic>
#include <ostream>

namespace embedded::cimxml::test {
namespace {

using namespace Pegasus;

const std::string classX = parameter("ClassName", "<CLASSNAME NAME=\"X\"/>");
const std::string nameX = parameter("InstanceName", instanceName());

std::string value(const std::string& name, const std::string& text) {
    return parameter(name, "<VALUE>" + text + "</VALUE>");
}

std::string maximum(unsigned count) { return value("MaxObjectCount", std::to_string(count)); }

std::string pulling(const std::string& context, unsigned count) {
    return value("EnumerationContext", context) + maximum(count);
}

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

std::string between(const std::string& text, const std::string& begin, const std::string& end) {
    const std::size_t found = text.find(begin);
    if (found == std::string::npos)
        return {};
    const std::size_t from = found + begin.size();
    return text.substr(from, text.find(end, from) - from);
}

const std::string ended = "<PARAMVALUE NAME=\"EndOfSequence\" PARAMTYPE=\"boolean\">\n"
                          "<VALUE>TRUE</VALUE>\n"
                          "</PARAMVALUE>\n"
                          "<PARAMVALUE NAME=\"EnumerationContext\" PARAMTYPE=\"string\">\n"
                          "<VALUE></VALUE>\n"
                          "</PARAMVALUE>\n";

/// The context of a reply that does not end the enumeration; "" for one that does.
std::string contextOf(const std::string& content) {
    const std::string context =
        between(content, "\"EnumerationContext\" PARAMTYPE=\"string\">\n<VALUE>", "</VALUE>");
    EXPECT_EQ(context.empty(), content.find(ended) != std::string::npos ||
                                   content.find("<ERROR") != std::string::npos)
        << content;
    return context;
}

CIMObjectPath path(const String& key) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("a"), key, CIMKeyBinding::STRING));
    return {String("switch"), CIMNamespaceName("root/cimv2"), CIMName("X"), keys};
}

class Pull : public testing::Test {
  protected:
    FakeOperations operations;

    Pull() {
        for (const char* key : {"1", "2", "3"}) {
            CIMInstance instance(CIMName("X"));
            instance.setPath(path(key));
            instance.addProperty(CIMProperty(CIMName("p"), CIMValue(String(key))));
            operations.instances.append(instance);
            operations.objects.append(CIMObject(instance));
            operations.paths.append(path(key));
        }
    }
    std::string ask(const std::string& operation, const std::string& parameters) {
        return content(operations, operation, parameters);
    }
    std::string status(const std::string& operation, const std::string& parameters) {
        return between(ask(operation, parameters), "<ERROR CODE=\"", "\"");
    }
};

struct Kind {
    const char* open;
    std::string source;
    const char* pull;
    const char* element;
    const char* asked; ///< of the operations behind it
};

std::ostream& operator<<(std::ostream& out, const Kind& kind) { return out << kind.open; }

class PullOf : public Pull, public testing::WithParamInterface<Kind> {};

TEST_P(PullOf, ComesInPiecesWithWholePaths) {
    const Kind& kind = GetParam();
    const std::string begin = std::string("<") + kind.element + ">";
    const std::string first = ask(kind.open, kind.source + maximum(2));
    EXPECT_EQ(count(first, begin), 2U) << first;
    EXPECT_EQ(count(first, "<HOST>switch</HOST>"), 2U);
    EXPECT_EQ(operations.calls.size(), 1U);
    EXPECT_EQ(operations.calls[0].substr(0, operations.calls[0].find(' ')), kind.asked);
    const std::string context = contextOf(first);
    const std::string second = ask(kind.pull, pulling(context, 2));
    EXPECT_EQ(count(second, begin), 1U) << second;
    EXPECT_NE(second.find(ended), std::string::npos);
    EXPECT_EQ(status(kind.pull, pulling(context, 2)), "21");
    EXPECT_EQ(operations.calls.size(), 1U); // nobody is asked again
    EXPECT_EQ(operations.enumerations.size(), 0U);
}

TEST_P(PullOf, IsOneReplyIfItFits) {
    const std::string all = ask(GetParam().open, GetParam().source + maximum(3));
    EXPECT_EQ(count(all, std::string("<") + GetParam().element + ">"), 3U);
    EXPECT_EQ(contextOf(all), "");
    EXPECT_EQ(operations.enumerations.size(), 0U);
}

TEST_P(PullOf, MayBeginWithNothingAndGoOnWithNothing) {
    const Kind& kind = GetParam();
    for (const std::string& none : {maximum(0), std::string()}) {
        const std::string opened = ask(kind.open, kind.source + none);
        EXPECT_EQ(opened.find("IRETURNVALUE"), std::string::npos) << opened;
        const std::string context = contextOf(opened);
        EXPECT_EQ(contextOf(ask(kind.pull, pulling(context, 0))), context);
        EXPECT_EQ(contextOf(ask(kind.pull, pulling(context, 100))), "");
    }
}

TEST_P(PullOf, NothingIsAtItsEndAtOnce) {
    operations.instances.clear();
    operations.objects.clear();
    operations.paths.clear();
    operations.sources = 2; // asked at once, it would have an empty IRETURNVALUE
    EXPECT_EQ(ask(GetParam().open, GetParam().source), ended);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, PullOf,
    testing::Values(Kind{"OpenEnumerateInstances", classX, "PullInstancesWithPath",
                         "VALUE.INSTANCEWITHPATH", "enumerateInstances"},
                    Kind{"OpenEnumerateInstancePaths", classX, "PullInstancePaths", "INSTANCEPATH",
                         "enumerateInstanceNames"},
                    Kind{"OpenReferenceInstances", nameX, "PullInstancesWithPath",
                         "VALUE.INSTANCEWITHPATH", "references"},
                    Kind{"OpenReferenceInstancePaths", nameX, "PullInstancePaths", "INSTANCEPATH",
                         "referenceNames"},
                    Kind{"OpenAssociatorInstances", nameX, "PullInstancesWithPath",
                         "VALUE.INSTANCEWITHPATH", "associators"},
                    Kind{"OpenAssociatorInstancePaths", nameX, "PullInstancePaths", "INSTANCEPATH",
                         "associatorNames"}),
    [](const auto& kind) { return std::string(kind.param.open); });

TEST_F(Pull, AnInstanceIsWrittenWithItsPath) {
    operations.instances.remove(1, 2);
    EXPECT_EQ(ask("OpenEnumerateInstances", classX + maximum(1)),
              "<IRETURNVALUE>\n"
              "<VALUE.INSTANCEWITHPATH>\n"
              "<INSTANCEPATH>\n"
              "<NAMESPACEPATH>\n"
              "<HOST>switch</HOST>\n"
              "<LOCALNAMESPACEPATH>\n"
              "<NAMESPACE NAME=\"root\"/>\n"
              "<NAMESPACE NAME=\"cimv2\"/>\n"
              "</LOCALNAMESPACEPATH>\n"
              "</NAMESPACEPATH>\n"
              "<INSTANCENAME CLASSNAME=\"X\">\n"
              "<KEYBINDING NAME=\"a\">\n"
              "<KEYVALUE VALUETYPE=\"string\">1</KEYVALUE>\n"
              "</KEYBINDING>\n"
              "</INSTANCENAME>\n"
              "</INSTANCEPATH>\n"
              "<INSTANCE CLASSNAME=\"X\" >\n"
              "<PROPERTY NAME=\"p\"  TYPE=\"string\">\n"
              "<VALUE>1</VALUE>\n"
              "</PROPERTY>\n"
              "</INSTANCE>\n"
              "</VALUE.INSTANCEWITHPATH>\n"
              "</IRETURNVALUE>\n" +
                  ended);
}

TEST_F(Pull, ThePropertyListOfTheOpenHoldsForEachPull) {
    const std::string none = parameter("PropertyList", "<VALUE.ARRAY></VALUE.ARRAY>");
    const std::string first = ask("OpenEnumerateInstances", classX + none + maximum(1));
    const std::string second = ask("PullInstancesWithPath", pulling(contextOf(first), 9));
    EXPECT_EQ(count(first + second, "<INSTANCE CLASSNAME"), 3U);
    EXPECT_EQ(count(first + second, "<PROPERTY"), 0U);
}

TEST_F(Pull, HasTheTimeOfTheLimitUnlessTheClientSaysOtherwise) {
    std::atomic<routing::Enumerations::Clock::time_point> now{routing::Enumerations::Clock::now()};
    routing::Enumerations enumerations(
        {}, [&] { return now.load(); });
    const auto contextAfter = [&](const std::string& more, std::chrono::seconds time) {
        const auto asked = [&](const std::string& operation, const std::string& parameters) {
            return answer(request(operation, parameters), headersFor(operation), {}, operations,
                          enumerations);
        };
        const std::string context = contextOf(asked("OpenEnumerateInstances", classX + more));
        now = now.load() + time;
        return contextOf(asked("PullInstancesWithPath", pulling(context, 0))) == context;
    };
    constexpr std::chrono::seconds one{1};
    EXPECT_TRUE(contextAfter("", limits::enumerationTime - one));
    EXPECT_FALSE(contextAfter("", limits::enumerationTime));
    EXPECT_TRUE(contextAfter(value("OperationTimeout", "200"), 199 * one));
    EXPECT_FALSE(contextAfter(value("OperationTimeout", "200"), 200 * one));
}

TEST_F(Pull, TakesASourceWithKeysOnly) {
    for (const std::string source :
         {"<INSTANCENAME CLASSNAME=\"X\"/>", "<INSTANCENAME CLASSNAME=\"X\"></INSTANCENAME>"}) {
        EXPECT_EQ(status("OpenReferenceInstances", parameter("InstanceName", source)), "4");
        EXPECT_EQ(status("OpenAssociatorInstancePaths", parameter("InstanceName", source)), "4");
    }
    EXPECT_EQ(status("OpenReferenceInstances", parameter("ObjectName", instanceName())), "7");
}

TEST_F(Pull, ANumberThatIsNoneMakesTheRequestInvalid) {
    for (const char* text : {"-1", "z", "", "4294967296", "1.5", " 1"}) {
        for (const char* name : {"MaxObjectCount", "OperationTimeout"})
            EXPECT_EQ(rejection(request("OpenEnumerateInstances", classX + value(name, text)),
                                headersFor("OpenEnumerateInstances")),
                      "400 request-not-valid")
                << name << " " << text;
    }
    EXPECT_EQ(
        contextOf(ask("OpenEnumerateInstances", classX + value("MaxObjectCount", "4294967295"))),
        "");
}

TEST_F(Pull, WhatWaitedForAModuleInVainIsNotOpen) {
    const routing::Module module{0, "M"};
    operations.modules = {&module};
    const auto exchange =
        replyTo(request("OpenEnumerateInstancePaths", classX + maximum(1)),
                headersFor("OpenEnumerateInstancePaths"), {}, operations, operations.enumerations);
    EXPECT_EQ(operations.enumerations.size(), 1U);
    exchange->giveUp("busy");
    EXPECT_EQ(operations.enumerations.size(), 0U);
    std::string reply;
    exchange->next(reply);
    EXPECT_NE(reply.find("<ERROR CODE=\"1\""), std::string::npos) << reply;
}

} // namespace
} // namespace embedded::cimxml::test
