// The languages that a client accepts.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/LanguageTag.h>
#include <Pegasus/Common/Linkage.h>

#include <memory>

namespace Pegasus {

struct AcceptLanguageListRep;

/// Language tags with the quality values that a client gave them, the most wanted first; tags of
/// equal quality stay in the order of their insertion. Copies are independent.
///
/// Thread-safety: one list may be read by several threads, or changed by one.
class PEGASUS_COMMON_LINKAGE AcceptLanguageList {
  public:
    AcceptLanguageList();
    AcceptLanguageList(const AcceptLanguageList& acceptLanguages);
    ~AcceptLanguageList();
    AcceptLanguageList& operator=(const AcceptLanguageList& acceptLanguages);

    Uint32 size() const;
    /// Throws IndexOutOfBoundsException unless `index` < size().
    LanguageTag getLanguageTag(Uint32 index) const;
    /// From 0 to 1. Throws IndexOutOfBoundsException unless `index` < size().
    Real32 getQualityValue(Uint32 index) const;
    /// Throws Exception if `qualityValue` is below 0 or above 1.
    void insert(const LanguageTag& languageTag, Real32 qualityValue);
    /// Throws IndexOutOfBoundsException unless `index` < size().
    void remove(Uint32 index);
    /// The index of the tag, or PEG_NOT_FOUND.
    Uint32 find(const LanguageTag& languageTag) const;
    void clear();
    /// Same tags and quality values in the same order.
    Boolean operator==(const AcceptLanguageList& acceptLanguages) const;
    Boolean operator!=(const AcceptLanguageList& acceptLanguages) const;

  private:
    std::unique_ptr<AcceptLanguageListRep> _rep;
};

} // namespace Pegasus
