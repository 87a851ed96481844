#pragma once

#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

#include <cstdarg>
#include <iostream>
#include <optional>
#include <string>
#include <utility>

namespace Pegasus {

class String;
struct StringRep;

/// A UTF-8 copy of a String, ended by a NUL. The pointer it converts to lives as long as this
/// object: never keep the pointer of a temporary.
class PEGASUS_COMMON_LINKAGE CString {
  public:
    /// Holds nothing: converts to a null pointer.
    CString() = default;

    operator const char*() const { return _text ? _text->c_str() : nullptr; }

  private:
    explicit CString(std::string text) : _text(std::move(text)) {}
    friend class String;

    std::optional<std::string> _text;
};

/// Text as UTF-16 code units. Copies share their text until one of them is changed.
///
/// Every function that takes `const char*` reads UTF-8. A null pointer throws an Exception "null
/// pointer"; bytes that are not UTF-8 throw an Exception that names the offset of the first one.
///
/// Thread-safety: copies that share text may be used from different threads; one object may be
/// read by several threads, or changed by one.
class PEGASUS_COMMON_LINKAGE String {
  public:
    static const String EMPTY;

    String();
    String(const String& str);
    /// The first `n` code units of `str`. Throws IndexOutOfBoundsException when it is shorter.
    String(const String& str, Uint32 n);
    /// Up to the first code unit 0.
    String(const Char16* str);
    String(const Char16* str, Uint32 n);
    String(const char* str);
    /// `n` is a number of bytes.
    String(const char* str, Uint32 n);
    ~String();

    String& operator=(const String& str) {
        assign(str);
        return *this;
    }
    String& assign(const String& str);
    String& assign(const Char16* str) { return assign(String(str)); }
    String& assign(const Char16* str, Uint32 n) { return assign(String(str, n)); }
    String& assign(const char* str) { return assign(String(str)); }
    String& assign(const char* str, Uint32 n) { return assign(String(str, n)); }
    void clear();
    /// A hint that `capacity` code units are to come.
    void reserveCapacity(Uint32 capacity);

    /// Number of UTF-16 code units.
    Uint32 size() const;
    /// The code units, followed by a 0. Valid until this object is changed or destroyed.
    const Char16* getChar16Data() const;
    CString getCString() const;

    /// Throws IndexOutOfBoundsException when `index` is greater than size(). The unit at size()
    /// is the closing 0 and may be read.
    Char16& operator[](Uint32 index);
    const Char16 operator[](Uint32 index) const;

    String& append(const Char16& c) { return append(&c, 1); }
    String& append(const Char16* str, Uint32 n);
    String& append(const String& str);
    /// Removes `size` code units from `index` on, by default all of them. Throws
    /// IndexOutOfBoundsException when they are not all there.
    void remove(Uint32 index, Uint32 size = PEG_NOT_FOUND);
    /// What there is of the `n` code units from `index` on; empty when `index` lies behind the
    /// end.
    String subString(Uint32 index, Uint32 n = PEG_NOT_FOUND) const;

    /// The index of the first match, or PEG_NOT_FOUND.
    Uint32 find(Char16 c) const { return find(0, c); }
    Uint32 find(Uint32 index, Char16 c) const;
    Uint32 find(const String& s) const;
    Uint32 reverseFind(Char16 c) const;

    void toLower();
    /// Appends UTF-8 text made as printf makes it.
    PEGASUS_FORMAT(2, 3) void appendPrintf(const char* format, ...);

    /// Negative, 0 or positive as `s1` sorts before, with or after `s2`, by code unit.
    static int compare(const String& s1, const String& s2, Uint32 n);
    static int compare(const String& s1, const String& s2);
    static int compareNoCase(const String& s1, const String& s2);
    static Boolean equal(const String& s1, const String& s2);
    static Boolean equalNoCase(const String& s1, const String& s2);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    String(const String& s1, const String& s2) : String(s1) { append(s2); }
    String(const String& s1, const char* s2) : String(s1, String(s2)) {}
    String(const char* s1, const String& s2) : String(String(s1), s2) {}
    String& operator=(const char* str) {
        return assign(str); // NOLINT(misc-unconventional-assign-operator): that is *this
    }
    void toUpper();
    Uint32 find(const char* s) const { return find(String(s)); }
    static Boolean equal(const String& s1, const char* s2);
    static int compare(const String& s1, const char* s2) { return compare(s1, String(s2)); }
    String& append(const char* str);
    String& append(const char* str, Uint32 size);
    static Boolean equalNoCase(const String& s1, const char* s2);
#endif

  private:
    StringRep* _rep; // null: the empty string
    friend struct StringRep;
};

inline Boolean operator==(const String& str1, const String& str2) {
    return String::equal(str1, str2);
}
PEGASUS_COMMON_LINKAGE Boolean operator==(const String& str1, const char* str2);
inline Boolean operator==(const char* str1, const String& str2) { return str2 == str1; }
inline Boolean operator!=(const String& str1, const String& str2) {
    return !String::equal(str1, str2);
}
inline Boolean operator<(const String& str1, const String& str2) {
    return String::compare(str1, str2) < 0;
}
inline Boolean operator<=(const String& str1, const String& str2) {
    return String::compare(str1, str2) <= 0;
}
inline Boolean operator>(const String& str1, const String& str2) {
    return String::compare(str1, str2) > 0;
}
inline Boolean operator>=(const String& str1, const String& str2) {
    return String::compare(str1, str2) >= 0;
}
inline String operator+(const String& str1, const String& str2) {
    return String(str1).append(str2);
}
/// For diagnostics: characters up to U+00FF as one byte, others as \xHHHH. For UTF-8 write
/// getCString().
PEGASUS_COMMON_LINKAGE std::ostream& operator<<(std::ostream& os, const String& str);

} // namespace Pegasus
