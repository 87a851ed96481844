// A module that shows objects which are loaded in one namespace as its own in another: those in
// shown/NAMESPACE as if they were published in NAMESPACE. What a provider publishes has host and
// namespace in its paths, which objects of the repository do not; so cimhost can show what another
// server's own providers publish.
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <functional>

PEGASUS_USING_PEGASUS;

namespace {

CIMObjectPath localPath(const CIMObjectPath& path) {
    return CIMObjectPath(String(), CIMNamespaceName(), path.getClassName(), path.getKeyBindings());
}

[[noreturn]] void refuse() {
    throw CIMNotSupportedException("The server's own objects cannot be changed.");
}

class ShownProvider : public CIMInstanceProvider {
  public:
    void initialize(CIMOMHandle& cimom) override { _cimom = cimom; }
    void terminate() override { delete this; }

    void getInstance(const OperationContext&, const CIMObjectPath& path, const Boolean,
                     const Boolean, const CIMPropertyList&,
                     InstanceResponseHandler& handler) override {
        bool found = false;
        each(path, [&](const CIMInstance& instance) {
            if (!found && localPath(instance.getPath()) == localPath(path)) {
                found = true;
                handler.deliver(instance);
            }
        });
        if (!found)
            throw CIMObjectNotFoundException(localPath(path).toString());
        handler.complete();
    }
    void enumerateInstances(const OperationContext&, const CIMObjectPath& path, const Boolean,
                            const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        each(path, [&](const CIMInstance& instance) { handler.deliver(instance); });
        handler.complete();
    }
    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath& path,
                                ObjectPathResponseHandler& handler) override {
        each(path, [&](const CIMInstance& instance) { handler.deliver(instance.getPath()); });
        handler.complete();
    }
    void modifyInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        const Boolean, const CIMPropertyList&, ResponseHandler&) override {
        refuse();
    }
    void createInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        ObjectPathResponseHandler&) override {
        refuse();
    }
    void deleteInstance(const OperationContext&, const CIMObjectPath&, ResponseHandler&) override {
        refuse();
    }

  private:
    void each(const CIMObjectPath& request, const std::function<void(const CIMInstance&)>& use) {
        const CIMNamespaceName shown(String("shown/") + request.getNameSpace().getString());
        const Array<CIMInstance> found =
            _cimom.enumerateInstances(OperationContext(), shown, request.getClassName(), true,
                                      false, true, true, CIMPropertyList());
        for (Uint32 i = 0; i < found.size(); ++i) {
            CIMInstance instance = found[i].clone();
            CIMObjectPath path = instance.getPath();
            path.setHost(request.getHost());
            path.setNameSpace(request.getNameSpace());
            instance.setPath(path);
            use(instance);
        }
    }

    CIMOMHandle _cimom;
};

} // namespace

extern "C" PEGASUS_EXPORT PEGASUS_NAMESPACE(CIMProvider) *
    PegasusCreateProvider(const PEGASUS_NAMESPACE(String) & /*providerName*/) {
    return new ShownProvider;
}
