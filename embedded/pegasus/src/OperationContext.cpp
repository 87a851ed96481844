#include <Pegasus/Common/OperationContext.h>

#include <algorithm>
#include <vector>

namespace Pegasus {

namespace {

// A container decides itself how its life ends.
struct Destroy {
    void operator()(OperationContext::Container* container) const { container->destroy(); }
};

using ContainerPointer = std::unique_ptr<OperationContext::Container, Destroy>;

ContainerPointer copyOf(const OperationContext::Container& container) {
    return ContainerPointer(container.clone());
}

} // namespace

struct OperationContextRep {
    using Position = std::vector<ContainerPointer>::iterator;

    Position find(const String& name) {
        return std::find_if(
            containers.begin(), containers.end(),
            [&](const auto& container) { return container->getName() == name; });
    }

    bool has(const String& name) { return find(name) != containers.end(); }

    Position require(const String& name) {
        const auto position = find(name);
        if (position == containers.end())
            throw Exception("object not found");
        return position;
    }

    std::vector<ContainerPointer> containers;
};

OperationContext::Container::~Container() = default;

OperationContext::OperationContext() : _rep(std::make_unique<OperationContextRep>()) {
}

OperationContext::OperationContext(const OperationContext& context) : OperationContext() {
    *this = context;
}

OperationContext::~OperationContext() = default;

OperationContext& OperationContext::operator=(const OperationContext& context) {
    std::vector<ContainerPointer> copies;
    for (const ContainerPointer& container : context._rep->containers)
        copies.push_back(copyOf(*container));
    _rep->containers = std::move(copies);
    return *this;
}

void OperationContext::clear() {
    _rep->containers.clear();
}

const OperationContext::Container& OperationContext::get(const String& containerName) const {
    return **_rep->require(containerName);
}

Boolean OperationContext::contains(const String& containerName) const {
    return _rep->has(containerName);
}

void OperationContext::set(const Container& container) {
    *_rep->require(container.getName()) = copyOf(container);
}

void OperationContext::insert(const Container& container) {
    if (_rep->has(container.getName()))
        throw Exception("object already exists.");
    _rep->containers.push_back(copyOf(container));
}

void OperationContext::remove(const String& containerName) {
    _rep->containers.erase(_rep->require(containerName));
}

} // namespace Pegasus
