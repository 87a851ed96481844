#include "repository/References.h"

#include "repository/Types.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>

namespace embedded::repository {

using namespace Pegasus;

namespace {

/// The namespace that `path` points into; null if it is not served here.
const NameSpace* targetNameSpace(const CIMObjectPath& path, const NameSpaceList& nameSpaces,
                                 const CIMNamespaceName& home) {
    return nameSpaces.find(path.getNameSpace().isNull() ? home : path.getNameSpace());
}

bool quoted(CIMKeyBinding::Type type) {
    return type == CIMKeyBinding::STRING || type == CIMKeyBinding::REFERENCE;
}

CIMKeyBinding asDeclared(CIMKeyBinding binding, const ClassNode& node,
                         const std::string& description, const mof::Location& where) {
    const std::string key = toText(node.name()) + "." + toText(binding.getName());
    const ClassNode::Property* found = node.keys.find(binding.getName());
    if (!found)
        refuse(where, description, ": ", key, " is not a key property");
    const CIMConstProperty& property = found->declared;
    const CIMKeyBinding::Type declared =
        CIMKeyBinding(property.getName(), CIMValue(property.getType(), false)).getType();
    // Of the types, only those written in quotes can be taken for each other.
    if (declared != binding.getType() &&
        !(declared == CIMKeyBinding::STRING && quoted(binding.getType())))
        refuse(where, description, ": key ", key, " takes a ", cimTypeToString(property.getType()),
               ", not ", binding.getValue());
    binding.setName(property.getName());
    binding.setType(declared);
    return binding;
}

} // namespace

CIMObjectPath parsePath(const mof::Literal& literal, const std::string& description) {
    try {
        return CIMObjectPath(String(literal.text.c_str()));
    } catch (const Exception& reason) {
        refuse(literal.where, description, ": \"", literal.text,
               "\" is not an object path: ", reason.getMessage());
    }
}

void checkTarget(const CIMObjectPath& path, const CIMName& referenceClass,
                 const std::string& description, const mof::Location& where,
                 const NameSpaceList& nameSpaces, const CIMNamespaceName& home) {
    const NameSpace* target = targetNameSpace(path, nameSpaces, home);
    if (!target)
        return;
    const std::string pointed = toText(path.getClassName());
    if (!target->find(path.getClassName()))
        refuse(where, description, " points to class ", pointed,
               ", which is not declared in namespace ", target->name());
    if (!target->isA(path.getClassName(), referenceClass))
        refuse(where, description, " takes a ", referenceClass, ", and ", pointed,
               " is not derived from it");
}

CIMObjectPath withDeclaredKeys(const CIMObjectPath& path, const std::string& description,
                               const mof::Location& where, const NameSpaceList& nameSpaces,
                               const CIMNamespaceName& home) {
    const NameSpace* target = targetNameSpace(path, nameSpaces, home);
    const ClassNode* node = target ? target->find(path.getClassName()) : nullptr;
    const Array<CIMKeyBinding>& given = path.getKeyBindings();
    if (!node || given.size() == 0)
        return path;
    Array<CIMKeyBinding> bindings;
    for (Uint32 i = 0; i < given.size(); ++i)
        bindings.append(asDeclared(given[i], *node, description, where));
    if (bindings.size() != node->keys.size())
        refuse(where, description, ": the path has ", bindings.size(), " of the ",
               node->keys.size(), " keys of ", node->name());
    return CIMObjectPath(path.getHost(), path.getNameSpace(), node->name(), bindings);
}

} // namespace embedded::repository
