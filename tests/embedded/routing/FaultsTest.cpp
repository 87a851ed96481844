// Faults on demand: how they are spelt, and what they do to read-backs.
#include "routing/Faults.h"

#include "Server.h"

#include <Pegasus/Provider/CIMOMHandle.h>
#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

namespace embedded::routing::test {
namespace {

using namespace Pegasus;

std::string read(const std::string& text) {
    try {
        return describe(readFault(text));
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
}

TEST(FaultText, SaysWhatGoesWrongWhere) {
    struct Row {
        const char* text;
        const char* described;
    };
    for (const Row& row : {
             Row{"getInstance:CIM_Namespace=1",
                 "getInstance of CIM_Namespace fails with CIM_ERR_FAILED"},
             {"GETINSTANCE:CIM_Namespace=cim_err_not_found",
              "getInstance of CIM_Namespace fails with CIM_ERR_NOT_FOUND"},
             {"*:CIM_Namespace=28",
              "everything of CIM_Namespace fails with CIM_ERR_SERVER_IS_SHUTTING_DOWN"},
             {"getClass:*=CIM_ERR_FAILED:no disk: full",
              "getClass of any class fails with CIM_ERR_FAILED: no disk: full"},
             {"associators:A=1:", "associators of A fails with CIM_ERR_FAILED"},
             {"references:A=hang:3", "references of A hangs for 3000 ms"},
             {"references:A=Hang:0.25", "references of A hangs for 250 ms"},
             {"*:*=EMPTY", "everything of any class answers nothing"},
         })
        EXPECT_EQ(row.described, read(row.text)) << row.text;
}

TEST(FaultText, ThatIsWrongSaysWhatIsPossible) {
    struct Row {
        const char* text;
        const char* told;
        const char* possible;
    };
    const char* const shape = "OPERATION:CLASS=WHAT is expected, not '";
    for (const Row& row : {
             Row{"", shape, "''"},
             {"getInstance", shape, "'getInstance'"},
             {"getInstance=1", shape, "'getInstance=1'"},
             {"getInstance=A:1", shape, "'getInstance=A:1'"},
             {"getStuff:A=1", "no operation is called 'getStuff'", "*, getClass, enumerateClasses"},
             {":A=1", "no operation is called ''", "referenceNames"},
             {"getClass:=1", "'' is not a class name", "CIM_Namespace"},
             {"getClass:A B=1", "'A B' is not a class name", "*"},
             {"getClass:A=", "'' cannot happen", "empty, hang:SECONDS"},
             {"getClass:A=0", "'0' cannot happen", "1 CIM_ERR_FAILED, 2 CIM_ERR_ACCESS_DENIED"},
             {"getClass:A=18", "'18' cannot happen", "17 CIM_ERR_METHOD_NOT_FOUND, 20 "},
             {"getClass:A=CIM_ERR", "'CIM_ERR' cannot happen",
              "28 CIM_ERR_SERVER_IS_SHUTTING_DOWN"},
             {"getClass:A=hang", "'hang' cannot happen", "hang:SECONDS"},
             {"getClass:A=hang:", "'' is not a time to hang", "0 to 3600 seconds"},
             {"getClass:A=hang:-1", "'-1' is not a time to hang", "0 to 3600 seconds"},
             {"getClass:A=hang:3s", "'3s' is not a time to hang", "0 to 3600 seconds"},
             {"getClass:A=hang:nan", "'nan' is not a time to hang", "0 to 3600 seconds"},
             {"getClass:A=hang:3601", "'3601' is not a time to hang", "0 to 3600 seconds"},
         }) {
        const std::string error = read(row.text);
        EXPECT_EQ(0U, error.find(row.told)) << row.text << ": " << error;
        EXPECT_NE(std::string::npos, error.find(row.possible)) << row.text << ": " << error;
    }
}

std::vector<Fault> readAll(const std::vector<std::string>& texts) {
    std::vector<Fault> result;
    for (const std::string& text : texts)
        result.push_back(readFault(text));
    return result;
}

/// A provider's handle when faults are asked for.
class Handle {
  public:
    Handle(Server& server, const std::vector<std::string>& faults)
        : _readBacks(server.router, readAll(faults)), _handles(_readBacks) {}

    operator CIMOMHandle&() { return _handle; }
    CIMOMHandle* operator->() { return &_handle; }

  private:
    FaultyReadBacks _readBacks;
    ProviderHandles _handles;
    CIMOMHandle _handle;
};

const OperationContext context;
const char* const stored = "instance of TST_Base { Id = \"1\"; };\n"
                           "instance of TST_Other { Id = \"2\"; };\n";

std::size_t names(CIMOMHandle& handle, const char* className) {
    return handle.enumerateInstanceNames(context, nameSpace, CIMName(className)).size();
}

TEST(Faults, FailTheOperationOnTheClassAndNothingElse) {
    Server server(stored);
    Handle handle(server, {"EnumerateInstanceNames:tst_base=2:keep out"});
    EXPECT_EQ("2: keep out", errorOf([&] { names(handle, "TST_Base"); }));
    EXPECT_EQ(1U, names(handle, "TST_Other"));
    EXPECT_EQ(1U, handle
                      ->enumerateInstances(context, nameSpace, CIMName("TST_Base"), true, false,
                                           false, false, {})
                      .size());
}

TEST(Faults, ThatHangHoldTheAnswerUpAndNothingElse) {
    using std::chrono::steady_clock;
    Server server(stored);
    Handle handle(server,
                  {"*:TST_Base=hang:0.1", "getInstance:TST_Base=hang:0.1", "getInstance:*=1"});
    const steady_clock::time_point start = steady_clock::now();
    EXPECT_EQ(1U, names(handle, "TST_Base"));
    const steady_clock::time_point then = steady_clock::now();
    EXPECT_LE(std::chrono::milliseconds(100), then - start);
    EXPECT_EQ("1: ", errorOf([&] {
                  handle->getInstance(context, nameSpace, pathOf("TST_Base", "1"), false, false,
                                      false, {});
              }));
    EXPECT_LE(std::chrono::milliseconds(200), steady_clock::now() - then);
}

// Every operation of a handle under its own name, and what an answer of nothing looks like there.
TEST(Faults, MeetEveryOperationUnderItsName) {
    const CIMObjectPath base = pathOf("TST_Base", "1");
    const CIMName none;
    struct Row {
        const char* operation;
        std::function<bool(CIMOMHandle&)> nothing;
    };
    const std::vector<Row> rows = {
        {"getClass",
         [&](CIMOMHandle& handle) {
             return handle.getClass(context, nameSpace, CIMName("TST_Base"), false, true, true, {})
                 .isUninitialized();
         }},
        {"enumerateClasses",
         [&](CIMOMHandle& handle) {
             return handle
                        .enumerateClasses(context, nameSpace, CIMName("TST_Base"), true, false,
                                          true, true)
                        .size() == 0;
         }},
        {"enumerateClassNames",
         [&](CIMOMHandle& handle) {
             return handle.enumerateClassNames(context, nameSpace, CIMName("TST_Base"), true)
                        .size() == 0;
         }},
        {"getInstance",
         [&](CIMOMHandle& handle) {
             return handle.getInstance(context, nameSpace, base, false, false, false, {})
                 .isUninitialized();
         }},
        {"enumerateInstances",
         [&](CIMOMHandle& handle) {
             return handle
                        .enumerateInstances(context, nameSpace, CIMName("TST_Base"), true, false,
                                            false, false, {})
                        .size() == 0;
         }},
        {"enumerateInstanceNames",
         [&](CIMOMHandle& handle) { return names(handle, "TST_Base") == 0; }},
        {"createInstance",
         [&](CIMOMHandle& handle) {
             return handle.createInstance(context, nameSpace, instanceOf("TST_Base", "3"))
                 .getClassName()
                 .isNull();
         }},
        {"modifyInstance",
         [&](CIMOMHandle& handle) {
             handle.modifyInstance(context, nameSpace, instanceOf("TST_Base", "none"), false, {});
             return true;
         }},
        {"deleteInstance",
         [&](CIMOMHandle& handle) {
             handle.deleteInstance(context, nameSpace, pathOf("TST_Base", "none"));
             return true;
         }},
        {"getProperty",
         [&](CIMOMHandle& handle) {
             return handle.getProperty(context, nameSpace, base, CIMName("Id")).isNull();
         }},
        {"associators",
         [&](CIMOMHandle& handle) {
             return handle
                        .associators(context, nameSpace, base, none, none, "", "", false, false, {})
                        .size() == 0;
         }},
        {"associatorNames",
         [&](CIMOMHandle& handle) {
             return handle.associatorNames(context, nameSpace, base, none, none, "", "").size() ==
                    0;
         }},
        {"references",
         [&](CIMOMHandle& handle) {
             return handle.references(context, nameSpace, base, none, "", false, false, {})
                        .size() == 0;
         }},
        {"referenceNames",
         [&](CIMOMHandle& handle) {
             return handle.referenceNames(context, nameSpace, base, none, "").size() == 0;
         }},
    };
    Server server(std::string(stored) + "instance of TST_OtherLink {"
                                        " Source = \"TST_Base.Id=\\\"1\\\"\";"
                                        " Target = \"TST_Other.Id=\\\"2\\\"\"; };\n");
    for (const Row& faulty : rows) {
        SCOPED_TRACE(faulty.operation);
        const std::string where = std::string(faulty.operation) + ":TST_Base=";
        Handle failing(server, {where + "1:as asked"});
        Handle empty(server, {where + "empty"});
        EXPECT_TRUE(faulty.nothing(empty));
        for (const Row& row : rows) {
            const std::string error = errorOf([&] { row.nothing(failing); });
            EXPECT_EQ(&row == &faulty, error == "1: as asked") << row.operation << ": " << error;
        }
    }
}

TEST(Faults, AnUninitialisedInstanceIsTheServersToRefuse) {
    Server server(stored);
    Handle handle(server, {"createInstance:TST_Base=1:as asked"});
    EXPECT_EQ("no error", errorOf([&] {
                  EXPECT_ANY_THROW(handle->createInstance(context, nameSpace, CIMInstance()));
              }));
}

} // namespace
} // namespace embedded::routing::test
