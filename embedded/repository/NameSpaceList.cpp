#include "repository/NameSpaceList.h"

namespace embedded::repository {

const NameSpace* NameSpaceList::find(const Pegasus::CIMNamespaceName& name) const {
    for (const auto& each : _all) {
        if (each->name().equal(name)) {
            return each.get();
        }
    }
    return nullptr;
}

NameSpace& NameSpaceList::change(const Pegasus::CIMNamespaceName& name) {
    for (auto& each : _all) {
        if (each->name().equal(name)) {
            if (each.use_count() > 1) {
                each = std::make_shared<NameSpace>(*each);
            }
            return *each;
        }
    }
    _all.push_back(std::make_shared<NameSpace>(name));
    return *_all.back();
}

std::vector<Pegasus::CIMNamespaceName> NameSpaceList::names() const {
    std::vector<Pegasus::CIMNamespaceName> names;
    for (const auto& each : _all) {
        names.push_back(each->name());
    }
    return names;
}

} // namespace embedded::repository
