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

/// The files of a server's namespaces, and those of its interop namespace besides, in the order
/// in which they are loaded; relative to the project's directory.
extern const std::vector<std::string> commonFiles;
extern const std::vector<std::string> interopFiles;

/// Where the file of the project is.
std::string projectFile(const std::string& relative);
