// What a host puts behind a CIMOMHandle.
#include "Throws.h"

#include "hosting/CIMOMHandleRep.h"

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

    CIMClass getClass(const OperationContext& context, const CIMNamespaceName& ns,
                      const CIMName& className, Boolean localOnly, Boolean includeQualifiers,
                      Boolean includeClassOrigin, const CIMPropertyList& list) override {
        note(context, ns, className, localOnly, includeQualifiers, includeClassOrigin, list);
        return CIMClass("getClass");
    }
    Array<CIMClass> enumerateClasses(const OperationContext& context, const CIMNamespaceName& ns,
                                     const CIMName& className, Boolean deep, Boolean localOnly,
                                     Boolean includeQualifiers,
                                     Boolean includeClassOrigin) override {
        note(context, ns, className, deep, localOnly, includeQualifiers, includeClassOrigin);
        return Array<CIMClass>(1, CIMClass("enumerateClasses"));
    }
    Array<CIMName> enumerateClassNames(const OperationContext& context, const CIMNamespaceName& ns,
                                       const CIMName& className, Boolean deep) override {
        note(context, ns, className, deep);
        return Array<CIMName>(1, CIMName("enumerateClassNames"));
    }
    void createClass(const OperationContext& context, const CIMNamespaceName& ns,
                     const CIMClass& cls) override {
        note(context, ns, "create", cls.getClassName());
    }
    void modifyClass(const OperationContext& context, const CIMNamespaceName& ns,
                     const CIMClass& cls) override {
        note(context, ns, "modify", cls.getClassName());
    }
    void deleteClass(const OperationContext& context, const CIMNamespaceName& ns,
                     const CIMName& className) override {
        note(context, ns, "delete", className);
    }
    CIMInstance getInstance(const OperationContext& context, const CIMNamespaceName& ns,
                            const CIMObjectPath& name, Boolean localOnly, Boolean includeQualifiers,
                            Boolean includeClassOrigin, const CIMPropertyList& list) override {
        note(context, ns, name, localOnly, includeQualifiers, includeClassOrigin, list);
        return CIMInstance("getInstance");
    }
    Array<CIMInstance> enumerateInstances(const OperationContext& context,
                                          const CIMNamespaceName& ns, const CIMName& className,
                                          Boolean deep, Boolean localOnly,
                                          Boolean includeQualifiers, Boolean includeClassOrigin,
                                          const CIMPropertyList& list) override {
        note(context, ns, className, deep, localOnly, includeQualifiers, includeClassOrigin, list);
        return Array<CIMInstance>(1, CIMInstance("enumerateInstances"));
    }
    Array<CIMObjectPath> enumerateInstanceNames(const OperationContext& context,
                                                const CIMNamespaceName& ns,
                                                const CIMName& className) override {
        note(context, ns, className);
        return Array<CIMObjectPath>(1, CIMObjectPath("enumerateInstanceNames"));
    }
    CIMObjectPath createInstance(const OperationContext& context, const CIMNamespaceName& ns,
                                 const CIMInstance& instance) override {
        note(context, ns, instance.getClassName());
        return CIMObjectPath("createInstance");
    }
    void modifyInstance(const OperationContext& context, const CIMNamespaceName& ns,
                        const CIMInstance& instance, Boolean includeQualifiers,
                        const CIMPropertyList& list) override {
        note(context, ns, instance.getClassName(), includeQualifiers, list);
    }
    void deleteInstance(const OperationContext& context, const CIMNamespaceName& ns,
                        const CIMObjectPath& name) override {
        note(context, ns, name);
    }
    Array<CIMObject> execQuery(const OperationContext& context, const CIMNamespaceName& ns,
                               const String& language, const String& query) override {
        note(context, ns, language, query);
        return Array<CIMObject>(1, CIMInstance("execQuery"));
    }
    Array<CIMObject> associators(const OperationContext& context, const CIMNamespaceName& ns,
                                 const CIMObjectPath& name, const CIMName& assocClass,
                                 const CIMName& resultClass, const String& role,
                                 const String& resultRole, Boolean includeQualifiers,
                                 Boolean includeClassOrigin, const CIMPropertyList& list) override {
        note(context, ns, name, assocClass, resultClass, role, resultRole, includeQualifiers,
             includeClassOrigin, list);
        return Array<CIMObject>(1, CIMInstance("associators"));
    }
    Array<CIMObjectPath> associatorNames(const OperationContext& context,
                                         const CIMNamespaceName& ns, const CIMObjectPath& name,
                                         const CIMName& assocClass, const CIMName& resultClass,
                                         const String& role, const String& resultRole) override {
        note(context, ns, name, assocClass, resultClass, role, resultRole);
        return Array<CIMObjectPath>(1, CIMObjectPath("associatorNames"));
    }
    Array<CIMObject> references(const OperationContext& context, const CIMNamespaceName& ns,
                                const CIMObjectPath& name, const CIMName& resultClass,
                                const String& role, Boolean includeQualifiers,
                                Boolean includeClassOrigin, const CIMPropertyList& list) override {
        note(context, ns, name, resultClass, role, includeQualifiers, includeClassOrigin, list);
        return Array<CIMObject>(1, CIMInstance("references"));
    }
    Array<CIMObjectPath> referenceNames(const OperationContext& context, const CIMNamespaceName& ns,
                                        const CIMObjectPath& name, const CIMName& resultClass,
                                        const String& role) override {
        note(context, ns, name, resultClass, role);
        return Array<CIMObjectPath>(1, CIMObjectPath("referenceNames"));
    }
    CIMValue getProperty(const OperationContext& context, const CIMNamespaceName& ns,
                         const CIMObjectPath& name, const CIMName& property) override {
        note(context, ns, name, property);
        return CIMValue(String("getProperty"));
    }
    void setProperty(const OperationContext& context, const CIMNamespaceName& ns,
                     const CIMObjectPath& name, const CIMName& property,
                     const CIMValue& value) override {
        note(context, ns, name, property, value.toString());
    }
    CIMValue invokeMethod(const OperationContext& context, const CIMNamespaceName& ns,
                          const CIMObjectPath& name, const CIMName& method,
                          const Array<CIMParamValue>& in, Array<CIMParamValue>& out) override {
        note(context, ns, name, method, in[0].getParameterName());
        out.append(CIMParamValue("Out", CIMValue(Boolean(true))));
        return CIMValue(String("invokeMethod"));
    }
    void disallowProviderUnload() override { ++disallowed; }
    void allowProviderUnload() override { --disallowed; }

  private:
    static std::string word(Boolean x) { return x ? "yes" : "no"; }
    static std::string word(const char* x) { return x; }
    static std::string word(const String& x) { return text(x); }
    static std::string word(const CIMName& x) { return text(x.getString()); }
    static std::string word(const CIMNamespaceName& x) { return text(x.getString()); }
    static std::string word(const CIMObjectPath& x) { return text(x.toString()); }
    static std::string word(const CIMPropertyList& x) { return text(x[0].getString()); }
    static std::string word(const OperationContext& x) {
        return text(IdentityContainer(x.get(IdentityContainer::NAME)).getUserName());
    }

    template <class... Arguments>
    void note(const Arguments&... arguments) {
        std::string line;
        ((line += word(arguments) + " "), ...);
        asked.push_back(line);
    }
};

