#include "StringRep.h"

#include <Pegasus/Common/CIMName.h>

#include <algorithm>

namespace Pegasus {

namespace {

// DSP0004, "Identifiers": beside '_' and ASCII letters, U+0080 to U+FFEF may begin a name. The
// code units of surrogate pairs lie in this range.
bool mayBeginName(Uint16 unit) {
    return embedded::text::isLetter(unit) || unit == '_' || (unit >= 0x0080 && unit <= 0xFFEF);
}

template <class Unit>
bool isName(const Unit* begin, const Unit* end) {
    return begin != end && !embedded::text::isDigit(unitOf(*begin)) &&
           std::all_of(
               begin, end,
               [](Unit unit) {
                   return mayBeginName(unitOf(unit)) || embedded::text::isDigit(unitOf(unit));
               });
}

template <class Unit>
bool isNamespaceName(const Unit* at, const Unit* end) {
    if (at != end && unitOf(*at) == '/')
        ++at;
    while (true) {
        const Unit* const slash =
            std::find_if(at, end, [](Unit unit) { return unitOf(unit) == '/'; });
        if (!isName(at, slash))
            return false;
        if (slash == end)
            return true;
        at = slash + 1;
    }
}

const String& legalName(const String& name) {
    if (!CIMName::legal(name))
        throw InvalidNameException(name);
    return name;
}

String legalNamespaceName(const String& name) {
    if (!CIMNamespaceName::legal(name))
        throw InvalidNamespaceNameException(name);
    return name[0] == '/' ? name.subString(1) : name;
}

} // namespace

CIMName::CIMName(const String& name) : CIMNameReads(legalName(name)) {}

Boolean CIMName::legal(const String& name) {
    return StringRep::visit(
        name, [](const auto* units, Uint32 size) { return isName(units, units + size); });
}

CIMNamespaceName::CIMNamespaceName(const String& name) : CIMNameReads(legalNamespaceName(name)) {}

Boolean CIMNamespaceName::legal(const String& name) {
    return StringRep::visit(
        name, [](const auto* units, Uint32 size) { return isNamespaceName(units, units + size); });
}

} // namespace Pegasus
