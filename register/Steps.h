// The steps of installing and removing, each with the way back.
#pragma once

#include "register/Situation.h"
#include "register/Transaction.h"

#include <filesystem>
#include <string>

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
struct Work {
    const Settings& settings;
    const Situation& situation;
    const Server& server;
    const Report& report;
    const Scratch& scratch;
    Transaction& transaction;
};

/// Loads the module's classes into a namespace, unless they are there in the same version.
void loadClasses(const Work& work, const Place& place);

/// Deletes the module's classes from a namespace, but for those that others hold on to, which are
/// noted. Returns how many were kept.
unsigned deleteClasses(const Work& work, const Place& place);

/// Loads the registration.
void registerModule(const Work& work);

/// Removes what is registered.
void unregisterModule(const Work& work);

/// Lets the server load the library anew: disables the module if it serves, and enables it.
void reload(const Work& work);

/// Disables the module, so that the server lets go of it.
void disable(const Work& work);

} // namespace registering
