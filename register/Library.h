// What the program does when it is started to try whether a library can be loaded, by itself: in a
// process that the library may take down.
#pragma once

namespace registering {

constexpr const char* probeOption = "--probe-library";

/// What that process does when it is started with probeOption and the file. Returns its exit code.
int probe(const char* file);

} // namespace registering
