// From a CIM type to the C++ type of its values.
#pragma once

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>

namespace embedded::cimxml {

template <class T>
struct TypeTag {
    using type = T;
};

/// Calls `function` with the TypeTag of the values of `type`, one that a VALUE may have (DSP0201
/// clause 5.1.1), and returns what it returns.
template <class Function>
auto withTypeOf(Pegasus::CIMType type, const Function& function) {
    switch (type) {
    case Pegasus::CIMTYPE_BOOLEAN:
        return function(TypeTag<Pegasus::Boolean>());
    case Pegasus::CIMTYPE_UINT8:
        return function(TypeTag<Pegasus::Uint8>());
    case Pegasus::CIMTYPE_SINT8:
        return function(TypeTag<Pegasus::Sint8>());
    case Pegasus::CIMTYPE_UINT16:
        return function(TypeTag<Pegasus::Uint16>());
    case Pegasus::CIMTYPE_SINT16:
        return function(TypeTag<Pegasus::Sint16>());
    case Pegasus::CIMTYPE_UINT32:
        return function(TypeTag<Pegasus::Uint32>());
    case Pegasus::CIMTYPE_SINT32:
        return function(TypeTag<Pegasus::Sint32>());
    case Pegasus::CIMTYPE_UINT64:
        return function(TypeTag<Pegasus::Uint64>());
    case Pegasus::CIMTYPE_SINT64:
        return function(TypeTag<Pegasus::Sint64>());
    case Pegasus::CIMTYPE_REAL32:
        return function(TypeTag<Pegasus::Real32>());
    case Pegasus::CIMTYPE_REAL64:
        return function(TypeTag<Pegasus::Real64>());
    case Pegasus::CIMTYPE_CHAR16:
        return function(TypeTag<Pegasus::Char16>());
    case Pegasus::CIMTYPE_DATETIME:
        return function(TypeTag<Pegasus::CIMDateTime>());
    default:
        return function(TypeTag<Pegasus::String>());
    }
}

} // namespace embedded::cimxml
