// The languages of a content.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/LanguageTag.h>
#include <Pegasus/Common/Linkage.h>

#include <vector>

namespace Pegasus {

/// The language tags of a content, in the order in which they were appended. Copies are
/// independent.
///
/// Thread-safety: one list may be read by several threads, or changed by one.
class PEGASUS_COMMON_LINKAGE ContentLanguageList {
  public:
    Uint32 size() const { return static_cast<Uint32>(_tags.size()); }
    /// Throws IndexOutOfBoundsException unless `index` < size().
    LanguageTag getLanguageTag(Uint32 index) const;
    /// Throws Exception for the tag "*", which is no language of a content.
    void append(const LanguageTag& languageTag);
    /// Throws IndexOutOfBoundsException unless `index` < size().
    void remove(Uint32 index);
    /// The index of the tag, or PEG_NOT_FOUND.
    Uint32 find(const LanguageTag& languageTag) const;
    void clear() { _tags.clear(); }
    /// Same tags in the same order.
    Boolean operator==(const ContentLanguageList& x) const { return _tags == x._tags; }
    Boolean operator!=(const ContentLanguageList& x) const { return _tags != x._tags; }

  private:
    std::vector<LanguageTag> _tags;
};

} // namespace Pegasus
