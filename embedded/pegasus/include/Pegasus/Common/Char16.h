#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

namespace Pegasus {

/// One UTF-16 code unit: the CIM type char16, and what a String is made of. Converts to and from
/// Uint16 without a cast.
class PEGASUS_COMMON_LINKAGE Char16 {
  public:
    constexpr Char16() noexcept : _code(0) {}
    constexpr Char16(Uint16 x) noexcept : _code(x) {}
    Char16(const Char16& x) = default;
    ~Char16() = default;
    Char16& operator=(const Char16& x) = default;
    Char16& operator=(Uint16 x) noexcept {
        _code = x;
        return *this;
    }

    constexpr operator Uint16() const noexcept { return _code; }

  private:
    Uint16 _code;
};

inline Boolean operator==(const Char16& x, const Char16& y) { return Uint16(x) == Uint16(y); }
inline Boolean operator==(const Char16& x, char y) { return Uint16(x) == Uint16(y); }
inline Boolean operator==(char x, const Char16& y) { return y == x; }
inline Boolean operator!=(const Char16& x, const Char16& y) { return !(x == y); }
inline Boolean operator!=(const Char16& x, char y) { return !(x == y); }
inline Boolean operator!=(char x, const Char16& y) { return !(y == x); }

} // namespace Pegasus
