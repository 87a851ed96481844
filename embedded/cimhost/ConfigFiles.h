// Options from files (--config).
#pragma once

#include <CLI/CLI.hpp>

namespace embedded::cimhost {

/// Declares --config. What stands in a file counts as if it stood before the command line: an
/// option that can be repeated has the values of the files, in their order, and then those of the
/// command line; any other one has the value of the last that names it. Relative paths in a file
/// start from its directory. An unknown option in a file makes parsing throw CLI::ConfigError.
void declareConfigFiles(CLI::App& app);

} // namespace embedded::cimhost
