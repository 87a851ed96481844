// The checks before anything is changed: what the server has, and whether it is as it has to be.
#pragma once

#include "register/CommandLine.h"
#include "register/Content.h"
#include "register/Record.h"
#include "register/Report.h"
#include "register/Server.h"

#include <optional>
#include <string>
#include <vector>

namespace registering {

/// A namespace that needs classes.
struct Place {
    std::string nameSpace;
    bool served;     ///< false: only the definitions of the classes are read there
    bool there;      ///< false: it is made
    bool ours;       ///< it is, or was, made by this program
    NameSet classes; ///< all that it has
};

/// Classes that a place needs.
struct Layer {
    const Schema* schema;
    bool update; ///< those that are there in another version are replaced
};

/// A module on the server.
struct ModuleState {
    std::string name;
    bool serverObjects;
    Registration offered;              ///< the package's
    Registration wanted;               ///< for the chosen namespaces; empty: for none
    Registration found;                ///< what is registered under its name
    std::optional<std::string> status; ///< nothing: it is not registered

    bool serves() const { return status == "OK"; }
};

/// What is on the server.
struct Situation {
    Content content;
    std::vector<ModuleState> modules; ///< as in the content
    std::vector<Instance> rivals;     ///< the capabilities of other modules
    std::vector<Place> places;
    NameSet interopClasses; ///< of the server's own interop namespace
    std::optional<Record> record;

    /// Whether something is registered.
    bool registered() const;
    /// The schemas that a place needs, those first that others build on.
    std::vector<Layer> layers(const Place& place) const;
    /// The names of the classes that may be taken out of a namespace, in the order in which they
    /// depend on each other: what was recorded; of an installation of before there were records,
    /// the profile's own.
    std::vector<std::string> removable(const std::string& nameSpace) const;
    /// Adds to the classes that were loaded into a namespace that was made those of `there` that
    /// the server itself has put there: some of its own interop namespace, in which all of them
    /// begin with PG_. In the order in which they depend on each other, and on others.
    void addCopied(std::vector<std::string>& loaded, const NameSet& there,
                   const std::string& nameSpace, const Server& server) const;
};

/// What the commands work with.
struct Job {
    const Settings& settings;
    const Content& content;
    const Server& server;
    Report& report;
};

/// Asks the server what it has. A namespace that does not exist and is not to be made is left out
/// of the places and reported as wrong; a removal only notes it. If the server cannot be asked, or
/// the record cannot be read, reports why and returns nothing.
std::optional<Situation> survey(const Job& job);

/// Reports whether the server finds the modules' libraries and can load them.
void checkLibraries(const Job& job);

/// What the program does when it is started with probeOption and a file: tries whether that library
/// can be loaded, which may take the process down. Returns its exit code.
int probe(const char* file);
constexpr const char* probeOption = "--probe-library";

/// Reports whether each place has the classes that the modules need there: those of the CIM schema,
/// and with `own` also those that the program loads.
void checkClasses(const Job& job, const Situation& situation, bool own);

/// Reports classes that the modules serve, or that are at the ends of their associations, and that
/// have other keys in a place than in the package.
void checkKeys(const Job& job, const Situation& situation);

/// Reports other modules that are registered for what one of these registers for.
void checkRivals(const Job& job, const Situation& situation);

/// A request that a module has to answer, and what came of it.
struct Trial {
    bool ok;
    std::string text;
};

/// Asks in each namespace for the instances of each class that has some whatever the switch has.
std::vector<Trial> tryOut(const Situation& situation, const Server& server);

/// Lets serverprofile-walk walk each namespace that is served, and reports its verdict. If it
/// cannot be run, or does not reach the server, notes why, and how to run it by hand.
void checkWalks(const Job& job, const Situation& situation);

} // namespace registering
