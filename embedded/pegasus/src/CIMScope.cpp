#include <Pegasus/Common/CIMScope.h>

#include "FlagNames.h"

namespace Pegasus {

namespace {

constexpr Uint32 class_ = 1;
constexpr Uint32 association = 2;
constexpr Uint32 indication = 4;
constexpr Uint32 property = 8;
constexpr Uint32 reference = 16;
constexpr Uint32 method = 32;
constexpr Uint32 parameter = 64;
constexpr Uint32 any =
    class_ | association | indication | property | reference | method | parameter;

constexpr FlagName names[] = {{class_, "CLASS"},          {association, "ASSOCIATION"},
                              {indication, "INDICATION"}, {property, "PROPERTY"},
                              {reference, "REFERENCE"},   {method, "METHOD"},
                              {parameter, "PARAMETER"}};

} // namespace

const CIMScope CIMScope::NONE(0);
const CIMScope CIMScope::CLASS(class_);
const CIMScope CIMScope::ASSOCIATION(association);
const CIMScope CIMScope::INDICATION(indication);
const CIMScope CIMScope::PROPERTY(property);
const CIMScope CIMScope::REFERENCE(reference);
const CIMScope CIMScope::METHOD(method);
const CIMScope CIMScope::PARAMETER(parameter);
const CIMScope CIMScope::ANY(any);

String CIMScope::toString() const { return flagNames(_bits, names); }

} // namespace Pegasus
