// Steps that can be taken back.
#pragma once

#include "register/Report.h"

#include <functional>
#include <string>
#include <vector>

namespace registering {

/// How a step is taken back. It looks at what is there, so it may be called after a step that
/// failed halfway, and throws std::exception if it cannot do its work.
struct Undo {
    std::string what = {}; ///< what it does, for people
    std::function<void()> act = {};
    std::string byHand = {}; ///< how a person does it when it failed
    /// Not done, but left as the step made it, when something that came after the step could not be
    /// taken back; then this is said instead of `what`.
    std::string unlessAll = {};
};

/// Runs steps. After the first that throws, or an interruption, roll back.
class Transaction {
  public:
    explicit Transaction(const Report& report) : _report(report) {}

    /// Says what is done, and does it. The undo, if the step has one of its own, is remembered
    /// before, as a step may fail halfway. Throws what the step throws, and std::runtime_error when
    /// the program was interrupted.
    void step(const std::string& what, const std::function<void()>& act, Undo undo = {});

    /// Takes back all steps, the last one first, also after one that cannot be taken back. Returns
    /// whether all could be; reports those that could not.
    bool rollBack();

    /// Whether there is something to take back.
    bool begun() const { return !_undos.empty(); }

  private:
    const Report& _report;
    std::vector<Undo> _undos;
};

} // namespace registering
