// One answer out of those of several providers and of the repository.
#pragma once

#include "host/CimOperations.h"
#include "host/Errors.h"

#include <optional>

namespace embedded::host {

/// Asks the legs of one operation, one after the other, and joins what they answer in that order.
///
/// CIM_ERR_NOT_SUPPORTED from a leg is passed over while another leg fares otherwise. Any other
/// error, the first one, is the answer of the whole operation; the legs after it are asked all the
/// same, as they are where legs run side by side.
template <class Object>
class Legs {
  public:
    /// `ask` returns an Array<Object> or throws.
    template <class Ask>
    void add(Ask&& ask) {
        ++_answer.legs;
        try {
            _answer.objects.appendArray(asCimErrors(ask));
        } catch (const Pegasus::CIMException& error) {
            const bool notSupported = error.getCode() == Pegasus::CIM_ERR_NOT_SUPPORTED;
            _notSupported += notSupported ? 1 : 0;
            std::optional<Pegasus::CIMException>& first =
                notSupported ? _firstNotSupported : _firstError;
            if (!first) {
                first = error;
            }
        }
    }

    /// Throws CIMException when an error is the answer.
    Answer<Object> answer() const {
        if (_firstError) {
            throw Pegasus::CIMException(*_firstError);
        }
        if (_firstNotSupported && _notSupported == _answer.legs) {
            throw Pegasus::CIMException(*_firstNotSupported);
        }
        return _answer;
    }

  private:
    Answer<Object> _answer{{}, 0};
    unsigned _notSupported = 0;
    std::optional<Pegasus::CIMException> _firstError;
    std::optional<Pegasus::CIMException> _firstNotSupported;
};

} // namespace embedded::host
