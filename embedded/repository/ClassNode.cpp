#include "repository/ClassNode.h"

#include "repository/Qualifiers.h"

namespace embedded::repository {

using namespace Pegasus;

namespace {

template <class Declared>
void replace(NamedList<ClassNode::Member<Declared>>& members,
             const ClassNode::Member<Declared>& member, bool belongs = true) {
    members.remove(member.getName());
    if (belongs)
        members.add(member);
}

bool sameDeclared(const CIMConstProperty& a, const CIMConstProperty& b) {
    // identical() leaves out the sizes of arrays.
    return a.identical(b) && a.getArraySize() == b.getArraySize();
}

bool sameDeclared(const CIMConstMethod& a, const CIMConstMethod& b) { return a.identical(b); }

template <class Member, class IsSame>
bool sameMembers(const NamedList<Member>& a, const NamedList<Member>& b, IsSame isSame) {
    bool same = a.size() == b.size();
    for (std::size_t i = 0; same && i < a.size(); ++i)
        same = isSame(a[i], b[i]) && sameDeclared(a[i].declared, b[i].declared);
    return same;
}

/// The flags of GetClass, and what they leave of the parts of a class.
struct Flags {
    const bool localOnly;
    const bool includeQualifiers;
    const bool includeClassOrigin;

    template <class Holder>
    void filterQualifiers(Holder& holder) const {
        removeQualifiers(
            holder,
            [&](const auto& qualifier) {
                return !includeQualifiers || (localOnly && qualifier.getPropagated());
            });
    }

    template <class Member>
    void filterMember(Member& member, bool propagated) const {
        filterQualifiers(member);
        member.setPropagated(propagated);
        if (!includeClassOrigin)
            member.setClassOrigin(CIMName());
    }
};

CIMProperty copyOf(const CIMConstProperty& declared, const Flags& flags) {
    return flags.includeQualifiers
               ? declared.clone()
               : CIMProperty(declared.getName(), declared.getValue(), declared.getArraySize(),
                             declared.getReferenceClassName(), declared.getClassOrigin());
}

} // namespace

ClassNode::ClassNode(const CIMName& className, const ClassNode* above, std::uint64_t place)
    : superclass(above), number(place), head(className, above ? above->name() : CIMName()) {
    if (above) {
        properties = above->properties;
        keys = above->keys;
        references = above->references;
        methods = above->methods;
    }
}

bool ClassNode::isA(const ClassNode& base) const {
    const ClassNode* each = this;
    while (each && each != &base)
        each = each->superclass;
    return each;
}

void ClassNode::declare(const CIMProperty& property) {
    const Property member{property, this};
    replace(properties, member);
    replace(keys, member, isSet(property, "Key"));
    replace(references, member, property.getType() == CIMTYPE_REFERENCE);
}

void ClassNode::declare(const CIMMethod& method) { replace(methods, Method{method, this}); }

bool sameClass(const ClassNode& a, const ClassNode& b) {
    return a.superclass == b.superclass && a.head.identical(b.head) &&
           sameMembers(
               a.properties, b.properties,
               [&](const auto& x, const auto& y) { return (x.home == &a) == (y.home == &b); }) &&
           sameMembers(
               a.methods, b.methods, [](const auto&, const auto&) { return true; });
}

CIMClass shownClass(const ClassNode& node, bool localOnly, bool includeQualifiers,
                    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const Flags flags{localOnly, includeQualifiers, includeClassOrigin};
    CIMClass shown = includeQualifiers ? node.head.clone()
                                       : CIMClass(node.name(), node.head.getSuperClassName());
    flags.filterQualifiers(shown);
    const auto isShown = [&](const auto& member) { return !localOnly || member.home == &node; };
    node.properties.forEach([&](const ClassNode::Property& each) {
        if (isShown(each) && (propertyList.isNull() || propertyList.contains(each.getName()))) {
            CIMProperty property = copyOf(each.declared, flags);
            flags.filterMember(property, each.home != &node);
            shown.addProperty(property);
        }
    });
    node.methods.forEach([&](const ClassNode::Method& each) {
        if (isShown(each)) {
            CIMMethod method = each.declared.clone();
            flags.filterMember(method, each.home != &node);
            for (Uint32 i = 0; i < method.getParameterCount(); ++i) {
                CIMParameter parameter = method.getParameter(i);
                flags.filterQualifiers(parameter);
            }
            shown.addMethod(method);
        }
    });
    return shown;
}

} // namespace embedded::repository
