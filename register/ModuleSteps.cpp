#include "register/Commands.h"

#include <algorithm>

namespace registering {
namespace {

// Makes the module serve, or not, as it did.
Undo formerState(const Work& work, const ModuleState& module) {
    const bool served = module.serves();
    const Arguments command = work.server.onModule(served ? "-e" : "-d", module.name);
    return {"seeing that " + module.name + " is " + (served ? "enabled" : "disabled") + " again",
            [work, &module, served, command] {
                const std::optional<std::string> now = work.server.status(module.name);
                if (now && (now == "OK") != served)
                    work.server.change(command);
            },
            commandText(command)};
}

// A registration as MOF that can be loaded again. The state belongs to the running module; given
// with a registration, the server would take it as it is.
std::string loadable(Registration registration) {
    for (Instance& instance : registration.instances) {
        auto& properties = instance.properties;
        properties.erase(std::remove_if(properties.begin(), properties.end(),
                                        [](const mof::PropertyInitializer& property) {
                                            return sameName(property.name, "OperationalStatus");
                                        }),
                         properties.end());
    }
    return writeMof(registration.instances);
}

} // namespace

void registerModule(const Work& work, const ModuleState& module) {
    const auto file = work.scratch.write(module.name + ".mof", writeMof(module.wanted.instances));
    const Arguments remove = work.server.onModule("-r", module.name);
    work.transaction.step(
        "registering " + module.name + " for " + joined(module.wanted.nameSpaces()) +
            " (with a copy of the registration that names these)",
        [&] { work.server.change(work.server.loadMof(work.settings.interop, file, true)); },
        {"unregistering " + module.name,
         [work, &module, remove] {
             if (work.server.status(module.name))
                 work.server.change(remove);
         },
         commandText(remove)});
}

void unregisterModule(const Work& work, const ModuleState& module) {
    const auto file = work.scratch.write("former_" + module.name + ".mof", loadable(module.found));
    const Arguments load = work.server.loadMof(work.settings.interop, file, true);
    work.transaction.step("unregistering " + module.name,
                          [&] { work.server.change(work.server.onModule("-r", module.name)); },
                          {"registering " + module.name + " as it was",
                           [work, &module, load] {
                               work.server.change(load);
                               if (module.status && !module.serves())
                                   work.server.change(work.server.onModule("-d", module.name));
                           },
                           commandText(load)});
}

void reload(const Work& work, const ModuleState& module) {
    work.transaction.step(
        module.serves() ? "reloading " + module.name + " (disable, enable)"
                        : module.name + " is disabled (" + *module.status + "); enabling it",
        [&] {
            if (module.serves())
                work.server.change(work.server.onModule("-d", module.name));
            work.server.change(work.server.onModule("-e", module.name));
        },
        formerState(work, module));
}

void disable(const Work& work, const ModuleState& module) {
    work.transaction.step(
        "disabling " + module.name,
        [&] { work.server.change(work.server.onModule("-d", module.name)); },
        formerState(work, module));
}

} // namespace registering
