// What the server has to say before any provider is asked: the namespaces and the MOF files.
#pragma once

#include "cimhost/CommandLine.h"
#include "repository/Repository.h"

namespace embedded::cimhost {

/// Creates the namespaces and loads the files of `settings`, in order. Throws mof::MofError.
void load(const Settings& settings, repository::Repository& repository);

} // namespace embedded::cimhost
