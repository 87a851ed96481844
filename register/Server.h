// The CIM server, asked and changed through its own command line tools: where they are, their
// commands, and what they print.
#pragma once

#include "register/Mof.h"
#include "register/Names.h"
#include "register/Process.h"

#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace registering {

/// A command is made only of names that are names: each throws std::runtime_error for a text that
/// is none, wherever it came from.
struct Tools {
    std::filesystem::path cimmof;
    std::filesystem::path cimprovider;
    std::filesystem::path cimcli;
    std::filesystem::path cimconfig; ///< empty: not there; it only tells how the server is set
    std::filesystem::path cimserver; ///< empty: not there; it only tells its version

    /// With `update`, classes that are there in another version are replaced; without, classes that
    /// are there are left alone. Included files are looked for beside the file.
    Arguments loadMof(const std::string& nameSpace, const std::filesystem::path& file,
                      bool update) const;
    Arguments listModules() const { return {cimprovider, "-l", "-s"}; }
    /// `action`: "-e" enables a module, "-d" disables it, "-r" removes it.
    Arguments onModule(const char* action, const std::string& module) const;
    /// A command of cimcli for a namespace.
    Arguments onNameSpace(const char* command, const std::string& nameSpace,
                          const std::vector<std::string>& options = {}) const;
    /// A command of cimcli for a class or a qualifier.
    Arguments onName(const char* command, const std::string& nameSpace, const std::string& name,
                     const std::vector<std::string>& options = {}) const;
    Arguments deleteNameSpace(const std::string& nameSpace) const;
};

/// Where tools are looked for, in order: in `given` alone, or in PEGASUS_HOME/bin, PATH and the
/// usual places of administrators' programs.
std::vector<std::filesystem::path> toolDirectories(const std::filesystem::path& given);

/// The first of the directories that has the file `name`; `program`: as one that can be run.
/// Returns the file, or an empty path if none has it.
std::filesystem::path findFile(const std::string& name,
                               const std::vector<std::filesystem::path>& directories, bool program);

/// Finds the tools. Those that are not there are left empty and their names appended to `missing`.
Tools findTools(const std::vector<std::filesystem::path>& directories,
                std::vector<std::string>& missing);

/// The lines of a listing, without the space around them and without empty ones.
std::vector<std::string> lines(const std::string& text);

/// The status that `cimprovider -l -s` lists for a module ("OK", "Stopped"); nothing if it does not
/// list it.
std::optional<std::string> moduleStatus(const std::string& listing, const std::string& module);

/// The class names of object paths, one a line, as `cimcli ni` and `cimcli rn` print them, with or
/// without host and namespace; other lines are passed over.
std::vector<std::string> classesOfPaths(const std::string& listing);

/// The names of the qualifiers that `cimcli eq` prints declarations of.
std::vector<std::string> declaredQualifiers(const std::string& listing);

/// The value in "Current value: lib:/usr/lib/providers", as `cimconfig -g` prints it; empty without
/// one.
std::string configuredValue(const std::string& listing);

/// The directories of a list with colons between them, relative ones below `home`.
std::vector<std::filesystem::path> directoriesOf(const std::string& list,
                                                 const std::filesystem::path& home);

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
    /// As MOF, by name, those of the classes `names` that are `there`, which is all that the
    /// namespace has; `whole`: with what they inherit. One question has the answer where they are
    /// most of it.
    std::map<std::string, std::string> classTexts(const std::string& nameSpace,
                                                  const std::vector<std::string>& names,
                                                  const NameSet& there, bool whole = false) const;
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
