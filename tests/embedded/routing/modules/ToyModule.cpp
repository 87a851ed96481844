// A provider module whose providers do what their script says. Some names are special:
// "Unknown" is not known, "CreationThrows" throws while it is made, "ThrowsOwnType" throws an
// exception of a type of this library's own out of initialize(), and "NoInterface" is neither an
// instance nor an association provider.
#include "Script.h"

#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <exception>

namespace {

using namespace Pegasus;

struct OwnType : std::exception {
    const char* what() const noexcept override { return "of the module's own type"; }
};

void begin(const std::string& name, CIMOMHandle& handle) {
    toy::note("initialize " + name);
    if (name == "ThrowsOwnType")
        throw OwnType();
    const toy::Script script = toy::scriptOf(name);
    if (script.initialize)
        script.initialize(handle);
}

void end(const std::string& name) {
    toy::note("terminate " + name);
    const toy::Script script = toy::scriptOf(name);
    if (script.terminate)
        script.terminate();
}

/// Deletes the provider also when its script throws.
template <class Provider>
struct Deleted {
    Provider* provider;
    ~Deleted() { delete provider; }
};

class NoInterfaceProvider : public CIMProvider {
  public:
    explicit NoInterfaceProvider(const std::string& name) : _name(name) {}
    void initialize(CIMOMHandle& handle) override { begin(_name, handle); }
    void terminate() override {
        const Deleted<NoInterfaceProvider> deleted{this};
        end(_name);
    }

  private:
    const std::string _name;
};

class ToyProvider : public CIMInstanceProvider, public CIMAssociationProvider {
  public:
    explicit ToyProvider(const std::string& name) : _name(name) {}

    void initialize(CIMOMHandle& handle) override {
        _handle = handle;
        begin(_name, handle);
    }
    void terminate() override {
        const Deleted<ToyProvider> deleted{this};
        end(_name);
    }

    void getInstance(const OperationContext& context, const CIMObjectPath& path, const Boolean,
                     const Boolean, const CIMPropertyList& propertyList,
                     InstanceResponseHandler& handler) override {
        toy::Call call = begun("getInstance", context, path);
        call.propertyList = propertyList;
        call.instances = &handler;
        answer(call);
    }
    void enumerateInstances(const OperationContext& context, const CIMObjectPath& path,
                            const Boolean, const Boolean, const CIMPropertyList& propertyList,
                            InstanceResponseHandler& handler) override {
        toy::Call call = begun("enumerateInstances", context, path);
        call.propertyList = propertyList;
        call.instances = &handler;
        answer(call);
    }
    void enumerateInstanceNames(const OperationContext& context, const CIMObjectPath& path,
                                ObjectPathResponseHandler& handler) override {
        toy::Call call = begun("enumerateInstanceNames", context, path);
        call.paths = &handler;
        answer(call);
    }
    void modifyInstance(const OperationContext& context, const CIMObjectPath& path,
                        const CIMInstance& instance, const Boolean,
                        const CIMPropertyList& propertyList, ResponseHandler&) override {
        toy::Call call = begun("modifyInstance", context, path);
        call.instance = instance;
        call.propertyList = propertyList;
        answer(call);
    }
    void createInstance(const OperationContext& context, const CIMObjectPath& path,
                        const CIMInstance& instance, ObjectPathResponseHandler& handler) override {
        toy::Call call = begun("createInstance", context, path);
        call.instance = instance;
        call.paths = &handler;
        answer(call);
    }
    void deleteInstance(const OperationContext& context, const CIMObjectPath& path,
                        ResponseHandler&) override {
        answer(begun("deleteInstance", context, path));
    }

    void associators(const OperationContext& context, const CIMObjectPath& path,
                     const CIMName& associationClass, const CIMName& resultClass,
                     const String& role, const String& resultRole, const Boolean, const Boolean,
                     const CIMPropertyList& propertyList, ObjectResponseHandler& handler) override {
        toy::Call call = begun("associators", context, path);
        call.associationClass = associationClass;
        call.resultClass = resultClass;
        call.role = role;
        call.resultRole = resultRole;
        call.propertyList = propertyList;
        call.objects = &handler;
        answer(call);
    }
    void associatorNames(const OperationContext& context, const CIMObjectPath& path,
                         const CIMName& associationClass, const CIMName& resultClass,
                         const String& role, const String& resultRole,
                         ObjectPathResponseHandler& handler) override {
        toy::Call call = begun("associatorNames", context, path);
        call.associationClass = associationClass;
        call.resultClass = resultClass;
        call.role = role;
        call.resultRole = resultRole;
        call.paths = &handler;
        answer(call);
    }
    void references(const OperationContext& context, const CIMObjectPath& path,
                    const CIMName& resultClass, const String& role, const Boolean, const Boolean,
                    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) override {
        toy::Call call = begun("references", context, path);
        call.resultClass = resultClass;
        call.role = role;
        call.propertyList = propertyList;
        call.objects = &handler;
        answer(call);
    }
    void referenceNames(const OperationContext& context, const CIMObjectPath& path,
                        const CIMName& resultClass, const String& role,
                        ObjectPathResponseHandler& handler) override {
        toy::Call call = begun("referenceNames", context, path);
        call.resultClass = resultClass;
        call.role = role;
        call.paths = &handler;
        answer(call);
    }

  private:
    toy::Call begun(const char* operation, const OperationContext& context,
                    const CIMObjectPath& path) {
        toy::Call call;
        call.operation = operation;
        call.context = context;
        call.path = path;
        call.handle = &_handle;
        return call;
    }
    void answer(const toy::Call& call) const {
        const toy::Script script = toy::scriptOf(_name);
        if (script.answer)
            script.answer(call);
    }

    const std::string _name;
    CIMOMHandle _handle;
};

} // namespace

extern "C" PEGASUS_EXPORT Pegasus::CIMProvider*
PegasusCreateProvider(const Pegasus::String& providerName) {
    const std::string name(static_cast<const char*>(providerName.getCString()));
    if (name == "Unknown")
        return nullptr;
    if (name == "CreationThrows")
        throw OwnType();
    if (name == "NoInterface")
        return new NoInterfaceProvider(name);
    return new ToyProvider(name);
}
