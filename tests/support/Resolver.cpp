#include "support/Resolver.h"

#include <algorithm>
#include <cstring>

#include <netdb.h>
#include <unistd.h>

namespace testsupport {

Resolver resolver;

} // namespace testsupport

using testsupport::resolver;

// A program's own definitions come before those of the C library.

extern "C" int gethostname(char* name, std::size_t size) noexcept {
    resolver.bufferSizes.push_back(size);
    if (resolver.shortNameFails)
        return -1;
    std::memcpy(name, resolver.shortName.c_str(), std::min(size, resolver.shortName.size() + 1));
    return 0;
}

extern "C" hostent* gethostbyname(const char* name) {
    static std::string officialName;
    static hostent answer;
    resolver.lookups.push_back(name);
    if (!resolver.officialName)
        return nullptr;
    officialName = *resolver.officialName;
    answer = hostent();
    answer.h_name = officialName.data();
    return &answer;
}
