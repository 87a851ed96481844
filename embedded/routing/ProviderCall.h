// One call of one interface of one provider, and its response handlers, which hold providers to the
// rules of a CIM server.
#pragma once

#include "routing/Errors.h"
#include "routing/ProviderModule.h"

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>

namespace embedded::routing {

/// The containers that a provider may count on.
inline Pegasus::OperationContext contextFor(const Caller& caller) {
    Pegasus::OperationContext context;
    context.insert(Pegasus::IdentityContainer(caller.userName));
    context.insert(Pegasus::AcceptLanguageListContainer(Pegasus::AcceptLanguageList()));
    context.insert(Pegasus::ContentLanguageListContainer(Pegasus::ContentLanguageList()));
    return context;
}

/// Calls `function` with the provider's `Interface`. Throws whatever `function` throws as a
/// CIMException, but for CIM_ERR_SUCCESS, which is no error.
template <class Interface, class Function>
void callProvider(Provider& provider, const Pegasus::CIMName& className, Function&& function) {
    provider.call(
        className,
        [&](Pegasus::CIMProvider& object) {
            try {
                // Here and not further out, while the module is sure to be loaded: an exception may
                // be of a type of the module's own.
                asCimErrors([&] {
                    auto* const asked = dynamic_cast<Interface*>(&object);
                    if (asked == nullptr)
                        throw Pegasus::CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED,
                                                    "Invalid provider interface.");
                    function(*asked);
                });
            } catch (const Pegasus::CIMException& error) {
                if (error.getCode() != Pegasus::CIM_ERR_SUCCESS)
                    throw;
            }
        });
}

/// How many objects the operation returns.
enum class Expected { One, Any };

// A delivered object becomes the server's own copy: its provider may keep it, change it, and
// deliver it on another thread at the same time.

inline Pegasus::CIMObjectPath ownCopy(const Pegasus::CIMObjectPath& path) { return path; }
template <class Object>
Object ownCopy(const Object& object) {
    return object.clone();
}

inline bool isUninitialized(const Pegasus::CIMObjectPath& path) {
    return path.getClassName().isNull();
}
template <class Object>
bool isUninitialized(const Object& object) {
    return object.isUninitialized();
}

/// One provider call's response handler. Objects count once complete() is called; of an operation
/// with any number of objects, each full hundred counts at once.
///
/// Thread-safety: none; a handler belongs to one call.
template <class Handler, class Object>
class ResponseCollector : public Handler {
  public:
    explicit ResponseCollector(Expected expected) : _expected(expected) {}

    void processing() override {}

    void deliver(const Object& object) override {
        if (_expected == Expected::One && (_pending.size() != 0 || _objects.size() != 0))
            throw failed("Too many objects delivered.");
        if (isUninitialized(object))
            throw failed("The object is not initialized.");
        _pending.append(ownCopy(object));
        if (_expected == Expected::Any && _pending.size() == chunk)
            flush();
    }

    void deliver(const Pegasus::Array<Object>& objects) override {
        for (Pegasus::Uint32 i = 0; i < objects.size(); ++i)
            deliver(objects[i]);
    }

    void complete() override {
        if (_expected == Expected::One && _pending.size() == 0 && _objects.size() == 0) {
            _completedEmpty = true;
            throw failed("Too few objects delivered.");
        }
        flush();
    }

    /// Whether one object was expected and complete() was called without any, because the provider
    /// has caught the exception that said so.
    bool completedEmpty() const { return _completedEmpty; }

    /// The objects that reach the client.
    const Pegasus::Array<Object>& objects() const { return _objects; }

  private:
    static constexpr Pegasus::Uint32 chunk = 100;

    static Pegasus::CIMException failed(const char* text) {
        return Pegasus::CIMException(Pegasus::CIM_ERR_FAILED, text);
    }

    void flush() {
        _objects.appendArray(_pending);
        _pending.clear();
    }

    const Expected _expected;
    bool _completedEmpty = false;
    Pegasus::Array<Object> _pending;
    Pegasus::Array<Object> _objects;
};

using InstanceCollector = ResponseCollector<Pegasus::InstanceResponseHandler, Pegasus::CIMInstance>;
using PathCollector = ResponseCollector<Pegasus::ObjectPathResponseHandler, Pegasus::CIMObjectPath>;
using ObjectCollector = ResponseCollector<Pegasus::ObjectResponseHandler, Pegasus::CIMObject>;

/// For the operations that return nothing.
class Acknowledgement : public Pegasus::ResponseHandler {
  public:
    void processing() override {}
    void complete() override {}
};

} // namespace embedded::routing
