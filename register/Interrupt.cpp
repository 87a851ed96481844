#include "register/Interrupt.h"

#include <csignal>
#include <initializer_list>

namespace registering {
namespace {

volatile std::sig_atomic_t g_signal = 0;

void remember(int signal) {
    if (g_signal == 0)
        g_signal = signal;
}

} // namespace

void takeSignals() {
    struct sigaction action = {};
    action.sa_handler = remember;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
    action.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &action, nullptr);
}

int interruptedBy() {
    return g_signal;
}

} // namespace registering
