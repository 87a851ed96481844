// What stands behind a String.
#pragma once

#include "Shared.h"
#include "text/Ascii.h"
#include "text/KeyedHash.h"

#include <Pegasus/Common/String.h>

#include <atomic>
#include <new>
#include <optional>
#include <string_view>

namespace Pegasus {

/// A text, in one piece with its size: as ASCII, a byte each, for as long as it is that and nobody
/// may write into it, else as UTF-16. Either is closed by a 0.
struct StringRep : Shared {
    /// Calls `function(const Unit* units, Uint32 size)` with the text as it is kept, where Unit is
    /// char or Char16.
    template <class Function>
    static auto visit(const String& text, const Function& function) {
        const StringRep* const rep = text._rep;
        if (rep && rep->isWide)
            return function(static_cast<const Char16*>(rep->units()), rep->size);
        return rep ? function(rep->chars(), rep->size) : function("", Uint32{0});
    }

    /// The text, if it is kept as ASCII.
    static std::optional<std::string_view> ascii(const String& text) {
        const StringRep* const rep = text._rep;
        if (!rep)
            return std::string_view();
        if (rep->isWide)
            return std::nullopt;
        return std::string_view(rep->chars(), rep->size);
    }

    /// An empty text with room. `delete` ends it.
    static StringRep* make(bool isWide, Uint32 capacity) {
        const std::size_t room = (std::size_t{capacity} + 1) * (isWide ? sizeof(Char16) : 1);
        return ::new (::operator new(sizeof(StringRep) + room)) StringRep(isWide, capacity);
    }
    // NOLINTNEXTLINE(misc-new-delete-overloads,cert-dcl54-cpp): make() asks for more than an object
    static void operator delete(void* memory) { ::operator delete(memory); }
    StringRep(const StringRep&) = delete;
    ~StringRep() { delete[] _widened.load(std::memory_order_acquire); }

    const char* chars() const { return reinterpret_cast<const char*>(this + 1); }
    char* chars() { return reinterpret_cast<char*>(this + 1); }
    /// REQUIRES: isWide.
    Char16* units() const {
        Char16* const widened = _widened.load(std::memory_order_relaxed);
        return widened ? widened : reinterpret_cast<Char16*>(const_cast<StringRep*>(this) + 1);
    }
    /// The text as UTF-16, which a narrow one makes when it is first asked. Thread-safe.
    const Char16* wideUnits() const;
    /// From now on the text is what wideUnits() showed. Not thread-safe, like all below.
    void becomeWide();
    /// After the text has changed: closes it with `newSize` units.
    void close(Uint32 newSize);

    bool isWide;
    Uint32 size = 0;
    Uint32 capacity;

  private:
    StringRep(bool wide, Uint32 room) : isWide(wide), capacity(room) { close(0); }

    mutable std::atomic<Char16*> _widened{nullptr};
};

inline Uint16 unitOf(char c) { return static_cast<unsigned char>(c); }
inline Uint16 unitOf(Char16 c) { return c; }

inline Uint16 asIs(Uint16 unit) { return unit; }

/// Of the code units as `fold` shows them, however they are kept.
template <class Fold>
std::uint64_t keyedHash(const String& text, Fold fold) {
    return StringRep::visit(
        text,
        [&](const auto* units, Uint32 size) {
            constexpr Uint32 unitsInWord = 4;
            embedded::text::KeyedHash hash;
            std::uint64_t word = size;
            for (Uint32 i = 0; i < size; ++i) {
                if (i % unitsInWord == 0)
                    hash.add(word);
                word = word << 16U | fold(unitOf(units[i]));
            }
            hash.add(word);
            return hash.value();
        });
}

} // namespace Pegasus
