#include "repository/InstanceStore.h"

#include "text/KeyedHash.h"

#include <algorithm>
#include <limits>

namespace embedded::repository {

using namespace Pegasus;

namespace {

/// More than any instance's number.
constexpr std::uint64_t pastAll = std::numeric_limits<std::uint64_t>::max();

std::uint64_t hashOf(const PathKey& key) { return text::keyedHash(key.text()); }

} // namespace

const InstanceStore::Numbered* InstanceStore::locate(const PathKey& asked, bool loosely) const {
    const Numbered* exact = nullptr;
    const Numbered* loose = nullptr;
    forEachLink(_byPath, hashOf(asked), [&](std::uint64_t number) {
        const Numbered* each = _instances.find(number);
        const PathKey kept(each->instance->path, _home);
        if (kept.matches(asked))
            exact = each;
        else if (loosely && !loose && kept.matchesLoosely(asked))
            loose = each;
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

std::vector<InstanceStore::Referrer> InstanceStore::referrersOf(const Numbered& association) const {
    const References references = association.instance->references();
    text::KeyedHash ends;
    for (const auto& [role, target] : references) {
        ends.add(foldedHash(role.getString()));
        ends.add(isHere(target) ? 0 : foldedHash(target.getNameSpace().getString()));
        ends.add(foldedHash(target.getClassName().getString()));
    }
    std::vector<Referrer> found;
    for (Uint32 near = 0; near < references.size(); ++near) {
        const CIMObjectPath& target = references[near].second;
        if (isHere(target))
            found.push_back(
                {withoutPlace(target).makeHashCode(), near, ends.value(), association.number});
    }
    return found;
}

std::vector<Ref<Stored>> InstanceStore::referrers(const CIMObjectPath& source,
                                                  const GroupFilter& isWanted) const {
    std::vector<Referrer> wanted;
    Referrer from{withoutPlace(source).makeHashCode(), 0, 0, 0};
    for (const Referrer* first = _referrers.firstFrom(from.key());
         first && first->target == from.target; first = _referrers.firstFrom(from.key())) {
        const Stored& example = *_instances.find(first->number)->instance;
        if (!isWanted || isWanted(example.references(), first->near))
            _referrers.forEachFrom(first->key(), [&](const Referrer& each) {
                if (each.isLike(*first))
                    wanted.push_back(each);
                return each.isLike(*first);
            });
        from = *first;
        from.number = pastAll;
    }
    std::sort(wanted.begin(), wanted.end(),
              [](const Referrer& x, const Referrer& y) { return x.number < y.number; });

    std::vector<Ref<Stored>> found;
    for (const Referrer& each : wanted) {
        const Ref<Stored>& instance = _instances.find(each.number)->instance;
        const bool isThere = !found.empty() && found.back().get() == instance.get();
        if (!isThere && equalWithoutPlace(instance->references()[each.near].second, source))
            found.push_back(instance);
    }
    return found;
}

/// In place of the one with the same number, if there is one.
void InstanceStore::put(const Numbered& instance) {
    for (const Referrer& each : referrersOf(instance))
        _referrers.put(each);
    _instances.put(instance);
}

void InstanceStore::forgetReferrers(const Numbered& association) {
    for (const Referrer& each : referrersOf(association))
        _referrers.erase(each.key());
}

bool InstanceStore::add(const Ref<Stored>& instance) {
    const PathKey key(instance->path, _home);
    if (locate(key, false))
        return false;
    _byPath.put({hashOf(key), _next});
    put({_next, instance});
    ++_next;
    return true;
}

void InstanceStore::replace(const Ref<Stored>& instance) {
    const Numbered known = *locate(PathKey(instance->path, _home), false);
    forgetReferrers(known);
    put({known.number, instance});
}

bool InstanceStore::remove(const CIMObjectPath& path) {
    const Numbered* found = locate(PathKey(path, _home), true);
    if (!found)
        return false;
    const Numbered gone = *found;
    forgetReferrers(gone);
    _instances.erase(gone.number);
    _byPath.erase({hashOf(PathKey(gone.instance->path, _home)), gone.number});
    return true;
}

} // namespace embedded::repository
