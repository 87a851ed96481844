// Runs serverprofile-walk, which asks what clients ask, to see whether a client can walk the whole
// profile.
#pragma once

#include "register/Situation.h"

namespace registering {

/// Lets serverprofile-walk walk each namespace that is served, and reports its verdict. If it
/// cannot be run, or does not reach the server, notes why, and how to run it by hand.
void checkWalks(const Settings& settings, const Situation& situation, const Server& server,
                Report& report);

} // namespace registering