/// Sets a factory while it lives.
struct Hosted {
    explicit Hosted(std::function<std::shared_ptr<CIMOMHandleRep>()> factory) {
        hosting::setHandleFactory(std::move(factory));
    }
    ~Hosted() { hosting::setHandleFactory({}); }
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
    for (const NamedCall& operation : operationsOf(handle, results))
        operation.call();
    EXPECT_EQ(recorder->asked, (std::vector<std::string>{
                                   "alice root/cimv2 Disk yes no yes Size ",
                                   "alice root/cimv2 Disk yes no yes no ",
                                   "alice root/cimv2 Disk yes ",
                                   "alice root/cimv2 create Disk ",
                                   "alice root/cimv2 modify Disk ",
                                   "alice root/cimv2 delete Disk ",
                                   "alice root/cimv2 Disk.Id=1 yes no yes Size ",
                                   "alice root/cimv2 Disk yes no yes no Size ",
                                   "alice root/cimv2 Disk ",
                                   "alice root/cimv2 Disk ",
                                   "alice root/cimv2 Disk yes Size ",
                                   "alice root/cimv2 Disk.Id=1 ",
                                   "alice root/cimv2 WQL select ",
                                   "alice root/cimv2 Disk.Id=1 OnDisk Disk From To yes no Size ",
                                   "alice root/cimv2 Disk.Id=1 OnDisk Disk From To ",
                                   "alice root/cimv2 Disk.Id=1 OnDisk From yes no Size ",
                                   "alice root/cimv2 Disk.Id=1 OnDisk From ",
                                   "alice root/cimv2 Disk.Id=1 Size ",
                                   "alice root/cimv2 Disk.Id=1 Size 5 ",
                                   "alice root/cimv2 Disk.Id=1 Reset Force ",
                               }));
    EXPECT_EQ(results, (std::vector<std::string>{
                           "getClass", "enumerateClasses", "enumerateClassNames", "getInstance",
                           "enumerateInstances", "enumerateInstanceNames", "createInstance",
                           "execQuery", "associators", "associatorNames", "references",
                           "referenceNames", "getProperty", "invokeMethodOut"}));
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
    hosting::setHandleFactory([&] { return recorder; });
    CIMOMHandle during;
    hosting::setHandleFactory({});
    during.disallowProviderUnload();
    before.disallowProviderUnload();
    CIMOMHandle().disallowProviderUnload();
    EXPECT_EQ(recorder->disallowed, 1);
}

} // namespace
