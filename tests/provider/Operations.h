// The seven read operations by their names, so that a test can ask the same of each.
#pragma once

#include "support/ModuleTest.h"
#include "support/RecordingHandlers.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace testsupport {

struct Filters {
    std::string associationClass; ///< associators only
    std::string resultClass;
    std::string role;
    std::string resultRole; ///< associators only
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
    Pegasus::CIMPropertyList propertyList{};
};

/// What an operation answered and traced. It delivers paths or objects; for an object, its path.
struct Answer {
    Lines paths;
    std::vector<Pegasus::CIMObject> objects;
    unsigned processingCalls = 0;
    unsigned completeCalls = 0;
    Lines trace;
};

inline const Lines& instanceOperations() {
    static const Lines names = {"enumerateInstanceNames", "enumerateInstances", "getInstance"};
    return names;
}

inline const Lines& associationOperations() {
    static const Lines names = {"associatorNames", "associators", "referenceNames", "references"};
    return names;
}

inline const Lines& readOperations() {
    static const Lines names = joined({instanceOperations(), associationOperations()});
    return names;
}

inline Pegasus::CIMName nameOrNull(const std::string& name) {
    return name.empty() ? Pegasus::CIMName() : Pegasus::CIMName(name.c_str());
}

/// Calls `operation` of `provider` as a server does, through its interfaces.
inline void call(ServerProfileProvider& provider, const std::string& operation,
                 const Pegasus::CIMObjectPath& path, const Filters& filters, PathRecorder& paths,
                 InstanceRecorder& instances, ObjectRecorder& objects) {
    const Pegasus::OperationContext context;
    Pegasus::CIMInstanceProvider& instanceProvider = provider;
    Pegasus::CIMAssociationProvider& associationProvider = provider;
    const Pegasus::CIMName associationClass = nameOrNull(filters.associationClass);
    const Pegasus::CIMName resultClass = nameOrNull(filters.resultClass);
    const Pegasus::String role(filters.role.c_str());
    const Pegasus::String resultRole(filters.resultRole.c_str());
    if (operation == "enumerateInstanceNames") {
        instanceProvider.enumerateInstanceNames(context, path, paths);
    } else if (operation == "enumerateInstances") {
        instanceProvider.enumerateInstances(context, path, filters.includeQualifiers,
                                            filters.includeClassOrigin, filters.propertyList,
                                            instances);
    } else if (operation == "getInstance") {
        instanceProvider.getInstance(context, path, filters.includeQualifiers,
                                     filters.includeClassOrigin, filters.propertyList, instances);
    } else if (operation == "associatorNames") {
        associationProvider.associatorNames(context, path, associationClass, resultClass, role,
                                            resultRole, paths);
    } else if (operation == "associators") {
        associationProvider.associators(context, path, associationClass, resultClass, role,
                                        resultRole, filters.includeQualifiers,
                                        filters.includeClassOrigin, filters.propertyList, objects);
    } else if (operation == "referenceNames") {
        associationProvider.referenceNames(context, path, resultClass, role, paths);
    } else if (operation == "references") {
        associationProvider.references(context, path, resultClass, role, filters.includeQualifiers,
                                       filters.includeClassOrigin, filters.propertyList, objects);
    } else {
        throw std::invalid_argument("no such operation: " + operation);
    }
}

inline Answer ask(ServerProfileProvider& provider, const std::string& operation,
                  const Pegasus::CIMObjectPath& path, const Filters& filters = Filters()) {
    PathRecorder paths;
    InstanceRecorder instances;
    ObjectRecorder objects;
    Answer answer;
    answer.trace =
        tracedBy([&] { call(provider, operation, path, filters, paths, instances, objects); });
    for (const Pegasus::CIMObjectPath& delivered : paths.delivered)
        answer.paths.push_back(text(delivered));
    answer.objects = objects.delivered;
    for (const Pegasus::CIMInstance& delivered : instances.delivered)
        answer.objects.push_back(Pegasus::CIMObject(delivered));
    for (const Pegasus::CIMObject& delivered : answer.objects)
        answer.paths.push_back(text(delivered.getPath()));
    answer.processingCalls =
        paths.processingCalls + instances.processingCalls + objects.processingCalls;
    answer.completeCalls = paths.completeCalls + instances.completeCalls + objects.completeCalls;
    return answer;
}

/// The messages with which `operation` begins for `className`, before the init gate.
inline Lines startLines(const std::string& operation, const std::string& className) {
    const std::string name = "Quil " + operation + "()";
    if (operation == "enumerateInstanceNames")
        return {name + ": className is " + className};
    if (operation == "getInstance")
        return {name + " Start: className " + className};
    return {name + ": Start " + className};
}

/// The messages of an association operation between the init gate and its keys. The frame of
/// instance operations has none.
inline Lines classLines(const std::string& operation, const std::string& className) {
    Lines lines;
    if (operation == "associators")
        lines.push_back("Quil - associators() initFlag is 1");
    if (operation[0] == 'a' || operation[0] == 'r')
        lines.push_back("Quil " + operation + "(): className " + className);
    return lines;
}

/// The line of _checkKey that says what it checks.
inline std::string keyLine(const std::string& className, const std::string& keyName) {
    return "!ServerProfileProvider: checking key name " + className + " -- " + keyName + " ";
}

/// The line of _checkKey that says that it refuses.
inline std::string keyFailLine(const std::string& className, const std::string& keyName) {
    return "!\tServerprofileProvider: FAIL check key name " + className + " -- " + keyName + " ";
}

/// All messages of `operation` up to and with the acceptance of the key `keyName` of value `value`.
inline Lines frameLines(const std::string& operation, const std::string& className,
                        const std::string& keyName = "", const std::string& value = "",
                        unsigned keys = 1) {
    Lines lines = joined(
        {startLines(operation, className), gateLines(operation), classLines(operation, className)});
    if (operation == "getInstance") {
        lines.push_back(keyLine(className, keyName));
        lines.push_back(className + " keyvalue " + value);
    } else if (operation.find("enumerate") != 0) {
        lines.push_back("Quil " + operation + "(): keys.size is: " + std::to_string(keys));
        lines.push_back(keyLine(className, keyName));
    }
    return lines;
}

} // namespace testsupport
