// What a host puts behind a CIMOMHandle.
#include "Throws.h"

#include "embedding/CIMOMHandleRep.h"

#include <Pegasus/Provider/CIMOMHandle.h>
#include <Pegasus/Provider/ProviderException.h>

using namespace Pegasus;
using namespace apitest;

namespace {

const CIMNamespaceName nameSpace("root/cimv2");
const CIMObjectPath path("Disk.Id=1");

/// Every operation of a handle, with arguments that a host can tell from each other.
std::vector<NamedCall> operationsOf(CIMOMHandle& handle, std::vector<std::string>& results) {
    const OperationContext context = [] {
        OperationContext filled;
        filled.insert(IdentityContainer("alice"));
        return filled;
    }();
    const CIMName disk("Disk");
    const CIMName onDisk("OnDisk");
    Array<CIMName> names;
    names.append("Size");
    const CIMPropertyList list(names);
    const CIMInstance instance("Disk");
    const CIMClass cls("Disk");
    auto& h = handle;
    auto& r = results;
    const auto className = [&r](const auto& object) {
        r.push_back(text(object.getClassName().getString()));
    };
    const auto pathText = [&r](const CIMObjectPath& result) {
        r.push_back(text(result.toString()));
    };
    return {
        {"getClass",
         [=, &h] { className(h.getClass(context, nameSpace, disk, true, false, true, list)); }},
        {"enumerateClasses",
         [=, &h] {
             className(h.enumerateClasses(context, nameSpace, disk, true, false, true, false)[0]);
         }},
        {"enumerateClassNames",
         [=, &h, &r] {
             r.push_back(
                 text(h.enumerateClassNames(context, nameSpace, disk, true)[0].getString()));
         }},
        {"createClass", [=, &h] { h.createClass(context, nameSpace, cls); }},
        {"modifyClass", [=, &h] { h.modifyClass(context, nameSpace, cls); }},
        {"deleteClass", [=, &h] { h.deleteClass(context, nameSpace, disk); }},
        {"getInstance",
         [=, &h] { className(h.getInstance(context, nameSpace, path, true, false, true, list)); }},
        {"enumerateInstances",
         [=, &h] {
             className(
                 h.enumerateInstances(context, nameSpace, disk, true, false, true, false, list)[0]);
         }},
        {"enumerateInstanceNames",
         [=, &h] { pathText(h.enumerateInstanceNames(context, nameSpace, disk)[0]); }},
        {"createInstance", [=, &h] { pathText(h.createInstance(context, nameSpace, instance)); }},
        {"modifyInstance", [=, &h] { h.modifyInstance(context, nameSpace, instance, true, list); }},
        {"deleteInstance", [=, &h] { h.deleteInstance(context, nameSpace, path); }},
        {"execQuery", [=, &h] { className(h.execQuery(context, nameSpace, "WQL", "select")[0]); }},
        {"associators",
         [=, &h] {
             className(h.associators(context, nameSpace, path, onDisk, disk, "From", "To", true,
                                     false, list)[0]);
         }},
        {"associatorNames",
         [=, &h] {
             pathText(h.associatorNames(context, nameSpace, path, onDisk, disk, "From", "To")[0]);
         }},
        {"references",
         [=, &h] {
             className(
                 h.references(context, nameSpace, path, onDisk, "From", true, false, list)[0]);
         }},
        {"referenceNames",
         [=, &h] { pathText(h.referenceNames(context, nameSpace, path, onDisk, "From")[0]); }},
        {"getProperty",
         [=, &h, &r] {
             r.push_back(text(h.getProperty(context, nameSpace, path, "Size").toString()));
         }},
        {"setProperty",
         [=, &h] { h.setProperty(context, nameSpace, path, "Size", CIMValue(Uint16(5))); }},
        {"invokeMethod",
         [=, &h, &r] {
             Array<CIMParamValue> in(1, CIMParamValue("Force", CIMValue(Boolean(true))));
             Array<CIMParamValue> out;
             const CIMValue result = h.invokeMethod(context, nameSpace, path, "Reset", in, out);
             r.push_back(text(result.toString()) + text(out[0].getParameterName()));
         }},
    };
}

/// Writes down what it is asked, and answers with names that say which operation answered.
class Recorder : public CIMOMHandleRep {
  public:
    std::vector<std::string> asked;
    int disallowed = 0;

