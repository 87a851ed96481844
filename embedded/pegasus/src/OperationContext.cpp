#include <Pegasus/Common/OperationContext.h>

#include <algorithm>

namespace Pegasus {

const String IdentityContainer::NAME = "IdentityContainer";
const String AcceptLanguageListContainer::NAME = "AcceptLanguageListContainer";
const String ContentLanguageListContainer::NAME = "ContentLanguageListContainer";
const String TimeoutContainer::NAME = "TimeoutContainer";

OperationContext& OperationContext::operator=(const OperationContext& context) {
    Containers copies;
    for (const auto& container : context._containers)
        copies.push_back(Containers::value_type(container->clone()));
    _containers = std::move(copies);
    return *this;
}

OperationContext::Containers::const_iterator OperationContext::find(const String& name) const {
    return std::find_if(
        _containers.begin(), _containers.end(),
        [&](const auto& container) { return container->getName() == name; });
}

OperationContext::Containers::const_iterator OperationContext::require(const String& name) const {
    const auto position = find(name);
    if (position == _containers.end())
        throw Exception("object not found");
    return position;
}

const OperationContext::Container& OperationContext::get(const String& containerName) const {
    return **require(containerName);
}

void OperationContext::set(const Container& container) {
    const auto index = static_cast<std::size_t>(require(container.getName()) - _containers.begin());
    _containers[index].reset(container.clone());
}

void OperationContext::insert(const Container& container) {
    if (contains(container.getName()))
        throw Exception("object already exists.");
    _containers.push_back(Containers::value_type(container.clone()));
}

void OperationContext::remove(const String& containerName) {
    _containers.erase(require(containerName));
}

} // namespace Pegasus
