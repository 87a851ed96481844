// The sets of flags that qualifiers have.
#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMScope.h>

#include <initializer_list>
#include <utility>

namespace Pegasus {

namespace {

/// The names of the flags in `bits`, in the order of `table`, separated by a space.
String flagNames(Uint32 bits, std::initializer_list<std::pair<Uint32, const char*>> table) {
    String text;
    for (const auto& [flag, name] : table) {
        if ((bits & flag) == 0)
            continue;
        if (text.size() != 0)
            text.append(Char16(' '));
        text.append(String(name));
    }
    return text;
}

} // namespace

const CIMFlavor CIMFlavor::NONE(0);
const CIMFlavor CIMFlavor::OVERRIDABLE(1);
const CIMFlavor CIMFlavor::ENABLEOVERRIDE(1);
const CIMFlavor CIMFlavor::TOSUBCLASS(2);
const CIMFlavor CIMFlavor::TOSUBELEMENTS(2);
const CIMFlavor CIMFlavor::TOINSTANCE(4);
const CIMFlavor CIMFlavor::TRANSLATABLE(8);
const CIMFlavor CIMFlavor::DISABLEOVERRIDE(16);
const CIMFlavor CIMFlavor::RESTRICTED(32);
const CIMFlavor CIMFlavor::DEFAULTS(1 | 2);

String CIMFlavor::toString() const {
    return flagNames(_bits, {{OVERRIDABLE._bits, "OVERRIDABLE"},
                             {TOSUBCLASS._bits, "TOSUBCLASS"},
                             {TOINSTANCE._bits, "TOINSTANCE"},
                             {TRANSLATABLE._bits, "TRANSLATABLE"},
                             {DISABLEOVERRIDE._bits, "DISABLEOVERRIDE"},
                             {RESTRICTED._bits, "RESTRICTED"}});
}

const CIMScope CIMScope::NONE(0);
const CIMScope CIMScope::CLASS(1);
const CIMScope CIMScope::ASSOCIATION(2);
const CIMScope CIMScope::INDICATION(4);
const CIMScope CIMScope::PROPERTY(8);
const CIMScope CIMScope::REFERENCE(16);
const CIMScope CIMScope::METHOD(32);
const CIMScope CIMScope::PARAMETER(64);
const CIMScope CIMScope::ANY(127);

String CIMScope::toString() const {
    return flagNames(_bits, {{CLASS._bits, "CLASS"},
                             {ASSOCIATION._bits, "ASSOCIATION"},
                             {INDICATION._bits, "INDICATION"},
                             {PROPERTY._bits, "PROPERTY"},
                             {REFERENCE._bits, "REFERENCE"},
                             {METHOD._bits, "METHOD"},
                             {PARAMETER._bits, "PARAMETER"}});
}

} // namespace Pegasus
