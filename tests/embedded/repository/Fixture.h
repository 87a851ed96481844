// A repository with the qualifiers that the tests use, filled from MOF texts.
#pragma once

#include "mof/Mof.h"
#include "repository/Repository.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace embedded::repository {

std::string text(const Pegasus::String& value);
std::string text(const Pegasus::CIMName& name);
std::vector<std::string> texts(const std::vector<Pegasus::CIMName>& names);
/// "NULL" for a null value.
std::string text(const Pegasus::CIMValue& value);

/// "name=value own|propagated", one per qualifier of a class, instance, property, method,
/// parameter.
template <class Holder>
std::vector<std::string> qualifierTexts(const Holder& holder) {
    std::vector<std::string> result;
    for (Pegasus::Uint32 i = 0; i < holder.getQualifierCount(); ++i) {
        const Pegasus::CIMConstQualifier qualifier = holder.getQualifier(i);
        result.push_back(text(qualifier.getName()) + "=" + text(qualifier.getValue()) +
                         (qualifier.getPropagated() ? " propagated" : " own"));
    }
    return result;
}

/// "name origin given|default value", one per property.
std::vector<std::string> propertyTexts(const Pegasus::CIMInstance& instance);

/// Status and message of a CIMException; a code of -1 if `action` throws none.
struct Status {
    int code = -1;
    std::string message;

    bool operator==(const Status& other) const {
        return code == other.code && message == other.message;
    }
};
std::ostream& operator<<(std::ostream& out, const Status& status);
Status statusOf(const std::function<void()>& action);

class RepositoryTest : public testing::Test {
  protected:
    RepositoryTest();

    void load(const std::string& mof) { load(mof, home); }
    void load(const std::string& mof, const Pegasus::CIMNamespaceName& nameSpace);
    /// What load() complains of, "test.mof:line:column: message"; empty if it does not.
    std::string errorOf(const std::string& mof);

    Pegasus::CIMClass classNamed(const char* name) const {
        return repository.view().getClass(home, name);
    }
    Pegasus::CIMInstance instanceAt(const char* path) const;
    /// The value of a property as text.
    std::string valueOf(const char* path, const char* property) const;

    const Pegasus::CIMNamespaceName home{"root/test"};
    Repository repository;
};

/// A MOF text, and what load() has to say about it ("line:column: message"); empty: nothing.
struct MofCase {
    const char* rule;
    const char* mof;
    const char* complaint;
};
std::ostream& operator<<(std::ostream& out, const MofCase& mofCase);
std::string ruleOf(const testing::TestParamInfo<MofCase>& info);

} // namespace embedded::repository
