// A sorted sequence whose copies share what they have in common: copying one takes no time, and a
// change copies the few nodes on its way, or nothing where no copy shares them (a B+ tree).
#pragma once

#include "repository/Ref.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

namespace embedded::repository {

/// `Entry` is copyable, and its key(), a small value with < and ==, is what it is found and sorted
/// by. All operations but forEachFrom() take the logarithm of the number of entries.
///
/// Thread-safety: copies may be used from different threads; one object may be read by several
/// threads, or changed by one.
template <class Entry>
class SharedTree {
  public:
    using Key = decltype(std::declval<const Entry&>().key());

    std::size_t size() const { return _size; }

    /// The entry that has `rank` others before it. REQUIRES: rank < size().
    const Entry& operator[](std::size_t rank) const {
        const Node* node = _root.get();
        while (!node->children.empty()) {
            auto child = node->children.begin();
            for (; rank >= child->size; ++child)
                rank -= child->size;
            node = child->node.get();
        }
        return node->entries[rank];
    }

    /// Null if there is none.
    const Entry* find(const Key& key) const {
        const Node* node = _root.get();
        while (node && !node->children.empty())
            node = node->children[slotFor(*node, key)].node.get();
        if (!node)
            return nullptr;
        const std::size_t at = placeFor(*node, key);
        return isAt(*node, at, key) ? &node->entries[at] : nullptr;
    }

    /// As find(), for changing, but for its key.
    Entry* change(const Key& key) {
        if (!find(key))
            return nullptr;
        Node* node = &_root.change();
        while (!node->children.empty())
            node = &node->children[slotFor(*node, key)].node.change();
        return &node->entries[placeFor(*node, key)];
    }

    /// In place of the entry with the same key, if there is one.
    void put(Entry entry) {
        const Key key = entry.key();
        if (Entry* known = change(key)) {
            *known = std::move(entry);
            return;
        }
        if (!_root)
            _root = Ref<Node>(new Node);
        std::vector<Child> siblings = insert(_root, key, std::move(entry));
        if (!siblings.empty()) {
            auto* root = new Node;
            root->children.push_back({lowOf(*_root), sizeOf(*_root), _root});
            root->children.push_back(std::move(siblings.front()));
            _root = Ref<Node>(root);
        }
        ++_size;
    }

    /// False if there is none.
    bool erase(const Key& key) {
        if (!find(key))
            return false;
        eraseFrom(_root, key);
        if (--_size == 0)
            _root = Ref<Node>();
        while (_root && _root->children.size() == 1)
            _root = Ref<Node>(_root->children.front().node);
        return true;
    }

    /// Shows the entries from `from` on to `visit`, in their order, until it returns false.
    template <class Visit>
    void forEachFrom(const Key& from, Visit visit) const {
        if (_root)
            visitFrom(*_root, &from, visit);
    }

    /// The first entry from `from` on. Null if there is none.
    const Entry* firstFrom(const Key& from) const {
        const Entry* first = nullptr;
        forEachFrom(from, [&](const Entry& entry) {
            first = &entry;
            return false;
        });
        return first;
    }

    template <class Visit>
    void forEach(Visit visit) const {
        const auto visitAll = [&](const Entry& entry) {
            visit(entry);
            return true;
        };
        if (_root)
            visitFrom(*_root, nullptr, visitAll);
    }

  private:
    static constexpr std::size_t width = 32;

    struct Node;

    struct Child {
        Key low; ///< no key in the child is less, and all in the children before it are
        std::size_t size;
        Ref<Node> node;
    };

    /// Has entries if it is a leaf, else children.
    struct Node : Counted<Node> {
        std::vector<Entry> entries;
        std::vector<Child> children;
    };

    static std::size_t slotFor(const Node& node, const Key& key) {
        const auto above =
            std::upper_bound(node.children.begin(), node.children.end(), key,
                             [](const Key& x, const Child& child) { return x < child.low; });
        const auto slot = above - node.children.begin();
        return static_cast<std::size_t>(slot == 0 ? 0 : slot - 1);
    }

