#include "FakeOperations.h"

#include "embedding/Text.h"

namespace embedded::cimxml::test {

using namespace Pegasus;
using namespace Pegasus::embedding;
using routing::Operation;
using routing::OperationKind;

namespace {

std::string show(bool flag) { return flag ? "1" : "0"; }

std::string show(const String& text) { return text.size() == 0 ? "-" : utf8(text); }

std::string show(const CIMName& name) { return name.isNull() ? "-" : utf8(name); }

std::string show(const CIMNamespaceName& name) { return utf8(name); }

std::string show(const CIMObjectPath& path) { return utf8(path.toString()); }

std::string show(const CIMPropertyList& list) {
    if (list.isNull())
        return "-";
    std::string out = "[";
    for (Uint32 i = 0; i < list.size(); ++i)
        out += (i == 0 ? "" : ",") + show(list[i]);
    return out + "]";
}

std::string show(const CIMInstance& instance) { return show(instance.getPath()); }

/// The arguments of `o`, in the order in which DSP0200 has them.
std::vector<std::string> argumentsOf(const Operation& o) {
    const std::string flags = show(o.includeQualifiers) + " " + show(o.includeClassOrigin);
    const std::string shown = flags + " " + show(o.propertyList);
    switch (o.kind) {
    case OperationKind::GetClass:
        return {show(o.className), show(o.localOnly), shown};
    case OperationKind::EnumerateClasses:
        return {show(o.className), show(o.deepInheritance), show(o.localOnly), flags};
    case OperationKind::EnumerateClassNames:
        return {show(o.className), show(o.deepInheritance)};
    case OperationKind::GetInstance:
        return {show(o.objectName), shown};
    case OperationKind::EnumerateInstances:
        return {show(o.className), show(o.deepInheritance), shown};
    case OperationKind::EnumerateInstanceNames:
        return {show(o.className)};
    case OperationKind::CreateInstance:
        return {show(o.instance)};
    case OperationKind::ModifyInstance:
        return {show(o.instance), show(o.includeQualifiers), show(o.propertyList)};
    case OperationKind::DeleteInstance:
        return {show(o.objectName)};
    case OperationKind::GetProperty:
        return {show(o.objectName), show(o.memberName)};
    case OperationKind::Associators:
        return {show(o.objectName), show(o.assocClass), show(o.resultClass),
                show(o.role),       show(o.resultRole), shown};
    case OperationKind::AssociatorNames:
        return {show(o.objectName), show(o.assocClass), show(o.resultClass), show(o.role),
                show(o.resultRole)};
    case OperationKind::References:
        return {show(o.objectName), show(o.resultClass), show(o.role), shown};
    case OperationKind::ReferenceNames:
        return {show(o.objectName), show(o.resultClass), show(o.role)};
    case OperationKind::GetQualifier:
        return {show(o.memberName)};
    case OperationKind::EnumerateQualifiers:
        return {};
    }
    return {};
}

} // namespace

routing::Plan FakeOperations::plan(const Operation& operation) {
    std::string line = embedding::operationName(operation.kind);
    line += " " + show(operation.nameSpace);
    for (const std::string& argument : argumentsOf(operation))
        line += " " + argument;
    calls.push_back(line);
    lastCaller = operation.caller;
    lastInstance = operation.instance;
    if (failure)
        throw *failure;
    return {modules, [this, &operation] { return answerTo(operation); }};
}

std::vector<CIMName> FakeOperations::keyNames(const CIMNamespaceName& nameSpace,
                                              const CIMName& className) {
    calls.push_back("keyNames " + show(nameSpace) + " " + show(className));
    if (failure)
        throw *failure;
    Array<CIMName> names;
    cimClass.getKeyNames(names);
    return {names.getData(), names.getData() + names.size()};
}

routing::Answer FakeOperations::answerTo(const Operation& operation) {
    switch (operation.kind) {
    case OperationKind::GetClass:
        return {routing::cursorOver(cimClass)};
    case OperationKind::EnumerateClasses:
        return {routing::cursorOverAll(classes)};
    case OperationKind::EnumerateClassNames:
        return {routing::cursorOverAll(Array<CIMName>())};
    case OperationKind::GetInstance:
        return {routing::cursorOver(instance)};
    case OperationKind::EnumerateInstances:
        return {routing::cursorOverAll(instances), sources};
    case OperationKind::CreateInstance:
        return {routing::cursorOver(createdPath)};
    case OperationKind::ModifyInstance:
    case OperationKind::DeleteInstance:
        return {};
    case OperationKind::GetProperty:
        return {routing::cursorOver(value)};
    case OperationKind::Associators:
    case OperationKind::References:
        return {routing::cursorOverAll(objects), sources};
    case OperationKind::EnumerateInstanceNames:
    case OperationKind::AssociatorNames:
    case OperationKind::ReferenceNames:
        return {routing::cursorOverAll(paths), sources};
    case OperationKind::GetQualifier:
        return {routing::cursorOver(qualifier)};
    case OperationKind::EnumerateQualifiers:
        return {routing::cursorOverAll(qualifiers)};
    }
    return {};
}

} // namespace embedded::cimxml::test
