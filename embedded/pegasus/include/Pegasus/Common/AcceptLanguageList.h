// The languages that a client accepts.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/LanguageTag.h>
#include <Pegasus/Common/Linkage.h>

#include <utility>
#include <vector>

namespace Pegasus {

/// Language tags with the quality values that a client gave them, the most wanted first; tags of
/// equal quality stay in the order of their insertion. Copies are independent.
///
/// Thread-safety: one list may be read by several threads, or changed by one.
class PEGASUS_COMMON_LINKAGE AcceptLanguageList {
  public:
    Uint32 size() const { return static_cast<Uint32>(_entries.size()); }
    /// Throws IndexOutOfBoundsException unless `index` < size().
    LanguageTag getLanguageTag(Uint32 index) const { return at(index).first; }
    /// From 0 to 1. Throws IndexOutOfBoundsException unless `index` < size().
    Real32 getQualityValue(Uint32 index) const { return at(index).second; }
    /// Throws Exception if `qualityValue` is below 0 or above 1.
    void insert(const LanguageTag& languageTag, Real32 qualityValue);
    /// Throws IndexOutOfBoundsException unless `index` < size().
    void remove(Uint32 index);
    /// The index of the tag, or PEG_NOT_FOUND.
    Uint32 find(const LanguageTag& languageTag) const;
    void clear() { _entries.clear(); }
    /// Same tags and quality values in the same order.
    Boolean operator==(const AcceptLanguageList& x) const { return _entries == x._entries; }
    Boolean operator!=(const AcceptLanguageList& x) const { return _entries != x._entries; }

  private:
    using Entry = std::pair<LanguageTag, Real32>;

    const Entry& at(Uint32 index) const;

    std::vector<Entry> _entries;
};

} // namespace Pegasus
