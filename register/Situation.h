// What is found before anything is changed, and whether it is as it has to be.
#pragma once

#include "register/CommandLine.h"
#include "register/Report.h"
#include "register/Server.h"

#include <optional>
#include <string>
#include <vector>

namespace registering {

/// A namespace that needs the module's classes.
struct Place {
    std::string nameSpace;
    bool served;     ///< false: only the definitions of the classes are read there
    NameSet classes; ///< all that it has
};

/// What is on the server.
struct Situation {
    Content content;
    Registration wanted;               ///< the content's registration, for the chosen namespaces
    Registration found;                ///< what is registered under the module's name
    std::vector<Instance> rivals;      ///< the capabilities of other modules
    std::optional<std::string> status; ///< of the module; nothing: it is not registered
    std::vector<Place> places;

    std::string module() const { return wanted.module(); }
    bool serves() const { return status == "OK"; }
};

/// The server's tools; nothing, and said, if one is missing.
std::optional<Tools> checkTools(const Settings& settings, Report& report);

/// The module's MOF files; nothing, and said, if they cannot be read.
std::optional<Content> checkContent(const Settings& settings, Report& report);

/// Looks at the server. A namespace that does not exist is left out of the places; it is wrong, but
/// for a removal, which only notes it. Nothing, and said, if the server cannot be asked.
std::optional<Situation> survey(const Settings& settings, const Content& content,
                                const Server& server, Report& report);

/// Whether the server finds the module's library and can load it.
void checkLibrary(const Settings& settings, const Content& content, const Server& server,
                  Report& report);

/// Whether each place has the classes that the module needs there: those of the CIM schema, and
/// with `own` those that the module brings, too.
void checkClasses(const Situation& situation, Report& report, bool own);

/// Whether another module has what this one registers for.
void checkRivals(const Situation& situation, Report& report);

/// A request that the module has to answer, and what came of it.
struct Trial {
    bool ok;
    std::string text;
};

/// Asks in each namespace for the instances of each class that has some whatever the switch has.
std::vector<Trial> tryOut(const Situation& situation, const Server& server);

} // namespace registering
