#include "repository/InstanceStore.h"

#include "text/KeyedHash.h"

namespace embedded::repository {

using Pegasus::CIMObjectPath;

namespace {

std::uint64_t hashOf(const PathKey& key) {
    return text::keyedHash(key.text());
}

} // namespace

const InstanceStore::Numbered* InstanceStore::locate(const PathKey& asked, bool loosely) const {
    const Numbered* exact = nullptr;
    const Numbered* loose = nullptr;
    forEachLink(_byPath, hashOf(asked), [&](std::uint64_t number) {
        const Numbered* each = _instances.find(number);
        const PathKey kept(each->instance->path, _home);
        if (kept.matches(asked)) {
            exact = each;
        } else if (loosely && !loose && kept.matchesLoosely(asked)) {
            loose = each;
        }
        return !exact;
    });
    return exact ? exact : loose;
}

const Ref<Stored>* InstanceStore::find(const CIMObjectPath& path) const {
    const Numbered* found = locate(PathKey(path, _home), true);
    return found ? &found->instance : nullptr;
}

bool InstanceStore::isHere(const CIMObjectPath& reference) const {
    return reference.getNameSpace().isNull() || reference.getNameSpace().equal(_home);
}

std::vector<Ref<Stored>> InstanceStore::referrers(const CIMObjectPath& source) const {
    std::vector<Ref<Stored>> found;
    forEachLink(_byTarget, withoutPlace(source).makeHashCode(), [&](std::uint64_t number) {
        const Ref<Stored>& each = _instances.find(number)->instance;
        for (const auto& [role, target] : each->references()) {
            if (isHere(target) && equalWithoutPlace(target, source)) {
                found.push_back(each);
                break;
            }
        }
        return true;
    });
    return found;
}

/// Calls `change` with the hash of each object in this namespace that `instance` refers to.
template <class Change>
void InstanceStore::changeTargets(const Stored& instance, Change change) {
    for (const auto& [role, target] : instance.references()) {
        if (isHere(target)) {
            change(withoutPlace(target).makeHashCode());
        }
    }
}

bool InstanceStore::add(const Ref<Stored>& instance) {
    const PathKey key(instance->path, _home);
    if (locate(key, false)) {
        return false;
    }
    _byPath.put({hashOf(key), _next});
    changeTargets(*instance, [&](std::uint64_t target) { _byTarget.put({target, _next}); });
    _instances.put({_next, instance});
    ++_next;
    return true;
}

void InstanceStore::replace(const Ref<Stored>& instance) {
    const Numbered* known = locate(PathKey(instance->path, _home), false);
    const std::uint64_t number = known->number;
    changeTargets(*known->instance, [&](std::uint64_t target) {
        _byTarget.erase({target, number});
    });
    changeTargets(*instance, [&](std::uint64_t target) { _byTarget.put({target, number}); });
    _instances.put({number, instance});
}

bool InstanceStore::remove(const CIMObjectPath& path) {
    const Numbered* found = locate(PathKey(path, _home), true);
    if (!found) {
        return false;
    }
    const Numbered gone = *found;
    changeTargets(*gone.instance, [&](std::uint64_t target) {
        _byTarget.erase({target, gone.number});
    });
    _byPath.erase({hashOf(PathKey(gone.instance->path, _home)), gone.number});
    _instances.erase(gone.number);
    return true;
}

} // namespace embedded::repository
