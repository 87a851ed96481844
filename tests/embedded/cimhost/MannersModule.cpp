// A provider module for tests of the program. A provider behaves as its name says:
//   Good    answers, and says on standard output what happens to it
//   Quiet   does as Good and says nothing
//   Slow    takes a second to do so
//   Stuck   does not return from a request
//   Unready does not return from initialize()
//   Endless does not return from terminate()
//   Asking  asks the server first which providers there are, and says what it hears
//   Null    is not made
//   Creating.., Initializing.., Terminating..   throw then; throwA() has what
// and in a request besides as the class says that it is asked for: see Provider::answer, and for
// the names of TST_WhoAsks and TST_AsksWhoAsks tellWhoAsks().
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <chrono>
#include <functional>
#include <iostream>
#include <map>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using namespace Pegasus;

[[noreturn]] void forEver() {
    for (;;)
        std::this_thread::sleep_for(std::chrono::hours(1));
}

std::string text(const String& string) { return static_cast<const char*>(string.getCString()); }

[[noreturn]] void throwA(const std::string& kind) {
    if (kind == "Cim")
        throw CIMException(CIM_ERR_ACCESS_DENIED, "not you");
    if (kind == "Success")
        throw CIMException(CIM_ERR_SUCCESS, "all is well");
    if (kind == "Pegasus")
        throw Exception("of the provider interface");
    if (kind == "Standard")
        throw std::runtime_error("of the standard library");
    if (kind == "Long")
        throw std::runtime_error(std::string(10'000'000, 'x'));
    if (kind == "Bytes")
        throw std::runtime_error("no UTF-8: \xff, no XML: \x01");
    if (kind == "BadAlloc")
        throw std::bad_alloc();
    if (kind == "Null")
        throw nullptr;
    throw 42;
}

void throwWhen(const std::string& when, const std::string& what) {
    if (what.rfind(when, 0) == 0)
        throwA(what.substr(when.size()));
}

template <class Object>
Object made(const CIMName& className, const String& id);

template <>
CIMObjectPath made(const CIMName& className, const String& id) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Id"), id, CIMKeyBinding::STRING));
    return {String(), CIMNamespaceName(), className, keys};
}

template <>
CIMInstance made(const CIMName& className, const String& id) {
    CIMInstance instance(className);
    instance.addProperty(CIMProperty(CIMName("Id"), id));
    instance.setPath(made<CIMObjectPath>(className, id));
    return instance;
}

template <class Object>
Object withoutPath(const CIMName& className);

template <>
CIMObjectPath withoutPath(const CIMName& className) {
    return {String(), CIMNamespaceName(), className};
}

template <>
CIMInstance withoutPath(const CIMName& className) {
    return CIMInstance(className);
}

class Provider : public CIMInstanceProvider {
  public:
    explicit Provider(const String& name) : _name(text(name)) {}

    void initialize(CIMOMHandle&) override {
        say("initialize");
        if (_name == "Unready")
            forEver();
        throwWhen("Initializing", _name);
    }
    void terminate() override {
        say("terminate");
        if (_name == "Endless")
            forEver();
        const std::string name = _name;
        delete this;
        throwWhen("Terminating", name);
    }

