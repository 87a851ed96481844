// Signals that ask the program to end, remembered instead of obeyed at once, so that what has been
// begun is undone first.
#pragma once

namespace registering {

/// From now on SIGINT, SIGTERM and SIGHUP are remembered, and a closed output ends nothing.
void takeSignals();

/// The first signal that came, or 0. Any thread.
int interruptedBy();

} // namespace registering
