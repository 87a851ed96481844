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

    /// Whether the program may write the file: it is not there, or has the text that is wanted or
    /// that the program wrote last, by the record.
    bool ours(const std::optional<Record>& record) const;
};

/// The text that the file should have for this server, and the one that it has. Throws
/// std::runtime_error where it cannot be read.
ServerSettings serverSettings(const Settings& settings, const Situation& situation,
                              const Server& server);

} // namespace registering
