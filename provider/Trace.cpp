#include "provider/Trace.h"

#include <iostream>
#include <mutex>

PEGASUS_USING_PEGASUS;

namespace serverprofile {

std::string traceText(const char* text) {
    return text != nullptr ? text : "";
}

std::string traceText(const String& text) {
    return static_cast<const char*>(text.getCString());
}

std::string traceText(const CIMName& name) {
    return traceText(name.getString());
}

std::string traceText(const CIMObjectPath& path) {
    return traceText(path.toString());
}

std::string traceText(bool flag) {
    return flag ? "1" : "0";
}

std::string traceText(Sint32 number) {
    return std::to_string(number);
}

std::string traceText(Uint32 number) {
    return std::to_string(number);
}

void writeTraceLine(const std::string& line) {
    // Writing and flushing are two steps; the lock keeps them together for hosts that have
    // detached the C++ streams from stdio.
    static std::mutex writing;
    const std::string whole = "ServerProfileProvider " + line + '\n';
    const std::lock_guard<std::mutex> lock(writing);
    std::cout.write(whole.data(), static_cast<std::streamsize>(whole.size())).flush();
}

} // namespace serverprofile
