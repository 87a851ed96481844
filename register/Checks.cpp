#include "register/Situation.h"

#include "register/Names.h"
#include "register/Process.h"

#include <algorithm>
#include <stdexcept>

namespace registering {
namespace {

// Of the classes that are needed in a namespace, those that are missing: those that are loaded into
// it, and the others.
struct Missing {
    std::vector<std::string> own;
    std::vector<std::string> others;
};

Missing missingClasses(const Place& place, const Situation& situation) {
    NameSet brought;
    std::vector<std::string> needed;
    for (const Layer& layer : situation.layers(place))
        for (const Class& declared : layer.schema->classes) {
            brought.insert(declared.name);
            if (layer.schema == &situation.content.base)
                continue; // what is needed of it is named by the others
            needed.push_back(declared.name);
            if (!declared.superclass.empty())
                needed.push_back(declared.superclass);
            needed.insert(needed.end(), declared.references.begin(), declared.references.end());
        }
    for (const Module& module : situation.content.modules)
        if (place.served || !module.serverObjects)
            for (const Instance& capability : module.registration.capabilities())
                needed.push_back(capabilityName(capability));
    Missing missing;
    for (const std::string& name : needed)
        if (place.classes.count(name) == 0)
            addName(brought.count(name) != 0 ? missing.own : missing.others, name);
    return missing;
}

// The classes that are served, and those at the ends of their associations.
std::vector<std::string> classesThatCount(const Content& content) {
    std::vector<std::string> result;
    for (const Module& module : content.modules)
        for (const Instance& capability : module.registration.capabilities())
            addName(result, capabilityName(capability));
    for (const Schema* schema : {&content.base, &content.server, &content.own})
        for (const Class& declared : schema->classes)
            if (hasName(result, declared.name))
                for (const std::string& end : declared.references)
                    addName(result, end);
    return result;
}

std::string inWords(const NameSet& names) {
    return names.empty() ? "no keys" : joined({names.begin(), names.end()});
}

bool overlap(const Instance& one, const Instance& other, const char* property) {
    const std::vector<std::string> mine = texts(one, property);
    const std::vector<std::string> others = texts(other, property);
    return std::any_of(mine.begin(), mine.end(),
                       [&](const std::string& item) { return hasName(others, item); });
}

// Whether an empty answer is wrong. A server that is reached by its local socket alone has no
// communication mechanism; all have an object manager.
bool neverEmpty(const ModuleState& module, const std::string& name) {
    return !module.serverObjects || sameName(name, "CIM_ObjectManager");
}

} // namespace

void checkClasses(const Job& job, const Situation& situation, bool own) {
    Report& report = job.report;
    for (const Place& place : situation.places) {
        const Missing missing = missingClasses(place, situation);
        const std::string why =
            place.served
                ? ""
                : " (the module reads their definitions there, though it does not serve it)";
        if (!missing.others.empty())
            report.wrong(place.nameSpace + " has no class " + joined(missing.others) + why,
                         "load the CIM schema into it (cimmof -n " + place.nameSpace +
                             " ...), or choose other namespaces with --namespace");
        if (own && !missing.own.empty())
            report.wrong(place.nameSpace + " has no class " + joined(missing.own) + why,
                         "run serverprofile-register install");
        if (!place.there)
            report.ok(place.nameSpace + " is not there yet, and is made");
        else if (missing.others.empty() && (missing.own.empty() || !own))
            report.ok(place.nameSpace + " has the classes" +
                      (own ? "" : " that the modules' own build on") + why);
    }
}

void checkKeys(const Job& job, const Situation& situation) {
    const auto wanted = situation.content.keys();
    const std::vector<std::string> names = classesThatCount(situation.content);
    for (const Place& place : situation.places) {
        const auto texts = job.server.classTexts(place.nameSpace, names, place.classes, true);
        for (const std::string& name : names) {
            const auto declared = wanted.find(name);
            const auto text = texts.find(name);
            if (declared == wanted.end() || text == texts.end())
                continue;
            const Mof mof = readListing(text->second, place.nameSpace + ":" + name);
            if (mof.classes.empty())
                throw Failure("the server shows no class " + place.nameSpace + ":" + name);
            const NameSet found(mof.classes.front().keys.begin(), mof.classes.front().keys.end());
            if (!sameNames(found, declared->second))
                job.report.wrong(
                    place.nameSpace + ":" + name + " has " + inWords(found) +
                        " where the modules expect " + inWords(declared->second),
                    "its objects could not be told apart; load the class as the CIM schema "
                    "has it, or choose other namespaces with --namespace");
        }
    }
}

void checkRivals(const Job& job, const Situation& situation) {
    for (const ModuleState& module : situation.modules)
        for (const Instance& capability : module.wanted.capabilities())
            for (const Instance& rival : situation.rivals)
                if (sameName(capabilityName(capability), capabilityName(rival)) &&
                    overlap(capability, rival, "ProviderType") &&
                    overlap(capability, rival, "Namespaces"))
                    job.report.wrong(
                        "the module " + text(rival, "ProviderModuleName") + " serves " +
                            capabilityName(rival) + " in " + joined(texts(rival, "Namespaces")) +
                            " already",
                        "the server takes one provider for a class; unregister the other "
                        "(cimprovider -r -m " +
                            text(rival, "ProviderModuleName") +
                            "), or choose other namespaces with --namespace");
}

std::vector<Trial> tryOut(const Situation& situation, const Server& server) {
    std::vector<Trial> result;
    for (const Place& place : situation.places)
        for (const ModuleState& module : situation.modules)
            for (const Instance& capability : module.wanted.capabilities()) {
                if (!hasName(texts(capability, "Namespaces"), place.nameSpace) ||
                    !forInstancesAlone(capability) || interruptedBy() != 0)
                    continue;
                const std::string name = capabilityName(capability);
                const Answer answer = server.instanceNames(place.nameSpace, name);
                // Other providers may have instances of its subclasses.
                const auto count =
                    std::count_if(answer.classes.begin(), answer.classes.end(),
                                  [&](const std::string& other) { return sameName(name, other); });
                const std::string request = place.nameSpace + ":" + name + ": ";
                if (!answer.error.empty())
                    result.push_back({false, request + "the request " + answer.error});
                else if (count == 0 && neverEmpty(module, name))
                    result.push_back({false, request + "the module answers nothing"});
                else
                    result.push_back({true, request + std::to_string(count) + " answered"});
            }
    return result;
}

} // namespace registering
