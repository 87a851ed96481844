// Whether a client can walk the whole profile: serverprofile-walk, which does what clients do,
// asked for its verdict.
#pragma once

#include "register/Situation.h"

namespace registering {

/// Lets serverprofile-walk walk each namespace that is served, and says what came of it. Where it
/// cannot be run, or does not reach the server, notes why, and how to do it by hand.
void checkWalks(const Settings& settings, const Situation& situation, const Server& server,
                Report& report);

} // namespace registering
