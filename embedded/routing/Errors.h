// Turns exceptions into the errors that CIM clients see.
#pragma once

#include <Pegasus/Common/Exception.h>

#include <new>
#include <utility>

namespace embedded::routing {

/// The exception that is being handled: a CIMException keeps its status and message, every other
/// one becomes CIM_ERR_FAILED with its own text, as text::visible() shows it when it is no UTF-8,
/// or "Unknown error." when it has none.
///
/// The result shares nothing with the original, whose type may live in a library that is about to
/// be closed. REQUIRES: called from within a catch clause.
Pegasus::CIMException currentCimException();

/// Runs `operation`, and turns what it throws into a CIMException (see currentCimException), but
/// for std::bad_alloc: a provider must not take a lack of memory for the answer to its read-back.
template <class Operation>
auto asCimErrors(Operation&& operation) -> decltype(operation()) {
    try {
        return std::forward<Operation>(operation)();
    } catch (const std::bad_alloc&) {
        throw std::bad_alloc();
    } catch (...) {
        throw currentCimException();
    }
}

} // namespace embedded::routing
