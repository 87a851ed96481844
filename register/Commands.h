// The three commands, and the steps of installing and removing, each with the way back.
#pragma once

#include "register/Situation.h"
#include "register/Transaction.h"

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace registering {

/// A directory for the files that the server's tools read; it goes with this object unless it is
/// kept.
class Scratch {
  public:
    /// Throws std::system_error where none can be made.
    Scratch();
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch();

    /// Writes a file; throws std::runtime_error where it cannot be written.
    std::filesystem::path write(const std::string& name, const std::string& text) const;
    /// Leaves the files behind, for someone who has to put things right by hand.
    void keep() { _keep = true; }

  private:
    std::filesystem::path _directory;
    bool _keep = false;
};

/// Everything that a step works with. All of it outlives the transaction.
struct Work : Job {
    const Situation& situation;
    const Scratch& scratch;
    Transaction& transaction;
};

/// Loads the classes that a place needs, unless they are there in the same version; makes the
/// namespace if it is not there.
void loadClasses(const Work& work, const Place& place);

/// What is left of what was to be taken out of a namespace.
struct Left {
    std::vector<std::string> classes;
    bool nameSpace; ///< the namespace itself, that should have gone
};

/// Deletes from a namespace the classes that may be taken out of it, but for those that others hold
/// on to, which are noted; then the namespace, if it was made and nothing is in it.
Left deleteClasses(const Work& work, const Place& place);

/// Loads a module's registration.
void registerModule(const Work& work, const ModuleState& module);

/// Removes what is registered of a module.
void unregisterModule(const Work& work, const ModuleState& module);

/// Lets the server load the library anew: disables the module if it serves, and enables it.
void reload(const Work& work, const ModuleState& module);

/// Disables the module, so that the server lets go of it.
void disable(const Work& work, const ModuleState& module);

/// The directories that have to be made for a file, the deepest first.
std::vector<std::filesystem::path> directoriesMissing(const std::filesystem::path& file);

/// Writes a file, for which directories are made, or, without a text, deletes it. For `unlessAll`
/// see Undo.
void changeFile(const Work& work, const std::string& what, const std::filesystem::path& file,
                const std::optional<std::string>& text, mode_t mode,
                const std::string& unlessAll = "");

/// Deletes a directory, if it is empty.
void deleteDirectory(const Work& work, const std::filesystem::path& directory);

/// Says that checks failed, if some did; returns whether.
bool checksFailed(const Report& report);

/// Runs `steps` in a transaction: all of them, or none. If one throws, takes all back and says so;
/// then returns RolledBack or Incomplete, otherwise Ok.
ExitCode changing(const Job& job, const Situation& situation,
                  const std::function<void(const Work&)>& steps);

/// Finds the tools and runs the command that the settings name.
/// Throws std::system_error where the system denies it a pipe or a temporary directory.
ExitCode run(const Settings& settings);

ExitCode install(const Job& job);
ExitCode remove(const Job& job);
ExitCode status(const Job& job);

} // namespace registering
