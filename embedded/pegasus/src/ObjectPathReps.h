// The representations behind CIMKeyBinding and CIMObjectPath, and what may stand in them.
#pragma once

#include "Shared.h"

#include <Pegasus/Common/CIMObjectPath.h>

#include <atomic>

namespace Pegasus {

struct CIMObjectPathRep : Shared {
    String host;
    CIMNamespaceName nameSpace;
    CIMName className;
    Array<CIMKeyBinding> keyBindings;

    static const CIMObjectPathRep& of(const CIMObjectPath& path);
    /// A path that shares `rep`.
    static CIMObjectPath pathOf(CIMObjectPathRep* rep);
    /// What stands behind `path`, with one owner more.
    static CIMObjectPathRep* shared(const CIMObjectPath& path);

    /// Reads the text of a path into `path`, which is new. False, with the reason, if it is none:
    /// that is no exception here, because any string may be tried.
    static bool read(const String& text, CIMObjectPath& path, String& reason);

    /// Whether the text of the path is known to read back as the path: not if it cannot be read,
    /// and not if it may say something else, as a string does that looks like a reference.
    bool readsBack() const;

  private:
    /// As read(), with the key bindings in the order of the text.
    bool parse(const String& text, String& reason);
};

/// The value of a reference is kept as a text, as a path, or as both. A path that is kept is what
/// the text says, and the text is the path's toString().
struct CIMKeyBindingRep : Shared {
    CIMName name;
    CIMKeyBinding::Type type = CIMKeyBinding::BOOLEAN;

    CIMKeyBindingRep() = default;
    CIMKeyBindingRep(const CIMKeyBindingRep& x);
    ~CIMKeyBindingRep();

    static const CIMKeyBindingRep& of(const CIMKeyBinding& binding);
    /// A reference that keeps `path`, which reads back.
    static CIMKeyBinding keeping(const CIMName& name, const CIMObjectPath& path);

    /// Makes the text when it is first asked. Thread-safe.
    const String& value() const;
    void setValue(const String& value);
    bool keepsPath() const { return _path.load(std::memory_order_acquire) != nullptr; }
    /// Keeps `path`, which is what the text says, beside it. Thread-safe.
    void keep(const CIMObjectPath& path) const;
    /// The path that the value of a reference says. Throws MalformedObjectNameException.
    CIMObjectPath path() const;

  private:
    mutable String _value;
    mutable std::atomic<bool> _hasValue{true};
    mutable std::atomic<CIMObjectPathRep*> _path{nullptr};
};

/// Whether `host` may stand in an object path: a host name (RFC 1123, and '_' in labels), an IPv4
/// address, or an IPv6 address in brackets, a link-local one with the interface it is reached by;
/// then, if wanted, ':' and a port. Names are not resolved.
bool isHost(const String& host);

/// Integers as object paths write them.
namespace numbers {

/// Reads decimal digits without leading zeros, or hexadecimal ones behind 0x. False when it is
/// something else or does not fit.
bool parse(const String& text, Uint64& value);

/// Reads a sign and what parse(const String&, Uint64&) reads; without '-' the sign may be
/// missing.
bool parse(const String& text, Sint64& value);

/// Equal for texts that write the same integer; what is no integer is returned as it is.
String canonical(const String& text);

} // namespace numbers

} // namespace Pegasus
