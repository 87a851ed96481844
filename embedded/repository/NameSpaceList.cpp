#include "repository/NameSpaceList.h"

namespace embedded::repository {

const NameSpace* NameSpaceList::find(const Pegasus::CIMNamespaceName& name) const {
    const Ref<NameSpace>* found = _all.find(name);
    return found ? found->get() : nullptr;
}

NameSpace& NameSpaceList::change(const Pegasus::CIMNamespaceName& name) {
    if (Ref<NameSpace>* known = _all.change(name))
        return known->change();
    Ref<NameSpace> made(new NameSpace(name));
    NameSpace& home = made.change();
    _all.add(std::move(made));
    return home;
}

std::vector<Pegasus::CIMNamespaceName> NameSpaceList::names() const {
    std::vector<Pegasus::CIMNamespaceName> names;
    _all.forEach([&](const Ref<NameSpace>& each) { names.push_back(each->name()); });
    return names;
}

} // namespace embedded::repository
