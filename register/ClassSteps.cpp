#include "register/Steps.h"

#include "register/Names.h"

#include <algorithm>
#include <map>

namespace registering {
namespace {

/// What a namespace had of the module's classes, and a file to load that from again.
struct Former {
    std::map<std::string, std::string> texts;
    std::filesystem::path file;
};

Former formerClasses(const Work& work, const std::string& nameSpace, const NameSet& classes) {
    Former former;
    std::string all;
    for (const Class& declared : work.situation.content.schema)
        if (classes.count(declared.name) != 0)
            all += former.texts[declared.name] = work.server.classText(nameSpace, declared.name);
    std::string name = "former_" + nameSpace + ".mof";
    std::replace(name.begin(), name.end(), '/', '_');
    former.file = work.scratch.write(name, all);
    return former;
}

bool current(const Class& declared, const Former& former) {
    const auto at = former.texts.find(declared.name);
    if (at == former.texts.end())
        return false;
    const Mof found = readMof(at->second, "the definition of " + declared.name);
    return !found.classes.empty() && found.classes.front().version == declared.version;
}

// Deletes what was not there before, and gives back their text to the others.
void restoreClasses(const Work& work, const std::string& nameSpace, const Former& former) {
    const std::optional<NameSet> now = work.server.classes(nameSpace);
    if (!now)
        return;
    // Backwards: a class goes before those that it needs. The server would not insist on it for
    // references, and could not read the class any more.
    const std::vector<Class>& schema = work.situation.content.schema;
    for (auto declared = schema.rbegin(); declared != schema.rend(); ++declared)
        if (former.texts.count(declared->name) == 0 && now->count(declared->name) != 0 &&
            !work.server.deleteClass(nameSpace, declared->name))
            throw Failure(nameSpace + ":" + declared->name + " is in use");
    if (std::any_of(former.texts.begin(), former.texts.end(), [&](const auto& entry) {
            return now->count(entry.first) == 0 ||
                   work.server.classText(nameSpace, entry.first) != entry.second;
        }))
        work.server.load(nameSpace, former.file);
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
    const std::string nameSpace = place.nameSpace;
    const std::vector<Class>& schema = work.situation.content.schema;
    const Former former = formerClasses(work, nameSpace, place.classes);
    if (std::all_of(schema.begin(), schema.end(),
                    [&](const Class& declared) { return current(declared, former); })) {
        work.report.step("the module's classes are in " + nameSpace + " already");
        return;
    }
    std::vector<std::string> byHand;
    for (auto declared = schema.rbegin(); declared != schema.rend(); ++declared)
        if (former.texts.count(declared->name) == 0)
            byHand.push_back(
                commandText(work.server.tools().deleteClass(nameSpace, declared->name)));
    if (!former.texts.empty())
        byHand.push_back(commandText(work.server.tools().loadMof(nameSpace, former.file)));
    work.transaction.step("loading the module's classes into " + nameSpace,
                          [&] { work.server.load(nameSpace, work.situation.content.schemaFile); },
                          {"taking the module's classes out of " + nameSpace + " again",
                           [work, nameSpace, former] { restoreClasses(work, nameSpace, former); },
                           joined(byHand)});
}

unsigned deleteClasses(const Work& work, const Place& place) {
    const std::string nameSpace = place.nameSpace;
    const std::vector<Class>& schema = work.situation.content.schema;
    const Former former = formerClasses(work, nameSpace, place.classes);
    NameSet gone;
    unsigned kept = 0;
    const auto inWords = [&](const std::string& name) { return nameSpace + ":" + name; };
    const auto keeping = [&](const std::string& words, const std::string& why) {
        work.report.note("kept " + words + ": " + why);
        ++kept;
    };
    for (auto declared = schema.rbegin(); declared != schema.rend(); ++declared) {
        const std::string& name = declared->name;
        if (former.texts.count(name) == 0)
            continue;
        const std::string words = inWords(name);
        std::string why = holder(work, nameSpace, *declared, gone);
        if (why.empty())
            work.transaction.step(
                "deleting " + words,
                [&] {
                    if (!work.server.deleteClass(nameSpace, name))
                        why = "the server says that something hangs on it";
                },
                {"giving " + words + " back",
                 [work, nameSpace, former] { restoreClasses(work, nameSpace, former); },
                 commandText(work.server.tools().loadMof(nameSpace, former.file))});
        if (why.empty()) {
            gone.insert(name);
        } else {
            keeping(words, why);
        }
    }
    return kept;
}

} // namespace registering
