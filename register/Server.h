// The running CIM server, asked and changed through its own tools.
#pragma once

#include "register/Mof.h"
#include "register/Names.h"
#include "register/Tools.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace registering {

/// A tool failed. The text says which command and what it said.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// What a trial request brought.
struct Answer {
    std::string error;                ///< what the server said, "" if it answered
    std::vector<std::string> classes; ///< the classes of the instances
    bool noProvider = false;          ///< the error: nobody has instances of the class
};

/// Every member throws Failure when a tool fails in a way that the member does not speak of.
class Server : public Tools {
  public:
    /// `ask` runs the commands that change nothing, `change` the others.
    Server(Tools tools, Run ask, Run change)
        : Tools(std::move(tools)), _ask(std::move(ask)), _change(std::move(change)) {}

    /// Runs a command that changes nothing.
    Outcome ask(const Arguments& command) const { return _ask(command); }
    /// Runs one that changes something.
    void change(const Arguments& command) const { answer(_change, command); }

    /// The names of all classes of a namespace; nothing if there is no such namespace.
    std::optional<NameSet> classes(const std::string& nameSpace) const;
    /// The names of the classes derived from a class.
    std::vector<std::string> subclasses(const std::string& nameSpace,
                                        const std::string& name) const;
    /// The association classes that can reach a class, or one of its superclasses.
    NameSet associations(const std::string& nameSpace, const std::string& name) const;
    /// A class as MOF.
    std::string classText(const std::string& nameSpace, const std::string& name) const;
    /// The names of a class's key properties, inherited ones too.
    NameSet keys(const std::string& nameSpace, const std::string& name) const;
    /// The names of the qualifiers that are declared in a namespace.
    std::vector<std::string> qualifiers(const std::string& nameSpace) const;
    Answer instanceNames(const std::string& nameSpace, const std::string& className) const;

    /// All registered modules.
    std::vector<Instance> registrations(const std::string& interop) const;
    /// The state of a module, "OK" if it serves; nothing if it is not registered.
    std::optional<std::string> status(const std::string& module) const;
    /// The present value of a property of the server's configuration; empty if it has none, or it
    /// cannot be found out.
    std::string configured(const std::string& property) const;
    /// Where the server looks for libraries; empty if it cannot be found out.
    std::vector<std::filesystem::path> providerDirectories() const;
    /// The server's version; empty if it cannot be found out.
    std::string version() const;

    /// False, and the class stays, if the server says that something hangs on it.
    bool deleteClass(const std::string& nameSpace, const std::string& name) const;

  private:
    std::string answer(const Run& run, const Arguments& command) const;

    Run _ask;
    Run _change;
};

} // namespace registering
