#include "register/Steps.h"

#include "register/Names.h"

#include <algorithm>

namespace registering {
namespace {

// Makes the module serve, or not, as it did.
Undo formerState(const Work& work, const ModuleState& state) {
    const bool served = state.serves();
    const std::string module = state.name;
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
            commandText(tools.onModule(served ? "-e" : "-d", module))};
}

// A registration as MOF that can be loaded again. The state belongs to the running module; given
// with a registration, the server would take it as it is.
std::string loadable(const Registration& registration) {
    std::vector<Instance> instances = registration.instances;
    for (Instance& instance : instances) {
        auto& properties = instance.properties;
        properties.erase(std::remove_if(properties.begin(), properties.end(),
                                        [](const mof::PropertyInitializer& property) {
                                            return sameName(property.name, "OperationalStatus");
                                        }),
                         properties.end());
    }
    return writeMof(instances);
}

} // namespace

void registerModule(const Work& work, const ModuleState& module) {
    const std::string name = module.name;
    const auto file = work.scratch.write(name + ".mof", writeMof(module.wanted.instances));
    work.transaction.step("registering " + name + " for " + joined(module.wanted.nameSpaces()) +
                              " (with a copy of the registration that names these)",
                          [&] { work.server.load(work.settings.interop, file); },
                          {"unregistering " + name,
                           [work, name] {
                               if (work.server.status(name))
                                   work.server.removeModule(name);
                           },
                           commandText(work.server.tools().onModule("-r", name))});
}

void unregisterModule(const Work& work, const ModuleState& module) {
    const std::string name = module.name;
    const bool disabled = module.status && !module.serves();
    const auto file = work.scratch.write("former_" + name + ".mof", loadable(module.found));
    work.transaction.step(
        "unregistering " + name, [&] { work.server.removeModule(name); },
        {"registering " + name + " as it was",
         [work, file, name, disabled] {
             work.server.load(work.settings.interop, file);
             if (disabled)
                 work.server.disable(name);
         },
         commandText(work.server.tools().loadMof(work.settings.interop, file, true))});
}

void reload(const Work& work, const ModuleState& module) {
    const std::string name = module.name;
    const bool served = module.serves();
    work.transaction.step(
        served ? "reloading " + name + " (disable, enable)"
               : name + " is disabled (" + *module.status + "); enabling it",
        [&] {
            if (served)
                work.server.disable(name);
            work.server.enable(name);
        },
        formerState(work, module));
}

void disable(const Work& work, const ModuleState& module) {
    work.transaction.step(
        "disabling " + module.name, [&] { work.server.disable(module.name); },
        formerState(work, module));
}

} // namespace registering
