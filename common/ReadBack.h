// Reading back what other providers of the server publish, through the server's handle.
//
// A read-back that fails is traced and leaves its list unchanged. Some families rely on that.
#pragma once

#include "common/Trace.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/CIMOMHandle.h>

namespace serverprofile {

// The classes of the server's own objects, as they are read back.
constexpr const char* objectManagerClass = "CIM_ObjectManager";
constexpr const char* communicationMechanismClass = "CIM_CIMXMLCommunicationMechanism";
constexpr const char* namespaceClass = "CIM_Namespace";

/// Reads objects of one request's namespace: paths or whole instances, depending on the list's
/// type. Throws what the handle throws.
class ReadBack {
  public:
    /// `handle` must outlive the object.
    ReadBack(Pegasus::CIMOMHandle& handle, const Pegasus::String& nameSpace)
        : _handle(handle), _nameSpace(nameSpace) {}

    /// The paths of all objects of `className` and its subclasses.
    void into(Pegasus::Array<Pegasus::CIMObjectPath>& list, const char* className) const;
    /// Those objects with all their properties, qualifiers and class origins.
    void into(Pegasus::Array<Pegasus::CIMInstance>& list, const char* className) const;
    /// The object that `path` names, with the same parts.
    void into(Pegasus::CIMInstance& instance, const Pegasus::CIMObjectPath& path) const;

  private:
    Pegasus::CIMOMHandle& _handle;
    Pegasus::String _nameSpace;
};

/// The trace of a failed read-back. `withMessage`, if any, begins a second line, which ends with
/// the exception's message.
struct FailureTrace {
    const char* text;
    const char* withMessage = nullptr;
};

/// readBack.into(list, what), with exceptions of type `Caught` traced and swallowed. Says whether
/// it succeeded; exceptions of other types pass.
template <class Caught = Pegasus::Exception, class List, class What>
bool guarded(const ReadBack& readBack, List& list, const What& what, const FailureTrace& failure) {
    try {
        readBack.into(list, what);
        return true;
    } catch (const Caught& exception) {
        trace(failure.text);
        if (failure.withMessage != nullptr)
            trace(failure.withMessage, exception.getMessage());
        return false;
    }
}

// What is traced when the object managers cannot be read, as names or as instances.
inline const char* managersUnread(const Pegasus::Array<Pegasus::CIMObjectPath>&) {
    return " Quil exception ni for CIM_ObjectManager ";
}
inline const char* managersUnread(const Pegasus::Array<Pegasus::CIMInstance>&) {
    return " Quil exception ei for CIM_ObjectManager ";
}

/// The first path of `list`, or an empty one.
Pegasus::CIMObjectPath firstOf(const Pegasus::Array<Pegasus::CIMObjectPath>& list);

// The list of far ends that a handler delivers: paths or instances.

template <class Handler>
struct FarEnds;
template <>
struct FarEnds<Pegasus::ObjectPathResponseHandler> {
    using List = Pegasus::Array<Pegasus::CIMObjectPath>;
};
template <>
struct FarEnds<Pegasus::ObjectResponseHandler> {
    using List = Pegasus::Array<Pegasus::CIMInstance>;
};

/// Delivers all of `list` in order, unchanged.
void deliverAll(Pegasus::ObjectPathResponseHandler& handler,
                const Pegasus::Array<Pegasus::CIMObjectPath>& list);
void deliverAll(Pegasus::ObjectResponseHandler& handler,
                const Pegasus::Array<Pegasus::CIMInstance>& list);

} // namespace serverprofile
