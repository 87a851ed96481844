#include <Pegasus/Common/CIMFlavor.h>

#include "FlagNames.h"

namespace Pegasus {

namespace {

constexpr Uint32 overridable = 1;
constexpr Uint32 toSubclass = 2;
constexpr Uint32 toInstance = 4;
constexpr Uint32 translatable = 8;
constexpr Uint32 disableOverride = 16;
constexpr Uint32 restricted = 32;

constexpr FlagName names[] = {{overridable, "OVERRIDABLE"},         {toSubclass, "TOSUBCLASS"},
                              {toInstance, "TOINSTANCE"},           {translatable, "TRANSLATABLE"},
                              {disableOverride, "DISABLEOVERRIDE"}, {restricted, "RESTRICTED"}};

} // namespace

const CIMFlavor CIMFlavor::NONE(0);
const CIMFlavor CIMFlavor::OVERRIDABLE(overridable);
const CIMFlavor CIMFlavor::ENABLEOVERRIDE(overridable);
const CIMFlavor CIMFlavor::DISABLEOVERRIDE(disableOverride);
const CIMFlavor CIMFlavor::TOSUBCLASS(toSubclass);
const CIMFlavor CIMFlavor::TOSUBELEMENTS(toSubclass);
const CIMFlavor CIMFlavor::RESTRICTED(restricted);
const CIMFlavor CIMFlavor::TOINSTANCE(toInstance);
const CIMFlavor CIMFlavor::TRANSLATABLE(translatable);
const CIMFlavor CIMFlavor::DEFAULTS(overridable | toSubclass);

String CIMFlavor::toString() const { return flagNames(_bits, names); }

} // namespace Pegasus
