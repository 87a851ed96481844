#include "common/Trace.h"

#include <iostream>
#include <mutex>

PEGASUS_USING_PEGASUS;

namespace serverprofile {

std::string_view TraceLine::text() const {
    return _long.empty() ? std::string_view(_short, _size) : std::string_view(_long);
}

void TraceLine::append(std::string_view text) {
    if (_long.empty() && text.size() <= sizeof _short - _size) {
        _size += text.copy(_short + _size, text.size());
    } else {
        if (_long.empty())
            _long.assign(_short, _size);
        _long.append(text);
    }
}

void TraceLine::append(const char* text) {
    append(text != nullptr ? std::string_view(text) : std::string_view());
}

void TraceLine::append(const String& text) { append(static_cast<const char*>(text.getCString())); }

void TraceLine::append(const CIMName& name) { append(name.getString()); }

void TraceLine::append(const CIMObjectPath& path) { append(path.toString()); }

void TraceLine::append(bool flag) { append(flag ? "1" : "0"); }

void TraceLine::append(Sint32 number) { append(std::string_view(std::to_string(number))); }

void TraceLine::append(Uint32 number) { append(std::string_view(std::to_string(number))); }

void TraceLine::write() {
    // Writing and flushing are two steps; the lock keeps them together for servers that have
    // detached the C++ streams from stdio.
    static std::mutex writing;
    append("\n");
    const std::string_view whole = text();
    const std::lock_guard<std::mutex> lock(writing);
    std::cout.write(whole.data(), static_cast<std::streamsize>(whole.size())).flush();
}

} // namespace serverprofile
