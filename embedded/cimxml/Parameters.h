// The intrinsic operations and their parameters (DSP0200 clause 5.3.2).
#pragma once

#include "cimxml/Objects.h"
#include "routing/CimOperations.h"

#include <string>
#include <string_view>
#include <vector>

namespace embedded::cimxml {

struct Call;

/// What a request does with a pulled enumeration (DSP0200 1.4 clause 5.3.2.24).
enum class PullStep { None, Open, Pull, Close };

struct Parameter {
    std::string_view name;
    std::string_view element; ///< that carries it
    void (*read)(const Element& value, const SoleKey& soleKey, Call& call);
    bool routing::Operation::*flag = nullptr; ///< that a default goes to
    std::string_view otherElement = {};
};

enum class Presence { Optional, Required, TrueIfAbsent };

/// A parameter as one operation takes it.
struct TakenParameter {
    constexpr TakenParameter(const Parameter& taken, Presence how = Presence::Optional)
        : parameter(taken), presence(how) {}

    Parameter parameter;
    Presence presence;
};

using ParameterList = std::vector<TakenParameter>;

/// An operation as DSP0200 clause 5.3.2 declares it.
struct Signature {
    std::string_view name;
    routing::OperationKind kind; ///< of what is pulled, as far as the operation says it
    ParameterList parameters;
    PullStep step = PullStep::None;
};

/// The row of the operation `name`, ignoring case. Throws Pegasus::CIMException
/// CIM_ERR_NOT_SUPPORTED if there is none.
const Signature& signatureOf(const std::string& method);

/// Reads the IPARAMVALUEs of `element`, an IMETHODCALL that takes `parameters`, into `call`. Of the
/// same names in a property list, it keeps the first.
///
/// Throws Pegasus::CIMException for a parameter that is missing, unknown, given twice or has an
/// illegal value, and RequestRejected for one of the wrong kind.
void readParameters(const Element& element, const ParameterList& parameters, const SoleKey& soleKey,
                    Call& call);

} // namespace embedded::cimxml
