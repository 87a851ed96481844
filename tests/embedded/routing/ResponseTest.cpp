#include "Server.h"

#include <Pegasus/Provider/ProviderException.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <typeinfo>

namespace embedded::routing::test {
namespace {

using namespace Pegasus;

/// What a provider does with the one call it gets.
struct ResponseCase {
    const char* rule;
    std::function<void(const toy::Call&)> behaviour;
    std::string getInstance; ///< "found", or the error
    std::string enumeration; ///< the number of objects, or the error
};

// The same behaviour for whichever kind of object the operation delivers.
void deliver(const toy::Call& call, unsigned count = 1) {
    for (unsigned i = 0; i < count; ++i) {
        const CIMInstance instance = instanceOf("TST_Leaf", std::to_string(i).c_str());
        if (call.instances != nullptr)
            call.instances->deliver(instance);
        else if (call.objects != nullptr)
            call.objects->deliver(CIMObject(instance));
        else
            call.paths->deliver(instance.getPath());
    }
}

void deliverUninitialized(const toy::Call& call) {
    if (call.instances != nullptr)
        call.instances->deliver(CIMInstance());
    else if (call.objects != nullptr)
        call.objects->deliver(CIMObject());
    else
        call.paths->deliver(CIMObjectPath());
}

void swallow(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const CIMException&) {
        toy::note("swallowed");
    }
}

class Response : public testing::TestWithParam<ResponseCase> {
  protected:
    Response() : server(servedBy("P", {"TST_Leaf", "TST_OtherLink"})) {
        toy::Script script;
        script.answer = GetParam().behaviour;
        toy::setScript("P", script);
    }

    template <class Ask>
    static std::string counted(Ask ask) {
        std::string count;
        const std::string error = errorOf([&] { count = std::to_string(ask().objects.size()); });
        return error == "no error" ? count : error;
    }

