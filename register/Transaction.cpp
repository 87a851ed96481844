#include "register/Transaction.h"

#include "register/Process.h"

#include <cstring>
#include <stdexcept>

namespace registering {
namespace {

void heedInterrupt() {
    if (const int signal = interruptedBy())
        throw std::runtime_error(std::string("interrupted (") + strsignal(signal) + ")");
}

} // namespace

void Transaction::step(const std::string& what, const std::function<void()>& act, Undo undo) {
    heedInterrupt();
    if (undo.act)
        _undos.push_back(std::move(undo));
    _report.step(what);
    act();
    heedInterrupt();
}

bool Transaction::rollBack() {
    std::vector<Undo> failed;
    for (; !_undos.empty(); _undos.pop_back()) {
        const Undo& undo = _undos.back();
        if (!failed.empty() && !undo.unlessAll.empty()) {
            _report.step(undo.unlessAll);
            continue;
        }
        _report.step(undo.what);
        try {
            undo.act();
        } catch (const std::exception& error) {
            _report.error(std::string("this failed, too: ") + error.what());
            failed.push_back(undo);
        }
    }
    for (const Undo& undo : failed)
        _report.error("left undone: " + undo.what + "; by hand: " + undo.byHand);
    return failed.empty();
}

} // namespace registering
