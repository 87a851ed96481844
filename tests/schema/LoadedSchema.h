// The schema, the registration and the sample switch, loaded as a server loads them.
#pragma once

#include "repository/Repository.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

class LoadedSchema : public testing::Test {
  protected:
    LoadedSchema();

    static std::string text(const Pegasus::String& value);
    Pegasus::CIMClass classNamed(const std::string& name) const;
    /// The values of a property's qualifier of type string[].
    std::vector<std::string> listQualifier(const std::string& className,
                                           const std::string& property,
                                           const std::string& qualifier) const;
    /// All instances of that class itself, in their order.
    std::vector<Pegasus::CIMInstance> instancesOf(const Pegasus::CIMNamespaceName& nameSpace,
                                                  const char* className) const;
    /// The value of a property of an instance as text; "" for NULL.
    static std::string value(const Pegasus::CIMInstance& instance, const char* property);

    const Pegasus::CIMNamespaceName home{"root/cimv2"};
    const Pegasus::CIMNamespaceName interop{"root/PG_InterOp"};
    embedded::repository::Repository repository;
};

/// The namespaces and MOF files that the configuration files of the sample load, in their order,
/// and the registration of the server's own objects, which cimhost brings along.
std::vector<std::pair<std::string, std::string>> loadedFiles();

/// Where the file of the project is.
std::string projectFile(const std::string& relative);
