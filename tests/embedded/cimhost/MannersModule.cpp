// A provider module for the program's tests. A provider behaves as its name says:
//   Good    delivers one instance, and says on standard output what happens to it
//   Quiet   does as Good and says nothing
//   Slow    takes a second to do so
//   Stuck   does not return from a request
//   Unready does not return from initialize()
//   Endless does not return from terminate()
//   Asking  asks the server first which providers there are, and says what it hears
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <chrono>
#include <iostream>
#include <string>
#include <thread>

namespace {

using namespace Pegasus;

[[noreturn]] void forEver() {
    for (;;)
        std::this_thread::sleep_for(std::chrono::hours(1));
}

class Provider : public CIMInstanceProvider {
  public:
    explicit Provider(const String& name) : _name(name.getCString()) {}

    void initialize(CIMOMHandle&) override {
        say("initialize");
        if (_name == "Unready")
            forEver();
    }
    void terminate() override {
        say("terminate");
        if (_name == "Endless")
            forEver();
        delete this;
    }

    void getInstance(const OperationContext&, const CIMObjectPath&, const Boolean, const Boolean,
                     const CIMPropertyList&, InstanceResponseHandler&) override {
        throw CIMObjectNotFoundException("");
    }
    void enumerateInstances(const OperationContext&, const CIMObjectPath&, const Boolean,
                            const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler&) override {
        throw CIMNotSupportedException("");
    }
    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath& reference,
                                ObjectPathResponseHandler& handler) override {
        say("enumerateInstanceNames");
        if (_name == "Stuck")
            forEver();
        if (_name == "Asking")
            askBack();
        if (_name == "Slow")
            std::this_thread::sleep_for(std::chrono::seconds(1));
        Array<CIMKeyBinding> keys;
        keys.append(CIMKeyBinding(CIMName("Id"), String("one"), CIMKeyBinding::STRING));
        handler.processing();
        handler.deliver(
            CIMObjectPath(String(), CIMNamespaceName(), reference.getClassName(), keys));
        handler.complete();
        say("enumerated");
    }
    void modifyInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        const Boolean, const CIMPropertyList&, ResponseHandler&) override {
        throw CIMNotSupportedException("");
    }
    void createInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        ObjectPathResponseHandler&) override {
        throw CIMNotSupportedException("");
    }
    void deleteInstance(const OperationContext&, const CIMObjectPath&, ResponseHandler&) override {
        throw CIMNotSupportedException("");
    }

  private:
    void say(const std::string& what) {
        if (_name != "Quiet")
            std::cout << _name << " " << what << std::endl;
    }

    void askBack() {
        try {
            CIMOMHandle handle;
            const Array<CIMObjectPath> found = handle.enumerateInstanceNames(
                OperationContext(), CIMNamespaceName("root/PG_InterOp"), CIMName("PG_Provider"));
            say("hears of " + std::to_string(found.size()));
        } catch (const CIMException& error) {
            const CString message = error.getMessage().getCString();
            say("hears " + std::to_string(error.getCode()) + " " +
                static_cast<const char*>(message));
        }
    }

    const std::string _name;
};

} // namespace

extern "C" PEGASUS_EXPORT PEGASUS_NAMESPACE(CIMProvider) *
    PegasusCreateProvider(const PEGASUS_NAMESPACE(String) & providerName) {
    return new Provider(providerName);
}
