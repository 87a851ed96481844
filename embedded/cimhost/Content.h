// What the server has to say before any provider is asked: the namespaces and the MOF files, and
// which options these cannot fulfil.
#pragma once

#include "cimhost/CommandLine.h"
#include "repository/Repository.h"

#include <string>
#include <vector>

namespace embedded::cimhost {

/// Creates the namespaces and loads the files of `settings`, in order. Throws mof::MofError.
void load(const Settings& settings, repository::Repository& repository);

/// What to tell about each of `faults` whose class no namespace of `view` has: most likely
/// it is misspelt, and no provider's question would ever meet it.
std::vector<std::string> faultsOfUnknownClasses(const std::vector<routing::Fault>& faults,
                                                const repository::View& view);

} // namespace embedded::cimhost
