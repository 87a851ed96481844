#include "register/Steps.h"

#include "register/Names.h"

namespace registering {
namespace {

// Makes the module serve, or not, as it did.
Undo formerState(const Work& work) {
    const bool served = work.situation.serves();
    const std::string module = work.situation.module();
    const Tools& tools = work.server.tools();
    return {served ? "seeing that " + module + " is enabled again"
                   : "seeing that " + module + " is disabled again",
            [work, module, served] {
                const std::optional<std::string> now = work.server.status(module);
                if (now && served && now != "OK")
                    work.server.enable(module);
                else if (now && !served && now == "OK")
                    work.server.disable(module);
            },
            commandText(served ? tools.enable(module) : tools.disable(module))};
}

// A registration as MOF that can be loaded again. The state belongs to the running module; given
// with a registration, the server would take it as it is.
std::string loadable(const Registration& registration) {
    std::vector<Instance> instances = registration.instances();
    for (Instance& instance : instances) {
        std::vector<Property> kept;
        for (const Property& property : instance.properties)
            if (!sameName(property.name, "OperationalStatus"))
                kept.push_back(property);
        instance.properties = kept;
    }
    return writeMof(instances);
}

} // namespace

void registerModule(const Work& work) {
    const Situation& situation = work.situation;
    const std::string module = situation.module();
    const auto file =
        work.scratch.write("registration.mof", writeMof(situation.wanted.instances()));
    work.transaction.step("registering " + module + " for " +
                              joined(situation.wanted.nameSpaces()) +
                              " (with a copy of the registration that names these)",
                          [&] { work.server.load(work.settings.interop, file); },
                          {"unregistering " + module,
                           [work, module] {
                               if (work.server.status(module))
                                   work.server.removeModule(module);
                           },
                           commandText(work.server.tools().removeModule(module))});
}

void unregisterModule(const Work& work) {
    const std::string module = work.situation.module();
    const auto file = work.scratch.write("former.mof", loadable(work.situation.found));
    work.transaction.step("unregistering " + module, [&] { work.server.removeModule(module); },
                          {"registering " + module + " as it was",
                           [work, file, module] {
                               work.server.load(work.settings.interop, file);
                               if (!work.situation.serves() && work.situation.status)
                                   work.server.disable(module);
                           },
                           commandText(work.server.tools().loadMof(work.settings.interop, file))});
}

void reload(const Work& work) {
    const std::string module = work.situation.module();
    const bool served = work.situation.serves();
    work.transaction.step(
        served ? "reloading " + module + " (disable, enable)"
               : module + " is disabled (" + *work.situation.status + "); enabling it",
        [&] {
            if (served)
                work.server.disable(module);
            work.server.enable(module);
        },
        formerState(work));
}

void disable(const Work& work) {
    const std::string module = work.situation.module();
    work.transaction.step(
        "disabling " + module, [&] { work.server.disable(module); }, formerState(work));
}

} // namespace registering
