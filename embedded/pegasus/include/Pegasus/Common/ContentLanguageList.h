// The languages of a content.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/LanguageTag.h>
#include <Pegasus/Common/Linkage.h>

#include <memory>

namespace Pegasus {

struct ContentLanguageListRep;

/// The language tags of a content, in the order in which they were appended. Copies are
/// independent.
///
/// Thread-safety: one list may be read by several threads, or changed by one.
class PEGASUS_COMMON_LINKAGE ContentLanguageList {
  public:
    ContentLanguageList();
    ContentLanguageList(const ContentLanguageList& contentLanguages);
    ~ContentLanguageList();
    ContentLanguageList& operator=(const ContentLanguageList& contentLanguages);

    Uint32 size() const;
    /// Throws IndexOutOfBoundsException unless `index` < size().
    LanguageTag getLanguageTag(Uint32 index) const;
    /// Throws Exception for the tag "*", which is no language of a content.
    void append(const LanguageTag& languageTag);
    /// Throws IndexOutOfBoundsException unless `index` < size().
    void remove(Uint32 index);
    /// The index of the tag, or PEG_NOT_FOUND.
    Uint32 find(const LanguageTag& languageTag) const;
    void clear();
    /// Same tags in the same order.
    Boolean operator==(const ContentLanguageList& contentLanguages) const;
    Boolean operator!=(const ContentLanguageList& contentLanguages) const;

  private:
    std::unique_ptr<ContentLanguageListRep> _rep;
};

} // namespace Pegasus
