// Signals that ask the program to end. They are remembered, so that the program can first undo what
// it has begun.
#pragma once

namespace registering {

/// From now on SIGINT, SIGTERM and SIGHUP are remembered, and a closed output ends nothing.
void takeSignals();

/// The first signal that came, or 0. Any thread.
int interruptedBy();

} // namespace registering
