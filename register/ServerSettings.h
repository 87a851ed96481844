// The settings file of the provider of the server's own objects.
#pragma once

#include "register/Situation.h"

#include <filesystem>
#include <optional>
#include <string>

namespace registering {

struct ServerSettings {
    std::filesystem::path file;
    std::string wanted;
    std::optional<std::string> found;

    /// Whether the file is this program's: not there, as it was written (by the record, or by the
    /// look of it), and not changed since.
    bool ours(const std::optional<Record>& record) const;
};

/// What the file should say of this server, and what it says. Throws std::runtime_error where it
/// cannot be read.
ServerSettings serverSettings(const Settings& settings, const Situation& situation,
                              const Server& server);

} // namespace registering
