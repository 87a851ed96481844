// Options from files (--config).
#pragma once

#include <CLI/CLI.hpp>

namespace embedded::cimhost {

/// Declares --config. The options of a file count as if they stood before the command line: an
/// option that can be repeated gets the values of the files, in their order, and then those of the
/// command line; any other option gets its last value. Relative paths in a file start from its
/// directory. Parsing throws CLI::ConfigError for an unknown option in a file.
void declareConfigFiles(CLI::App& app);

} // namespace embedded::cimhost
