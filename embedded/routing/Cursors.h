// Cursors made of cursors.
#pragma once

#include "routing/CimOperations.h"

#include <utility>
#include <vector>

namespace embedded::routing {

/// What all of `cursors` have, one after the other.
Cursor joined(std::vector<Cursor> cursors);

/// What `cursor` has, each thing as `change` leaves it; `change` gets an Answered& that holds a T.
template <class T, class Change>
Cursor mapped(Cursor cursor, Change change) {
    return [cursor = std::move(cursor), change = std::move(change)](Answered& answered) mutable {
        if (!cursor(answered))
            return false;
        change(std::get<T>(answered));
        return true;
    };
}

/// What `make` makes of each of `items`, when it is asked for.
template <class Items, class Make>
Cursor madeOf(Items items, Make make) {
    return [items = std::move(items), make = std::move(make),
            at = std::size_t{0}](Answered& answered) mutable {
        if (at == items.size())
            return false;
        answered = make(items[at++]);
        return true;
    };
}

} // namespace embedded::routing
