// One answer joined from those of several providers and of the repository.
#pragma once

#include "routing/CimOperations.h"
#include "routing/Errors.h"

#include <optional>
#include <utility>
#include <vector>

namespace embedded::routing {

/// The things of `cursor`, each changed by `change`, which gets an Answered& that holds a T.
template <class T, class Change>
Cursor mapped(Cursor cursor, Change change) {
    return [cursor = std::move(cursor), change = std::move(change)](Answered& answered) mutable {
        if (!cursor(answered))
            return false;
        change(std::get<T>(answered));
        return true;
    };
}

/// Calls `make` for each of `items` when the cursor comes to it.
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

/// The answer of one source that keeps all of its objects in memory.
template <class Container>
Answer answerOver(Container items) {
    const std::size_t held = items.size();
    return {cursorOverAll(std::move(items)), 1, held};
}

/// The answer of one source that keeps `items` in memory, and makes its objects of them.
template <class Items, class Make>
Answer answerOver(Items items, Make make) {
    const std::size_t held = items.size();
    return {madeOf(std::move(items), std::move(make)), 1, held};
}

/// A plan whose errors are all CIMExceptions.
template <class Perform>
Plan planned(std::vector<const Module*> modules, Perform perform) {
    return {std::move(modules),
            [perform = std::move(perform)]() mutable { return asCimErrors(perform); }};
}

/// A plan with an answer that is there.
inline Plan answered(Cursor cursor) {
    return {{}, [cursor = std::move(cursor)]() mutable { return Answer{std::move(cursor)}; }};
}

/// Asks the sources of one operation one after the other, and joins their answers in that order.
///
/// CIM_ERR_NOT_SUPPORTED from a source is ignored if another source answers otherwise. The first
/// other error is the answer of the whole operation; the remaining sources are asked all the same,
/// as a server does that asks them concurrently.
class JoinedAnswer {
  public:
    /// `ask` returns the Answer of one source, or throws.
    template <class Ask>
    void add(Ask&& ask) {
        ++_sources;
        try {
            Answer answer = asCimErrors(ask);
            _cursors.push_back(std::move(answer.next));
            _held += answer.held;
        } catch (const Pegasus::CIMException& error) {
            const bool notSupported = error.getCode() == Pegasus::CIM_ERR_NOT_SUPPORTED;
            std::optional<Pegasus::CIMException>& first =
                notSupported ? _firstNotSupported : _firstError;
            if (!first)
                first = error;
        }
    }

    /// May be called once. Throws CIMException if the answer is an error.
    Answer take() {
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

  private:
    unsigned _sources = 0;
    std::size_t _held = 0;
    std::vector<Cursor> _cursors;
    std::optional<Pegasus::CIMException> _firstError;
    std::optional<Pegasus::CIMException> _firstNotSupported;
};

} // namespace embedded::routing
