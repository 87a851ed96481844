#include "register/Steps.h"

#include "register/Names.h"

#include <algorithm>
#include <map>

namespace registering {
namespace {

/// The text of each of the module's classes that a namespace had.
using Texts = std::map<std::string, std::string>;

Texts classTexts(const Work& work, const Place& place) {
    Texts texts;
    for (const Class& declared : work.situation.content.schema)
        if (place.classes.count(declared.name) != 0)
            texts[declared.name] = work.server.classText(place.nameSpace, declared.name);
    return texts;
}

bool current(const Class& declared, const Texts& texts) {
    const auto at = texts.find(declared.name);
    if (at == texts.end())
        return false;
    const Mof found = readMof(at->second, "the definition of " + declared.name);
    return !found.classes.empty() && found.classes.front().version == declared.version;
}

void loadText(const Work& work, const std::string& nameSpace, const std::string& text) {
    work.server.load(nameSpace, work.scratch.write("class.mof", text));
}

// Deletes what was not there before, and gives back their text to the others.
void restoreClasses(const Work& work, const std::string& nameSpace, const Texts& before) {
    const std::optional<NameSet> now = work.server.classes(nameSpace);
    if (!now)
        return;
    // Backwards: a class goes before those that it needs. The server would not insist on it for
    // references, and could not read the class any more.
    const std::vector<Class>& schema = work.situation.content.schema;
    for (auto declared = schema.rbegin(); declared != schema.rend(); ++declared)
        if (before.count(declared->name) == 0 && now->count(declared->name) != 0 &&
            !work.server.deleteClass(nameSpace, declared->name))
            throw Failure(nameSpace + ":" + declared->name + " is in use");
    for (const Class& declared : schema) {
        const auto text = before.find(declared.name);
        if (text != before.end() &&
            (now->count(declared.name) == 0 ||
             work.server.classText(nameSpace, declared.name) != text->second))
            loadText(work, nameSpace, text->second);
    }
}

// Whether an association points to that very class, and not just to one of its superclasses. The
// common schema knows no vendor's classes, so its many associations need not be looked at.
bool pointsTo(const Work& work, const std::string& nameSpace, const std::string& association,
              const std::string& name) {
    if (lower(association).compare(0, 4, "cim_") == 0)
        return false;
    const Mof mof = readMof(work.server.classText(nameSpace, association), association);
    if (mof.classes.empty())
        return true; // not understood: the class is better kept
    const std::vector<std::string>& ends = mof.classes.front().references;
    return std::any_of(ends.begin(), ends.end(),
                       [&](const std::string& end) { return sameName(end, name); });
}

// Who would miss a class: its subclasses, the associations that point to it, its instances. What
// this run has deleted, or would have, does not count.
std::string holder(const Work& work, const std::string& nameSpace, const Class& declared,
                   const NameSet& gone) {
    for (const std::string& name : work.server.subclasses(nameSpace, declared.name))
        if (gone.count(name) == 0)
            return "the class " + name + " is derived from it";
    for (const std::string& name : work.server.associations(nameSpace, declared.name))
        if (gone.count(name) == 0 && pointsTo(work, nameSpace, name, declared.name))
            return "the association " + name + " points to it";
    // A dry run leaves the module registered, and would find its instances.
    if (work.settings.dryRun && work.situation.serves())
        return "";
    const Answer answer = work.server.instanceNames(nameSpace, declared.name);
    if (!answer.error.empty() && !answer.noProvider)
        return "whether others have instances of it could not be found out: the request " +
               answer.error;
    return answer.classes.empty() ? "" : "others have instances of it";
}

} // namespace

void loadClasses(const Work& work, const Place& place) {
    const std::vector<Class>& schema = work.situation.content.schema;
    const Texts before = classTexts(work, place);
    if (std::all_of(schema.begin(), schema.end(),
                    [&](const Class& declared) { return current(declared, before); })) {
        work.report.step("the module's classes are in " + place.nameSpace + " already");
        return;
    }
    std::vector<std::string> added;
    for (const Class& declared : schema)
        if (before.count(declared.name) == 0)
            added.insert(added.begin(), "cimcli dc " + declared.name + " -n " + place.nameSpace);
    const std::string nameSpace = place.nameSpace;
    work.transaction.step("loading the module's classes into " + nameSpace,
                          [&] { work.server.load(nameSpace, work.situation.content.schemaFile); },
                          {"taking the module's classes out of " + nameSpace + " again",
                           [work, nameSpace, before] { restoreClasses(work, nameSpace, before); },
                           added.empty() ? "load their former version" : joined(added)});
}

unsigned deleteClasses(const Work& work, const Place& place) {
    const std::string nameSpace = place.nameSpace;
    const std::vector<Class>& schema = work.situation.content.schema;
    const Texts before = classTexts(work, place);
    NameSet gone;
    unsigned kept = 0;
    for (auto declared = schema.rbegin(); declared != schema.rend(); ++declared) {
        const std::string& name = declared->name;
        if (before.count(name) == 0)
            continue;
        std::string why = holder(work, nameSpace, *declared, gone);
        if (why.empty())
            work.transaction.step("deleting " + nameSpace + ":" + name,
                                  [&] {
                                      if (!work.server.deleteClass(nameSpace, name))
                                          why = "the server says that something hangs on it";
                                  },
                                  {"giving " + nameSpace + ":" + name + " back",
                                   [work, nameSpace, name, before] {
                                       const std::optional<NameSet> now =
                                           work.server.classes(nameSpace);
                                       if (now && now->count(name) == 0)
                                           loadText(work, nameSpace, before.at(name));
                                   },
                                   commandText(work.server.tools().loadMof(
                                       nameSpace, work.situation.content.schemaFile))});
        if (why.empty()) {
            gone.insert(name);
        } else {
            work.report.note("kept " + nameSpace + ":" + name + ": " + why);
            ++kept;
        }
    }
    return kept;
}

} // namespace registering