    embedding::Answer perform(const embedding::Operation& operation) override {
        asked.push_back(line(operation));
        const char* const name = embedding::operationName(operation.kind);
        switch (operation.kind) {
        case Kind::GetClass:
        case Kind::EnumerateClasses:
            return {embedding::cursorOver(CIMClass(name))};
        case Kind::EnumerateClassNames:
            return {embedding::cursorOver(CIMName(name))};
        case Kind::GetInstance:
        case Kind::EnumerateInstances:
            return {embedding::cursorOver(CIMInstance(name))};
        case Kind::Associators:
        case Kind::References:
            return {embedding::cursorOver(CIMObject(CIMInstance(name)))};
        case Kind::GetProperty:
            return {embedding::cursorOver(CIMValue(String(name)))};
        case Kind::ModifyInstance:
        case Kind::DeleteInstance:
            return {};
        default:
            return {embedding::cursorOver(CIMObjectPath(name))};
        }
    }
    void disallowProviderUnload() override { ++disallowed; }
    void allowProviderUnload() override { --disallowed; }

  private:
    using Kind = embedding::OperationKind;

    /// All that the operation carries; flags by a letter of their names.
    static std::string line(const embedding::Operation& o) {
        std::string words = embedding::operationName(o.kind);
        const auto add = [&](const char* name, const String& value) {
            if (value.size() != 0)
                words += std::string(" ") + name + "=" + text(value);
        };
        const auto addFlag = [&](const char* name, bool value) {
            words += value ? std::string(" ") + name : "";
        };
        add("user", o.caller.userName);
        add("in", o.nameSpace.getString());
        add("class", o.className.getString());
        add("object", o.objectName.toString());
        if (!o.instance.isUninitialized())
            add("instance", o.instance.getClassName().getString());
        add("member", o.memberName.getString());
        add("assoc", o.assocClass.getString());
        add("result", o.resultClass.getString());
        add("role", o.role);
        add("resultRole", o.resultRole);
        addFlag("local", o.localOnly);
        addFlag("deep", o.deepInheritance);
        addFlag("qualifiers", o.includeQualifiers);
        addFlag("origin", o.includeClassOrigin);
        if (!o.propertyList.isNull())
            add("list", o.propertyList[0].getString());
        return words;
    }
};

/// Sets a factory while it lives.
struct Hosted {
    explicit Hosted(std::function<std::shared_ptr<CIMOMHandleRep>()> factory) {
        embedding::setHandleFactory(std::move(factory));
    }
    ~Hosted() { embedding::setHandleFactory({}); }
};

TEST(CIMOMHandle, FailsWhileThereIsNoServer) {
    CIMOMHandle handle;
    std::vector<std::string> results;
    for (const NamedCall& operation : operationsOf(handle, results)) {
        try {
            operation.call();
            ADD_FAILURE() << operation.name << " throws nothing";
        } catch (const CIMException& exception) {
            EXPECT_EQ(exception.getCode(), CIM_ERR_FAILED) << operation.name;
            EXPECT_EQ(text(exception.getMessage()), "no CIM server in this process");
        }
    }
    EXPECT_NO_THROW(handle.disallowProviderUnload());
    EXPECT_NO_THROW(handle.allowProviderUnload());
}

TEST(CIMOMHandle, FailsWhenTheHostHasNothingForIt) {
    const Hosted hosted([] { return nullptr; });
    CIMOMHandle handle;
    EXPECT_TRUE(throws<CIMException>([&] { handle.deleteInstance({}, nameSpace, path); },
                                     "no CIM server in this process"));
}

TEST(CIMOMHandle, DoesNotSupportWhatTheHostDoesNotOffer) {
    const Hosted hosted([] { return std::make_shared<CIMOMHandleRep>(); });
    CIMOMHandle handle;
    std::vector<std::string> results;
    for (const NamedCall& operation : operationsOf(handle, results)) {
        try {
            operation.call();
            ADD_FAILURE() << operation.name << " throws nothing";
        } catch (const CIMException& exception) {
            EXPECT_EQ(exception.getCode(), CIM_ERR_NOT_SUPPORTED) << operation.name;
            EXPECT_EQ(text(exception.getMessage()),
                      std::string("this host does not offer ") + operation.name);
        }
    }
    EXPECT_NO_THROW(handle.disallowProviderUnload());
    EXPECT_NO_THROW(handle.allowProviderUnload());
}

TEST(CIMOMHandle, HandsEveryOperationToTheHostAndItsAnswerBack) {
    const auto recorder = std::make_shared<Recorder>();
    const Hosted hosted([&] { return recorder; });
    CIMOMHandle handle;
    std::vector<std::string> results;
    for (const NamedCall& operation : operationsOf(handle, results)) {
        try {
            operation.call();
        } catch (const CIMException& refused) {
            EXPECT_EQ(text(refused.getMessage()),
                      std::string("this host does not offer ") + operation.name);
            results.push_back(std::string("no ") + operation.name);
        }
    }
    const std::string alice = " user=alice in=root/cimv2 ";
    const std::string disk = alice + "class=Disk";
    const std::string one = alice + "object=Disk.Id=1";
    const std::string ends = one + " assoc=OnDisk result=Disk role=From resultRole=To";
    EXPECT_EQ(recorder->asked,
              (std::vector<std::string>{
                  "getClass" + disk + " local origin list=Size",
                  "enumerateClasses" + disk + " deep qualifiers",
                  "enumerateClassNames" + disk + " deep",
                  "getInstance" + one + " local origin list=Size",
                  "enumerateInstances" + disk + " deep qualifiers list=Size",
                  "enumerateInstanceNames" + disk,
                  "createInstance" + alice + "instance=Disk",
                  "modifyInstance" + alice + "instance=Disk qualifiers list=Size",
                  "deleteInstance" + one,
                  "associators" + ends + " qualifiers list=Size",
                  "associatorNames" + ends,
                  "references" + one + " result=OnDisk role=From qualifiers list=Size",
                  "referenceNames" + one + " result=OnDisk role=From",
                  "getProperty" + one + " member=Size",
              }));
    EXPECT_EQ(results, (std::vector<std::string>{
                           "getClass", "enumerateClasses", "enumerateClassNames", "no createClass",
                           "no modifyClass", "no deleteClass", "getInstance", "enumerateInstances",
                           "enumerateInstanceNames", "createInstance", "no execQuery",
                           "associators", "associatorNames", "references", "referenceNames",
                           "getProperty", "no setProperty", "no invokeMethod"}));
}

TEST(CIMOMHandle, SharesWhatStandsBehindItWithItsCopies) {
    int made = 0;
    std::weak_ptr<Recorder> latest;
    const Hosted hosted([&] {
        ++made;
        auto recorder = std::make_shared<Recorder>();
        latest = recorder;
        return recorder;
    });
    {
        CIMOMHandle other;
        CIMOMHandle original;
        CIMOMHandle copy(original);
        EXPECT_EQ(made, 2);
        const std::shared_ptr<Recorder> shared = latest.lock();
        copy.disallowProviderUnload();
        original.disallowProviderUnload();
        EXPECT_EQ(shared->disallowed, 2);
        other = copy;
        other.allowProviderUnload();
        EXPECT_EQ(shared->disallowed, 1);
        EXPECT_EQ(made, 2);
    }
    EXPECT_TRUE(latest.expired());
}

TEST(CIMOMHandle, KeepsItsServerWhenTheFactoryIsTakenBack) {
    const auto recorder = std::make_shared<Recorder>();
    CIMOMHandle before;
    embedding::setHandleFactory([&] { return recorder; });
    CIMOMHandle during;
    embedding::setHandleFactory({});
    during.disallowProviderUnload();
    before.disallowProviderUnload();
    CIMOMHandle().disallowProviderUnload();
    EXPECT_EQ(recorder->disallowed, 1);
}

} // namespace
