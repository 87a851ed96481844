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
class Server {
  public:
    /// `ask` runs the commands that change nothing, `change` the others.
    Server(Tools tools, Run ask, Run change)
        : _tools(std::move(tools)), _ask(std::move(ask)), _change(std::move(change)) {}

    const Tools& tools() const { return _tools; }

    /// Runs a command that changes nothing.
    Outcome ask(const Arguments& command) const { return _ask(command); }

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

    /// Loads MOF; makes the namespace if it is not there. See Tools::loadMof.
    void load(const std::string& nameSpace, const std::filesystem::path& file,
              bool update = true) const;
    void enable(const std::string& module) const { answer(_change, _tools.onModule("-e", module)); }
    void disable(const std::string& module) const {
        answer(_change, _tools.onModule("-d", module));
    }
    void removeModule(const std::string& module) const {
        answer(_change, _tools.onModule("-r", module));
    }
    /// False, and the class stays, if the server says that something hangs on it.
    bool deleteClass(const std::string& nameSpace, const std::string& name) const;
    void deleteQualifier(const std::string& nameSpace, const std::string& name) const {
        answer(_change, _tools.onName("dq", nameSpace, name));
    }
    /// Fails if something is in it.
    void deleteNameSpace(const std::string& nameSpace) const {
        answer(_change, _tools.deleteNameSpace(nameSpace));
    }

  private:
    std::string answer(const Run& run, const Arguments& command) const;

    Tools _tools;
    Run _ask;
    Run _change;
};

} // namespace registering
