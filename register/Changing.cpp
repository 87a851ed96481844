#include "register/Interrupt.h"
#include "register/Steps.h"

namespace registering {

ExitCode changing(const Settings& settings, const Situation& situation, const Server& server,
                  Report& report, const std::function<void(const Work&)>& steps) {
    Scratch scratch;
    Transaction transaction(report);
    report.heading(settings.dryRun ? "what would be done, command by command"
                                   : "changing the server");
    try {
        steps({settings, situation, server, report, scratch, transaction});
        return ExitCode::Ok;
    } catch (const std::exception& error) {
        report.error(error.what());
    }
    if (transaction.begun())
        report.heading("putting everything back");
    if (transaction.rollBack()) {
        report.error("all is as it was before");
        return ExitCode::RolledBack;
    }
    scratch.keep(); // what is to be done by hand may need the files
    report.error("not everything could be put back, see above");
    return ExitCode::Incomplete;
}

bool checksFailed(const Report& report) {
    if (report.problems() != 0)
        report.error(std::to_string(report.problems()) +
                     (report.problems() == 1 ? " check" : " checks") +
                     " failed; nothing was changed");
    else if (interruptedBy() != 0)
        report.error("interrupted; nothing was changed");
    return report.problems() != 0 || interruptedBy() != 0;
}

} // namespace registering
