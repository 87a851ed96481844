#include "repository/View.h"

#include "repository/NameSpace.h"
#include "repository/PathMatch.h"

#include <Pegasus/Common/Exception.h>

namespace embedded::repository {

using namespace Pegasus;

namespace {

const ClassNode& classIn(const NameSpace& nameSpace, const CIMName& className,
                         CIMStatusCode otherwise) {
    const ClassNode* found = nameSpace.find(className);
    if (!found)
        throw CIMException(otherwise, className.getString());
    return *found;
}

/// Null if there are none, and never were.
const InstanceStore* instancesIn(const NameSpace& nameSpace, const CIMName& className) {
    return nameSpace.instancesOf(classIn(nameSpace, className, CIM_ERR_INVALID_CLASS));
}

std::vector<CIMName> namesOf(const NamedList<ClassNode::Property>& properties) {
    std::vector<CIMName> names;
    names.reserve(properties.size());
    properties.forEach([&](const ClassNode::Property& each) { names.push_back(each.getName()); });
    return names;
}

} // namespace

const NameSpace& View::in(const CIMNamespaceName& nameSpace) const {
    const NameSpace* found = _all->find(nameSpace);
    if (!found)
        throw CIMException(CIM_ERR_INVALID_NAMESPACE, nameSpace.getString());
    return *found;
}

bool View::hasNameSpace(const CIMNamespaceName& nameSpace) const {
    return _all->find(nameSpace) != nullptr;
}

std::vector<CIMNamespaceName> View::nameSpaces() const { return _all->names(); }

bool View::hasClass(const CIMNamespaceName& nameSpace, const CIMName& className) const {
    return in(nameSpace).find(className) != nullptr;
}

CIMClass View::getClass(const CIMNamespaceName& nameSpace, const CIMName& className, bool localOnly,
                        bool includeQualifiers, bool includeClassOrigin,
                        const CIMPropertyList& propertyList) const {
    return shownClass(classIn(in(nameSpace), className, CIM_ERR_NOT_FOUND), localOnly,
                      includeQualifiers, includeClassOrigin, propertyList);
}

std::vector<CIMName> View::subClassNames(const CIMNamespaceName& nameSpace,
                                         const CIMName& className, bool deep) const {
    const NameSpace& home = in(nameSpace);
    return home.subClassNames(
        className.isNull() ? nullptr : &classIn(home, className, CIM_ERR_INVALID_CLASS), deep);
}

std::vector<CIMName> View::superClassNames(const CIMNamespaceName& nameSpace,
                                           const CIMName& className) const {
    std::vector<CIMName> names;
    const ClassNode* node = &classIn(in(nameSpace), className, CIM_ERR_INVALID_CLASS);
    while ((node = node->superclass))
        names.push_back(node->name());
    return names;
}

bool View::isA(const CIMNamespaceName& nameSpace, const CIMName& derived,
               const CIMName& base) const {
    const NameSpace* home = _all->find(nameSpace);
    return home && home->isA(derived, base);
}

std::vector<CIMName> View::propertyNames(const CIMNamespaceName& nameSpace,
                                         const CIMName& className) const {
    return namesOf(classIn(in(nameSpace), className, CIM_ERR_NOT_FOUND).properties);
}

std::vector<CIMName> View::keyNames(const CIMNamespaceName& nameSpace,
                                    const CIMName& className) const {
    return namesOf(classIn(in(nameSpace), className, CIM_ERR_NOT_FOUND).keys);
}

std::vector<std::pair<CIMName, CIMName>> View::references(const CIMNamespaceName& nameSpace,
                                                          const CIMName& className) const {
    std::vector<std::pair<CIMName, CIMName>> found;
    classIn(in(nameSpace), className, CIM_ERR_NOT_FOUND)
        .references.forEach([&](const ClassNode::Property& each) {
            found.emplace_back(each.getName(), each.declared.getReferenceClassName());
        });
    return found;
}

std::vector<CIMName> View::associationClassNames(const CIMNamespaceName& nameSpace,
                                                 const CIMName& sourceClass,
                                                 const CIMName& filter) const {
    const auto otherwise = CIM_ERR_INVALID_PARAMETER;
    const NameSpace& home = in(nameSpace);
    const ClassNode& source = classIn(home, sourceClass, otherwise);
    return home.associationClassNames(source, filter.isNull() ? nullptr
                                                              : &classIn(home, filter, otherwise));
}

StoredInstance View::getInstance(const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& instanceName) const {
    const InstanceStore* store = instancesIn(in(nameSpace), instanceName.getClassName());
    const Ref<Stored>* found = store ? store->find(instanceName) : nullptr;
    if (!found)
        throw CIMException(CIM_ERR_NOT_FOUND, withoutPlace(instanceName).toString());
    return StoredInstance(*found);
}

InstanceList View::instances(const CIMNamespaceName& nameSpace, const CIMName& className) const {
    const InstanceStore* store = instancesIn(in(nameSpace), className);
    return store ? InstanceList(store->all()) : InstanceList();
}

std::vector<StoredInstance> View::referrers(const CIMNamespaceName& nameSpace,
                                            const CIMName& associationClass,
                                            const CIMObjectPath& source,
                                            const GroupFilter& isWanted) const {
    std::vector<StoredInstance> found;
    if (const InstanceStore* store = instancesIn(in(nameSpace), associationClass))
        for (const Ref<Stored>& each : store->referrers(source, isWanted))
            found.emplace_back(each);
    return found;
}

CIMQualifierDecl View::getQualifier(const CIMNamespaceName& nameSpace,
                                    const CIMName& qualifierName) const {
    const CIMQualifierDecl* found = in(nameSpace).qualifiers().find(qualifierName);
    if (!found)
        throw CIMException(CIM_ERR_NOT_FOUND, qualifierName.getString());
    return *found;
}

std::vector<CIMQualifierDecl> View::enumerateQualifiers(const CIMNamespaceName& nameSpace) const {
    std::vector<CIMQualifierDecl> declarations;
    in(nameSpace).qualifiers().all().forEach(
        [&](const CIMQualifierDecl& each) { declarations.push_back(each); });
    return declarations;
}

} // namespace embedded::repository
