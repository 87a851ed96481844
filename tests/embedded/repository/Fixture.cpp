#include "Fixture.h"

#include <Pegasus/Common/Exception.h>

namespace embedded::repository {

namespace {

const char* const qualifiers = R"(
Qualifier Abstract : boolean = false, Scope(class, association, indication), Flavor(Restricted);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride);
Qualifier Indication : boolean = false, Scope(class, indication), Flavor(DisableOverride);
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);
Qualifier Override : string = null, Scope(property, reference, method), Flavor(Restricted);
Qualifier Description : string = null, Scope(any), Flavor(Translatable);
Qualifier Version : string = null, Scope(class, association, indication),
    Flavor(EnableOverride, Restricted);
Qualifier Required : boolean = false, Scope(property, reference, method, parameter),
    Flavor(DisableOverride, ToSubclass);
Qualifier MaxLen : uint32 = null, Scope(property, method, parameter);
Qualifier Values : string[], Scope(property, method, parameter), Flavor(Translatable);
Qualifier ClassOnly : boolean = false, Scope(class);
Qualifier DisplayName : string = null, Scope(any), Flavor(Translatable);
)";

} // namespace

std::string text(const Pegasus::String& value) {
    return std::string(static_cast<const char*>(value.getCString()));
}

std::string text(const Pegasus::CIMName& name) { return text(name.getString()); }

std::vector<std::string> texts(const std::vector<Pegasus::CIMName>& names) {
    std::vector<std::string> result;
    for (const Pegasus::CIMName& name : names)
        result.push_back(text(name));
    return result;
}

std::string text(const Pegasus::CIMValue& value) {
    return value.isNull() ? "NULL" : text(value.toString());
}

std::vector<std::string> propertyTexts(const Pegasus::CIMInstance& instance) {
    std::vector<std::string> result;
    for (Pegasus::Uint32 i = 0; i < instance.getPropertyCount(); ++i) {
        const Pegasus::CIMConstProperty property = instance.getProperty(i);
        result.push_back(text(property.getName()) + " " + text(property.getClassOrigin()) +
                         (property.getPropagated() ? " default " : " given ") +
                         text(property.getValue()));
    }
    return result;
}

std::ostream& operator<<(std::ostream& out, const Status& status) {
    return out << status.code << " \"" << status.message << '"';
}

Status statusOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const Pegasus::CIMException& error) {
        return {static_cast<int>(error.getCode()), text(error.getMessage())};
    }
    return {};
}

RepositoryTest::RepositoryTest() { load(qualifiers); }

void RepositoryTest::load(const std::string& mof, const Pegasus::CIMNamespaceName& nameSpace) {
    repository.load(mof::readText(mof, "test.mof"), nameSpace);
}

std::string RepositoryTest::errorOf(const std::string& mof) {
    try {
        load(mof);
    } catch (const mof::MofError& error) {
        return error.what();
    }
    return "";
}

Pegasus::CIMInstance RepositoryTest::instanceAt(const char* path) const {
    return repository.view()
        .getInstance(home, Pegasus::CIMObjectPath(Pegasus::String(path)))
        .instance();
}

std::string RepositoryTest::valueOf(const char* path, const char* property) const {
    const Pegasus::CIMInstance instance = instanceAt(path);
    return text(instance.getProperty(instance.findProperty(Pegasus::CIMName(property)))
                    .getValue()
                    .toString());
}

std::ostream& operator<<(std::ostream& out, const MofCase& mofCase) { return out << mofCase.rule; }

std::string ruleOf(const testing::TestParamInfo<MofCase>& info) { return info.param.rule; }

} // namespace embedded::repository
