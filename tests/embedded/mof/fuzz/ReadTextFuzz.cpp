// Feeds arbitrary bytes to the MOF reader: it must read them or refuse them, nothing else.
#include "mof/Mof.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        embedded::mof::readText(std::string(data, data + size), "fuzz.mof");
    } catch (const embedded::mof::MofError&) {
        return 0;
    }
    return 0;
}
