// The parameters of intrinsic operations (DSP0200 clause 5.3.2).
#pragma once

#include "cimxml/Paths.h"

#include <vector>

namespace embedded::cimxml {

struct Call;

/// A name means the same in every operation that has it.
enum class ParameterName {
    ClassName,
    InstanceName,
    ObjectName,
    NewInstance,
    ModifiedInstance,
    AssocClass,
    ResultClass,
    Role,
    ResultRole,
    PropertyName,
    QualifierName,
    LocalOnly,
    DeepInheritance,
    IncludeQualifiers,
    IncludeClassOrigin,
    PropertyList,
    FilterQueryLanguage,
    FilterQuery,
    OperationTimeout,
    ContinueOnError,
    MaxObjectCount,
    EnumerationContext,
};

enum class Presence { Optional, Required, TrueIfAbsent };

/// A parameter as one operation takes it.
struct TakenParameter {
    ParameterName name;
    Presence presence = Presence::Optional;
};

using ParameterList = std::vector<TakenParameter>;

/// Reads the IPARAMVALUEs of `element`, an IMETHODCALL that takes `parameters`, into `call`. Of a
/// property list, each name is read once, in its first spelling.
///
/// Throws Pegasus::CIMException for a parameter that is missing, unknown, there twice or of an
/// illegal value, and RequestRejected for one that is of the wrong kind.
void readParameters(const Element& element, const ParameterList& parameters, const SoleKey& soleKey,
                    Call& call);

} // namespace embedded::cimxml
