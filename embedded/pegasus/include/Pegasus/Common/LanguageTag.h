// A language tag, as in the HTTP headers Accept-Language and Content-Language.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <memory>

namespace Pegasus {

class LanguageTagRep;

/// A language tag (RFC 3066) such as "en-US". It does not change, so copies share it safely. A
/// default-constructed tag is uninitialized: its accessors and comparisons throw
/// UninitializedObjectException.
class PEGASUS_COMMON_LINKAGE LanguageTag {
  public:
    LanguageTag() = default;
    /// Throws Exception if the text is no language tag. "*" is one.
    LanguageTag(const String& languageTagString);
    LanguageTag(const LanguageTag& languageTag) = default;
    ~LanguageTag() = default;
    LanguageTag& operator=(const LanguageTag& languageTag) = default;

    /// The part before the first hyphen, as it was given.
    String getLanguage() const;
    /// The second part, if it is a country (two letters), else empty.
    String getCountry() const;
    /// What follows language and country, else empty.
    String getVariant() const;
    /// The tag as it was given.
    String toString() const;

    /// Ignores case.
    Boolean operator==(const LanguageTag& languageTag) const;
    Boolean operator!=(const LanguageTag& languageTag) const;

  private:
    std::shared_ptr<const LanguageTagRep> _rep;
};

} // namespace Pegasus
