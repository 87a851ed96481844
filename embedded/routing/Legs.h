// One answer out of those of several providers and of the repository.
#pragma once

#include "routing/Cursors.h"
#include "routing/Errors.h"

#include <optional>
#include <vector>

namespace embedded::routing {

/// What one of them answers.
struct Leg {
    Cursor next;
    std::size_t held = 0; ///< as of an Answer
};

/// A leg that keeps all that it answers.
template <class Container>
Leg legOver(Container items) {
    const std::size_t held = items.size();
    return {cursorOverAll(std::move(items)), held};
}

/// Asks the legs of one operation, one after the other, and joins what they answer in that order.
///
/// CIM_ERR_NOT_SUPPORTED from a leg is passed over while another leg fares otherwise. Any other
/// error, the first one, is the answer of the whole operation; the legs after it are asked all the
/// same, as they are where legs run side by side.
class Legs {
  public:
    /// `ask` returns a Leg or throws.
    template <class Ask>
    void add(Ask&& ask) {
        ++_legs;
        try {
            Leg leg = asCimErrors(ask);
            _answers.push_back(std::move(leg.next));
            _held += leg.held;
        } catch (const Pegasus::CIMException& error) {
            const bool notSupported = error.getCode() == Pegasus::CIM_ERR_NOT_SUPPORTED;
            std::optional<Pegasus::CIMException>& first =
                notSupported ? _firstNotSupported : _firstError;
            if (!first)
                first = error;
        }
    }

    /// What the legs answered; to be called once. Throws CIMException when an error is the answer.
    Answer answer() {
        if (_firstError)
            throw Pegasus::CIMException(*_firstError);
        if (_firstNotSupported && _answers.empty())
            throw Pegasus::CIMException(*_firstNotSupported);
        return {joined(std::move(_answers)), _legs, _held};
    }

  private:
    unsigned _legs = 0;
    std::size_t _held = 0;
    std::vector<Cursor> _answers;
    std::optional<Pegasus::CIMException> _firstError;
    std::optional<Pegasus::CIMException> _firstNotSupported;
};

} // namespace embedded::routing
