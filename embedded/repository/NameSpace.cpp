#include "repository/NameSpace.h"

#include <algorithm>

namespace embedded::repository {

using namespace Pegasus;

namespace {

/// What stands for `node` in the index of subclasses.
std::uint64_t parentKey(const ClassNode* node) { return node ? node->number + 1 : 0; }

bool takes(const ClassNode& association, const ClassNode& referenceClass) {
    bool found = false;
    association.references.forEach([&](const ClassNode::Property& each) {
        found = found || each.declared.getReferenceClassName().equal(referenceClass.name());
    });
    return found;
}

} // namespace

const ClassNode* NameSpace::find(const CIMName& className) const {
    const Ref<ClassNode>* found = _classes.find(className);
    return found ? found->get() : nullptr;
}

void NameSpace::add(Ref<ClassNode> node) {
    _subclasses.put({parentKey(node->superclass), node->number});
    node->references.forEach([&](const ClassNode::Property& each) {
        _associations.put(
            {foldedHash(each.declared.getReferenceClassName().getString()), node->number});
    });
    _classes.add(std::move(node));
}

const InstanceStore* NameSpace::instancesOf(const ClassNode& node) const {
    const Instances* found = _instances.find(node.number);
    return found ? found->store.get() : nullptr;
}

InstanceStore& NameSpace::changeInstancesOf(const ClassNode& node) {
    if (!_instances.find(node.number))
        _instances.put({node.number, Ref<InstanceStore>(new InstanceStore(_name, node))});
    return _instances.change(node.number)->store.change();
}

bool NameSpace::isA(const CIMName& derived, const CIMName& base) const {
    const ClassNode* below = find(derived);
    const ClassNode* above = find(base);
    return below && above && below->isA(*above);
}

std::vector<CIMName> NameSpace::namesOf(std::vector<std::uint64_t> numbers) const {
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    std::vector<CIMName> names;
    names.reserve(numbers.size());
    for (const std::uint64_t number : numbers)
        names.push_back(_classes[number]->name());
    return names;
}

std::vector<CIMName> NameSpace::subClassNames(const ClassNode* node, bool deep) const {
    std::vector<std::uint64_t> numbers;
    const auto addBelow = [&](std::uint64_t parent) {
        forEachLink(_subclasses, parent, [&](std::uint64_t number) {
            numbers.push_back(number);
            return true;
        });
    };
    addBelow(parentKey(node));
    for (std::size_t i = 0; deep && i < numbers.size(); ++i)
        addBelow(numbers[i] + 1);
    return namesOf(std::move(numbers));
}

std::vector<CIMName> NameSpace::associationClassNames(const ClassNode& source,
                                                      const ClassNode* filter) const {
    // That it is an association goes without asking: no other class has references.
    std::vector<std::uint64_t> numbers;
    for (const ClassNode* each = &source; each; each = each->superclass)
        forEachLink(_associations, foldedHash(each->name().getString()), [&](std::uint64_t number) {
            const ClassNode& association = *_classes[number];
            if ((!filter || association.isA(*filter)) && takes(association, *each))
                numbers.push_back(number);
            return true;
        });
    return namesOf(std::move(numbers));
}

const NameSpace* NameSpaceList::find(const CIMNamespaceName& name) const {
    const Ref<NameSpace>* found = _all.find(name);
    return found ? found->get() : nullptr;
}

NameSpace& NameSpaceList::change(const CIMNamespaceName& name) {
    if (Ref<NameSpace>* known = _all.change(name))
        return known->change();
    Ref<NameSpace> made(new NameSpace(name));
    NameSpace& home = made.change();
    _all.add(std::move(made));
    return home;
}

std::vector<CIMNamespaceName> NameSpaceList::names() const {
    std::vector<CIMNamespaceName> names;
    _all.forEach([&](const Ref<NameSpace>& each) { names.push_back(each->name()); });
    return names;
}

} // namespace embedded::repository
