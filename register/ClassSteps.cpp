#include "register/Commands.h"

#include "register/Names.h"

#include <algorithm>
#include <map>
#include <utility>

namespace registering {
namespace {

std::string fileName(const char* what, std::string nameSpace) {
    std::replace(nameSpace.begin(), nameSpace.end(), '/', '_');
    return what + nameSpace + ".mof";
}

/// What a namespace had of some classes, and a file to load that from again.
struct Former {
    std::map<std::string, std::string> texts;
    std::filesystem::path file;
};

Former formerClasses(const Work& work, const char* what, const Place& place,
                     const std::vector<std::string>& names) {
    Former former{work.server.classTexts(place.nameSpace, names, place.classes), {}};
    std::string all;
    for (const std::string& name : names) // in their order
        if (const auto found = former.texts.find(name); found != former.texts.end())
            all += found->second;
    former.file = work.scratch.write(fileName(what, place.nameSpace), all);
    return former;
}

std::vector<std::string> namesOf(const Schema& schema) {
    std::vector<std::string> names;
    for (const Class& declared : schema.classes)
        names.push_back(declared.name);
    return names;
}

// Whether a namespace has all of a layer already.
bool current(const Layer& layer, const Place& place, const Former& former) {
    return std::all_of(
        layer.schema->classes.begin(), layer.schema->classes.end(),
        [&](const Class& declared) {
            if (place.classes.count(declared.name) == 0 || !layer.update)
                return place.classes.count(declared.name) != 0;
            const Mof found =
                readListing(former.texts.at(declared.name), "the definition of " + declared.name);
            return !found.classes.empty() && found.classes.front().version == declared.version;
        });
}

// Gives back the classes that are not there any more, and with `update` their text to the others.
void giveBack(const Work& work, const std::string& nameSpace, const Former& former, bool update) {
    const NameSet now = work.server.classes(nameSpace).value_or(NameSet());
    if (std::any_of(former.texts.begin(), former.texts.end(), [&](const auto& entry) {
            return now.count(entry.first) == 0 ||
                   (update && work.server.classText(nameSpace, entry.first) != entry.second);
        }))
        work.server.change(work.server.loadMof(nameSpace, former.file, update));
}

void deleteNameSpace(const Work& work, const std::string& nameSpace) {
    for (const std::string& name : work.server.qualifiers(nameSpace))
        work.server.change(work.server.onName("dq", nameSpace, name));
    work.server.change(work.server.deleteNameSpace(nameSpace));
}

// Takes a layer out again: deletes what was not there before, and gives back their text to the
// others.
void unload(const Work& work, const Layer& layer, const Place& place, const Former& former) {
    const std::string& nameSpace = place.nameSpace;
    const std::optional<NameSet> now = work.server.classes(nameSpace);
    if (!now)
        return;
    // Backwards: a class goes before those that it needs. The server would not insist on it for
    // references, and could not read the class any more.
    std::vector<std::string> names = namesOf(*layer.schema);
    const bool made = !place.there && layer.schema == &work.situation.content.base;
    if (made)
        work.situation.addCopied(names, *now, nameSpace, work.server);
    for (auto name = names.rbegin(); name != names.rend(); ++name)
        if (place.classes.count(*name) == 0 && now->count(*name) != 0 &&
            !work.server.deleteClass(nameSpace, *name))
            throw Failure(nameSpace + ":" + *name + " is in use");
    giveBack(work, nameSpace, former, true);
    if (made)
        deleteNameSpace(work, nameSpace);
}

void loadLayer(const Work& work, const Place& place, const Layer& layer) {
    const std::string nameSpace = place.nameSpace;
    const std::vector<std::string> names = namesOf(*layer.schema);
    const std::string file = layer.schema->file.filename();
    const Former former = formerClasses(work, ("former_" + file + "_").c_str(), place,
                                        layer.update ? names : std::vector<std::string>());
    if (current(layer, place, former)) {
        work.report.step("the classes of " + file + " are in " + nameSpace + " already");
        return;
    }
    std::vector<std::string> byHand;
    for (auto name = names.rbegin(); name != names.rend(); ++name)
        if (place.classes.count(*name) == 0)
            byHand.push_back(commandText(work.server.onName("dc", nameSpace, *name)));
    if (!former.texts.empty())
        byHand.push_back(commandText(work.server.loadMof(nameSpace, former.file, true)));
    if (!place.there && layer.schema == &work.situation.content.base)
        byHand.push_back("'cimcli dq' for each qualifier; " +
                         commandText(work.server.deleteNameSpace(nameSpace)));
    work.transaction.step(
        "loading the classes of " + file + " into " + nameSpace,
        [&] {
            work.server.change(work.server.loadMof(nameSpace, layer.schema->file, layer.update));
        },
        {"taking the classes of " + file + " out of " + nameSpace + " again",
         [work, layer, place, former] { unload(work, layer, place, former); }, joined(byHand)});
}

// Whether an association points to that very class, and not just to one of its superclasses. The
// common schema knows no vendor's classes, so for these its many associations need not be looked
// at.
bool pointsTo(const Work& work, const std::string& nameSpace, const std::string& association,
              const std::string& name) {
    const auto common = [](const std::string& one) { return sameName(one.substr(0, 4), "CIM_"); };
    if (common(association) && !common(name))
        return false;
    const Mof mof = readListing(work.server.classText(nameSpace, association), association);
    // What is not understood keeps the class.
    return mof.classes.empty() || hasName(mof.classes.front().references, name);
}

// What is being taken out of a namespace.
struct Removal {
    const Place& place;
    NameSet names; ///< all that is to go
    bool alone;    ///< nobody else has a class there
    NameSet gone;  ///< what has gone, or would have
    NameSet named; ///< subclasses of others that were named already
    std::vector<std::string> kept;
};

constexpr const char* keptOnesNeedIt = "classes that are kept need it";

// Which class would miss a class: one derived from it, or an association that points to it.
std::string missingIt(const Work& work, Removal& removal, const std::string& name) {
    const std::string& nameSpace = removal.place.nameSpace;
    if (removal.alone && removal.kept.empty())
        return "";
    bool needed = false;
    for (const std::string& below : work.server.subclasses(nameSpace, name))
        if (removal.gone.count(below) != 0)
            continue;
        else if (removal.names.count(below) == 0 && removal.named.insert(below).second)
            return "the class " + below + " is derived from it";
        else
            needed = true;
    for (const std::string& association : work.server.associations(nameSpace, name))
        if (removal.gone.count(association) != 0 || !pointsTo(work, nameSpace, association, name))
            continue;
        else if (removal.names.count(association) == 0)
            return "the association " + association + " points to it";
        else
            needed = true;
    return needed ? keptOnesNeedIt : "";
}

// Who would miss a class: another class, who is registered for it, its instances.
std::string holder(const Work& work, Removal& removal, const std::string& name) {
    const std::string& nameSpace = removal.place.nameSpace;
    for (const Instance& rival : work.situation.rivals)
        if (sameName(capabilityName(rival), name) && hasName(texts(rival, "Namespaces"), nameSpace))
            return "the module " + text(rival, "ProviderModuleName") + " is registered for it";
    std::string why = missingIt(work, removal, name);
    // A dry run leaves the modules registered, and would find their instances. Of the other classes
    // the server itself has some, whatever is registered; it counts what is stored when it is asked
    // to delete the class.
    if (!why.empty() || (work.settings.dryRun && work.situation.registered()) ||
        !hasName(namesOf(work.situation.content.own), name))
        return why;
    const Answer answer = work.server.instanceNames(nameSpace, name);
    if (!answer.error.empty() && !answer.noProvider)
        return "whether others have instances of it could not be found out: the request " +
               answer.error;
    return answer.classes.empty() ? "" : "others have instances of it";
}

// Why a namespace that was made has to stay; empty if it can go.
std::string holderOf(const Work& work, const Removal& removal) {
    if (!removal.kept.empty())
        return "classes of it are kept";
    if (!removal.alone)
        return "others have classes in it";
    for (const std::string& name : work.server.qualifiers(removal.place.nameSpace))
        if (!hasName(work.situation.content.base.qualifiers, name))
            return "others declared the qualifier " + name + " in it";
    return "";
}

// Deletes a namespace that was made; returns whether it is gone, or would be.
bool removeNameSpace(const Work& work, const Removal& removal) {
    const std::string nameSpace = removal.place.nameSpace;
    const std::string why = holderOf(work, removal);
    if (!why.empty()) {
        work.report.note("kept the namespace " + nameSpace + ": " + why);
        return false;
    }
    const auto file = work.situation.content.base.file.parent_path() / "qualifiers.mof";
    work.transaction.step("deleting the namespace " + nameSpace,
                          [&] { deleteNameSpace(work, nameSpace); },
                          {"making the namespace " + nameSpace + " again",
                           [work, nameSpace, file] {
                               work.server.change(work.server.loadMof(nameSpace, file, false));
                           },
                           commandText(work.server.loadMof(nameSpace, file, false))});
    return true;
}

} // namespace

void loadClasses(const Work& work, const Place& place) {
    for (const Layer& layer : work.situation.layers(place))
        loadLayer(work, place, layer);
}

Left deleteClasses(const Work& work, const Place& place) {
    const std::string nameSpace = place.nameSpace;
    const bool made = work.situation.record && work.situation.record->made(nameSpace);
    std::vector<std::string> names = work.situation.removable(nameSpace);
    if (made)
        work.situation.addCopied(names, place.classes, nameSpace, work.server);
    Removal removal{place, {names.begin(), names.end()}, true, {}, {}, {}};
    for (const std::string& name : place.classes)
        removal.alone &= removal.names.count(name) != 0;
    const Former former = formerClasses(work, "removed_", place, names);
    Undo undo{"giving the classes of " + nameSpace + " back",
              [work, nameSpace, former] { giveBack(work, nameSpace, former, false); },
              commandText(work.server.loadMof(nameSpace, former.file, false))};
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        if (place.classes.count(*name) == 0)
            continue;
        std::string why = holder(work, removal, *name);
        if (why.empty()) {
            work.transaction.step(
                "deleting " + nameSpace + ":" + *name,
                [&] {
                    if (!work.server.deleteClass(nameSpace, *name))
                        why = "the server says that something hangs on it";
                },
                std::exchange(undo, {})); // one way back for all of them
        }
        if (why.empty()) {
            removal.gone.insert(*name);
        } else {
            if (why != keptOnesNeedIt) // which follows from the rest
                work.report.note("kept " + nameSpace + ":" + *name + ": " + why);
            removal.kept.push_back(*name);
        }
    }
    std::reverse(removal.kept.begin(), removal.kept.end());
    return {removal.kept, made && !removeNameSpace(work, removal)};
}

} // namespace registering