    static std::size_t placeFor(const Node& leaf, const Key& key) {
        const auto at =
            std::lower_bound(leaf.entries.begin(), leaf.entries.end(), key,
                             [](const Entry& entry, const Key& x) { return entry.key() < x; });
        return static_cast<std::size_t>(at - leaf.entries.begin());
    }

    static bool isAt(const Node& leaf, std::size_t at, const Key& key) {
        return at < leaf.entries.size() && leaf.entries[at].key() == key;
    }

    static Key lowOf(const Node& node) {
        return node.children.empty() ? node.entries.front().key() : node.children.front().low;
    }

    static std::size_t sizeOf(const Node& node) {
        std::size_t size = node.entries.size();
        for (const Child& child : node.children)
            size += child.size;
        return size;
    }

    template <class Item>
    static auto at(std::vector<Item>& items, std::size_t index) {
        return items.begin() + static_cast<std::ptrdiff_t>(index);
    }

    /// Inserts `item`, and returns what then is too many: empty, or what belongs behind. What comes
    /// in order leaves full nodes behind.
    template <class Item>
    static std::vector<Item> insertAt(std::vector<Item>& items, std::size_t index, Item item) {
        std::vector<Item> behind;
        if (items.size() < width) {
            items.insert(at(items, index), std::move(item));
        } else if (index == width) {
            behind.push_back(std::move(item));
        } else {
            const std::size_t half = width / 2;
            behind.assign(std::make_move_iterator(at(items, half)),
                          std::make_move_iterator(items.end()));
            items.erase(at(items, half), items.end());
            const bool isBehind = index > half;
            std::vector<Item>& there = isBehind ? behind : items;
            there.insert(at(there, isBehind ? index - half : index), std::move(item));
        }
        return behind;
    }

    /// The node that now stands behind `ref`, if the insertion made one: none or one.
    static std::vector<Child> insert(Ref<Node>& ref, const Key& key, Entry&& entry) {
        Node& node = ref.change();
        Node behind;
        if (node.children.empty()) {
            behind.entries = insertAt(node.entries, placeFor(node, key), std::move(entry));
        } else {
            const std::size_t slot = slotFor(node, key);
            Child& child = node.children[slot];
            child.low = std::min(child.low, key);
            ++child.size;
            std::vector<Child> below = insert(child.node, key, std::move(entry));
            if (!below.empty()) {
                child.size -= below.front().size;
                behind.children = insertAt(node.children, slot + 1, std::move(below.front()));
            }
        }
        std::vector<Child> siblings;
        if (!behind.entries.empty() || !behind.children.empty()) {
            siblings.push_back({lowOf(behind), sizeOf(behind), Ref<Node>()});
            siblings.front().node = Ref<Node>(new Node(std::move(behind)));
        }
        return siblings;
    }

    static void eraseFrom(Ref<Node>& ref, const Key& key) {
        Node& node = ref.change();
        if (node.children.empty()) {
            node.entries.erase(at(node.entries, placeFor(node, key)));
            return;
        }
        const std::size_t slot = slotFor(node, key);
        Child& child = node.children[slot];
        eraseFrom(child.node, key);
        if (--child.size == 0)
            node.children.erase(at(node.children, slot));
    }

    /// `from` is null where all that is below comes behind it.
    template <class Visit>
    static bool visitFrom(const Node& node, const Key* from, Visit& visit) {
        for (std::size_t i = from ? placeFor(node, *from) : 0; i < node.entries.size(); ++i)
            if (!visit(node.entries[i]))
                return false;
        const std::size_t first = from && !node.children.empty() ? slotFor(node, *from) : 0;
        for (std::size_t i = first; i < node.children.size(); ++i)
            if (!visitFrom(*node.children[i].node, i == first ? from : nullptr, visit))
                return false;
        return true;
    }

    Ref<Node> _root; ///< null if there are no entries
    std::size_t _size = 0;
};

} // namespace embedded::repository
