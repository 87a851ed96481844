#include <Pegasus/Common/String.h>

#include <cstring>

namespace Pegasus {

namespace {

char* duplicate(const char* text) {
    if (!text)
        return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    return static_cast<char*>(std::memcpy(new char[size], text, size));
}

} // namespace

CString::CString() : _text(nullptr) {
}

CString::CString(char* text) : _text(text) {
}

CString::CString(const CString& cstr) : _text(duplicate(cstr._text)) {
}

CString::~CString() {
    delete[] _text;
}

CString& CString::operator=(const CString& cstr) {
    char* const copy = duplicate(cstr._text);
    delete[] _text;
    _text = copy;
    return *this;
}

CString::operator const char*() const {
    return _text;
}

} // namespace Pegasus