    Server server;
};

TEST_P(Response, OfGetInstance) {
    const std::string error = errorOf([&] { server.get(pathOf("TST_Leaf", "0")); });
    EXPECT_EQ(GetParam().getInstance, error == "no error" ? "found" : error);
}

TEST_P(Response, OfEnumerations) {
    const CIMName leaf("TST_Leaf");
    EXPECT_EQ(GetParam().enumeration, counted([&] { return server.enumerate("TST_Leaf"); }));
    EXPECT_EQ(GetParam().enumeration,
              counted([&] { return server.router.enumerateInstanceNames({}, nameSpace, leaf); }));
}

TEST_P(Response, OfAssociationOperations) {
    const CIMObjectPath other = pathOf("TST_Other", "1");
    EXPECT_EQ(GetParam().enumeration, counted([&] {
                  return server.router.associators({}, nameSpace, other, {}, {}, "", "", false,
                                                   false, {});
              }));
    EXPECT_EQ(GetParam().enumeration, counted([&] {
                  return server.router.associatorNames({}, nameSpace, other, {}, {}, "", "");
              }));
    EXPECT_EQ(GetParam().enumeration, counted([&] {
                  return server.router.references({}, nameSpace, other, {}, "", false, false, {});
              }));
    EXPECT_EQ(GetParam().enumeration,
              counted([&] { return server.router.referenceNames({}, nameSpace, other, {}, ""); }));
}

const char* const notFound = "6: TST_Leaf.Id=\"0\"";

INSTANTIATE_TEST_SUITE_P(
    Host, Response,
    testing::Values(
        ResponseCase{"NoHandlerCall", [](const toy::Call&) {}, notFound, "0"},
        ResponseCase{"DeliveredNotCompleted", [](const toy::Call& call) { deliver(call); },
                     notFound, "0"},
        ResponseCase{"DeliveredAndCompleted",
                     [](const toy::Call& call) {
                         deliver(call);
                         call.complete();
                     },
                     "found", "1"},
        ResponseCase{"NothingDelivered", [](const toy::Call& call) { call.complete(); },
                     "1: Too few objects delivered.", "0"},
        ResponseCase{"NothingDeliveredAndErrorSwallowed",
                     [](const toy::Call& call) { swallow([&] { call.complete(); }); }, "6: ", "0"},
        ResponseCase{"DeliveredTwice",
                     [](const toy::Call& call) {
                         deliver(call, 2);
                         call.complete();
                     },
                     "1: Too many objects delivered.", "2"},
        ResponseCase{"Uninitialized",
                     [](const toy::Call& call) {
                         deliverUninitialized(call);
                         call.complete();
                     },
                     "1: The object is not initialized.", "1: The object is not initialized."},
        ResponseCase{"UninitializedSwallowed",
                     [](const toy::Call& call) {
                         swallow([&] { deliverUninitialized(call); });
                         deliver(call);
                         call.complete();
                     },
                     "found", "1"},
        ResponseCase{"DeliveredThenThrown",
                     [](const toy::Call& call) {
                         deliver(call);
                         throw CIMException(CIM_ERR_ACCESS_DENIED, "not you");
                     },
                     "2: not you", "2: not you"},
        ResponseCase{"ThrownAfterComplete",
                     [](const toy::Call& call) {
                         deliver(call);
                         call.complete();
                         throw CIMException(CIM_ERR_ACCESS_DENIED, "not you");
                     },
                     "2: not you", "2: not you"},
        ResponseCase{"EmptyMessageStaysEmpty",
                     [](const toy::Call&) { throw CIMObjectNotFoundException(""); }, "6: ", "6: "},
        ResponseCase{"SuccessThrown",
                     [](const toy::Call& call) {
                         deliver(call);
                         throw CIMException(CIM_ERR_SUCCESS, "all is well");
                     },
                     notFound, "0"},
        ResponseCase{"OtherPegasusException", [](const toy::Call&) { CIMInstance().getPath(); },
                     "1: uninitialized object", "1: uninitialized object"},
        ResponseCase{"StandardException", [](const toy::Call&) { throw std::bad_cast(); },
                     "1: std::bad_cast", "1: std::bad_cast"},
        ResponseCase{"StandardExceptionOfNoUtf8",
                     [](const toy::Call&) { throw std::runtime_error("a\xff\x01"); },
                     "1: a\\xFF\\x01", "1: a\\xFF\\x01"},
        ResponseCase{"AnyOtherThing", [](const toy::Call&) { throw 42; }, "1: Unknown error.",
                     "1: Unknown error."}),
    [](const auto& instance) { return instance.param.rule; });

/// Runs one enumeration of a provider that does `behaviour`.
template <class Behaviour>
Array<CIMInstance> enumerated(Behaviour behaviour) {
    Server server(servedBy("P", {"TST_Leaf"}));
    toy::Script script;
    script.answer = behaviour;
    toy::setScript("P", script);
    return server.enumerate("TST_Leaf").objects;
}

TEST(Responses, FullHundredsArriveEvenWhenTheProviderDoesNotComplete) {
    for (const auto& [delivered, arrived] :
         {std::pair(99U, 0U), std::pair(100U, 100U), std::pair(250U, 200U)}) {
        const unsigned count = delivered;
        EXPECT_EQ(arrived,
                  enumerated([count](const toy::Call& call) { deliver(call, count); }).size())
            << delivered;
    }
    EXPECT_EQ(250U, enumerated([](const toy::Call& call) {
                        deliver(call, 250);
                        call.complete();
                    }).size());
}

TEST(Responses, AnArrayIsDeliveredLikeItsItems) {
    const auto instances = enumerated([](const toy::Call& call) {
        Array<CIMInstance> two;
        two.append(instanceOf("TST_Leaf", "a"));
        two.append(instanceOf("TST_Leaf", "b"));
        call.instances->deliver(two);
        call.complete();
    });
    EXPECT_EQ((Texts{"TST_Leaf.Id=\"a\"", "TST_Leaf.Id=\"b\""}), texts(instances));
}

TEST(Responses, WhatIsDeliveredIsTheServersOwn) {
    const auto instances = enumerated([](const toy::Call& call) {
        CIMInstance instance = instanceOf("TST_Leaf", "before");
        call.instances->deliver(instance);
        instance.setPath(pathOf("TST_Leaf", "after"));
        call.complete();
    });
    EXPECT_EQ(Texts{"TST_Leaf.Id=\"before\""}, texts(instances));
}

TEST(Responses, AProviderWithoutTheInterfaceIsNotSupported) {
    Server server(servedBy("NoInterface", {"TST_Leaf"}));
    EXPECT_EQ("7: Invalid provider interface.", errorOf([&] { server.enumerate("TST_Leaf"); }));
    EXPECT_EQ("7: Invalid provider interface.",
              errorOf([&] { server.get(pathOf("TST_Leaf", "1")); }));
}

// The operations that change something.

std::string creation(const std::function<void(const toy::Call&)>& behaviour) {
    Server server(servedBy("P", {"TST_Leaf"}));
    toy::Script script;
    script.answer = behaviour;
    toy::setScript("P", script);
    std::string path;
    const std::string error = errorOf([&] {
        path = text(
            server.router.createInstance({}, nameSpace, instanceOf("TST_Leaf", "0")).toString());
    });
    return error == "no error" ? "created " + path : error;
}

TEST(Responses, OfCreateInstance) {
    EXPECT_EQ("created ", creation([](const toy::Call&) {}));
    EXPECT_EQ("created ", creation([](const toy::Call& call) { deliver(call); }));
    EXPECT_EQ("created TST_Leaf.Id=\"0\"", creation([](const toy::Call& call) {
                  deliver(call);
                  call.complete();
              }));
    EXPECT_EQ("1: Too few objects delivered.",
              creation([](const toy::Call& call) { call.complete(); }));
    EXPECT_EQ("1: Too many objects delivered.",
              creation([](const toy::Call& call) { deliver(call, 2); }));
}

TEST(Responses, ModifyAndDeleteSucceedSilently) {
    Server server(servedBy("P", {"TST_Leaf"}));
    EXPECT_EQ("no error", errorOf([&] {
                  server.router.modifyInstance({}, nameSpace, instanceOf("TST_Leaf", "0"), false,
                                               {});
                  server.router.deleteInstance({}, nameSpace, pathOf("TST_Leaf", "0"));
              }));
    toy::Script script;
    script.answer = [](const toy::Call&) { throw 1; };
    toy::setScript("P", script);
    EXPECT_EQ("1: Unknown error.", errorOf([&] {
                  server.router.deleteInstance({}, nameSpace, pathOf("TST_Leaf", "0"));
              }));
}

} // namespace
} // namespace embedded::routing::test
