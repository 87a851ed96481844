#include "routing/Cursors.h"

namespace embedded::routing {

Cursor joined(std::vector<Cursor> cursors) {
    if (cursors.size() == 1)
        return std::move(cursors.front());
    return [cursors = std::move(cursors), at = std::size_t{0}](Answered& answered) mutable {
        for (; at < cursors.size(); ++at) {
            if (cursors[at] && cursors[at](answered))
                return true;
            cursors[at] = nullptr; // what it held is not needed any more
        }
        return false;
    };
}

} // namespace embedded::routing
