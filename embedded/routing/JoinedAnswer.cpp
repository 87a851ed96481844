#include "routing/JoinedAnswer.h"

namespace embedded::routing {

Answer JoinedAnswer::take() {
    if (_firstError)
        throw Pegasus::CIMException(*_firstError);
    if (_firstNotSupported && _cursors.empty())
        throw Pegasus::CIMException(*_firstNotSupported);
    if (_cursors.size() == 1)
        return {std::move(_cursors.front()), _sources, _held};
    return {[cursors = std::move(_cursors), at = std::size_t{0}](Answered& answered) mutable {
                for (; at < cursors.size(); ++at) {
                    if (cursors[at] && cursors[at](answered))
                        return true;
                    cursors[at] = nullptr; // what it held is not needed any more
                }
                return false;
            },
            _sources, _held};
}

} // namespace embedded::routing
