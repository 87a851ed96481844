#include "cimhost/SignalWatch.h"

#include <csignal>
#include <utility>

namespace embedded::cimhost {
namespace {

sigset_t watched() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGHUP);
    return set;
}

} // namespace

void takeSignals() {
    const sigset_t set = watched();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

SignalWatch::SignalWatch(std::function<void(unsigned)> end, std::function<void()> reload)
    : _thread([this, end = std::move(end), reload = std::move(reload)] {
          const sigset_t set = watched();
          unsigned count = 0;
          int signal = 0;
          while (sigwait(&set, &signal) == 0 && !_ending)
              if (signal == SIGHUP)
                  reload();
              else
                  end(++count);
      }) {}

SignalWatch::~SignalWatch() {
    _ending = true;
    // Ends the waiting, not the thread: the signal is blocked, see takeSignals().
    // NOLINTNEXTLINE(bugprone-bad-signal-to-kill-thread,cert-pos44-c)
    pthread_kill(_thread.native_handle(), SIGTERM);
    _thread.join();
}

} // namespace embedded::cimhost