    void getInstance(const OperationContext&, const CIMObjectPath& reference, const Boolean,
                     const Boolean, const CIMPropertyList&,
                     InstanceResponseHandler& handler) override {
        answer<CIMInstance>(reference.getClassName(), handler);
    }
    void enumerateInstances(const OperationContext&, const CIMObjectPath& reference, const Boolean,
                            const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        answer<CIMInstance>(reference.getClassName(), handler);
    }
    void enumerateInstanceNames(const OperationContext& context, const CIMObjectPath& reference,
                                ObjectPathResponseHandler& handler) override {
        say("enumerateInstanceNames");
        const std::string className = text(reference.getClassName().getString());
        if (className == "TST_WhoAsks" || className == "TST_AsksWhoAsks")
            return tellWhoAsks(context, reference, className == "TST_AsksWhoAsks", handler);
        if (_name == "Stuck")
            forEver();
        if (_name == "Asking")
            askBack();
        if (_name == "Slow")
            std::this_thread::sleep_for(std::chrono::seconds(1));
        answer<CIMObjectPath>(reference.getClassName(), handler);
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
    // As the class says, TST_X for one of these X; with one object for any other.
    template <class Object, class Handler>
    void answer(const CIMName& className, Handler& handler) {
        const std::string manner = text(className.getString()).substr(4);
        const auto deliver = [&](const String& id) {
            handler.deliver(made<Object>(className, id));
        };
        const auto deliverOne = [&] { deliver("one"); };
        const auto flood = [&] {
            for (unsigned i = 0; i < 100'000; ++i)
                deliver(std::to_string(i).c_str());
        };
        const auto ask = [](const char* other) {
            CIMOMHandle().enumerateInstanceNames(OperationContext(), CIMNamespaceName("root/test"),
                                                 CIMName(other));
        };
        const auto completeAnd = [&](const std::function<void()>& more) {
            deliverOne();
            handler.complete();
            more();
        };
        using Manners = std::map<std::string, std::function<void()>>;
        const Manners completed{
            {"DeliversNone", [] {}},
            {"Floods", flood},
            {"Huge", [&] { deliver(std::string(20'000'000, 'x').c_str()); }},
            {"OtherClass", [&] { handler.deliver(made<Object>(CIMName("TST_Thing"), "one")); }},
            {"UnknownClass", [&] { handler.deliver(made<Object>(CIMName("TST_None"), "one")); }},
            {"NoPath", [&] { handler.deliver(withoutPath<Object>(className)); }},
            {"Uninitialized", [&] { handler.deliver(Object()); }},
            {"Controls", [&] { deliver("\x01 ]]> & < \x1b[2J \xef\xbf\xbf"); }},
            {"HalfACharacter", [&] { deliver(String().append(Char16(0xd800))); }},
        };
        const Manners others{
            {"Nothing", [] {}},
            {"Incomplete", deliverOne},
            {"CompletesTwice", [&] { completeAnd([&] { handler.complete(); }); }},
            {"DeliversLate", [&] { completeAnd(deliverOne); }},
            {"ThrowsLate", [&] { completeAnd([] { throwA("Cim"); }); }},
            {"FloodsIncomplete", flood},
            {"FloodsAndThrows",
             [&] {
                 flood();
                 throwA("Standard");
             }},
            {"AsksForItself", [&] { ask("TST_AsksForItself"); }},
            {"AsksTheOther", [&] { ask("TST_AsksBack"); }}, // which is the other provider's
            {"AsksBack", [&] { ask("TST_AsksTheOther"); }},
            {"AsksForNothing", [&] { ask("TST_None"); }},
        };
        handler.processing();
        if (const auto found = others.find(manner); found != others.end()) {
            found->second();
            return;
        }
        throwWhen("Throws", manner);
        if (const auto found = completed.find(manner); found != completed.end())
            found->second();
        else
            deliver("one");
        handler.complete();
    }

    // As whom it is asked, and as whom TST_WhoAsks is when it is asked from here.
    static void tellWhoAsks(const OperationContext& context, const CIMObjectPath& reference,
                            bool askingOn, ObjectPathResponseHandler& handler) {
        handler.processing();
        const IdentityContainer identity(context.get(IdentityContainer::NAME));
        handler.deliver(made<CIMObjectPath>(reference.getClassName(), identity.getUserName()));
        if (askingOn) {
            const Array<CIMObjectPath> heard = CIMOMHandle().enumerateInstanceNames(
                context, reference.getNameSpace(), CIMName("TST_WhoAsks"));
            handler.deliver(made<CIMObjectPath>(
                reference.getClassName(), "heard " + heard[0].getKeyBindings()[0].getValue()));
        }
        handler.complete();
    }

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
            say("hears " + std::to_string(error.getCode()) + " " + text(error.getMessage()));
        }
    }

    const std::string _name;
};

} // namespace

extern "C" PEGASUS_EXPORT PEGASUS_NAMESPACE(CIMProvider) *
    PegasusCreateProvider(const PEGASUS_NAMESPACE(String) & providerName) {
    throwWhen("Creating", text(providerName));
    return providerName == "Null" ? nullptr : new Provider(providerName);
}
