// A language tag, as in the HTTP headers Accept-Language and Content-Language.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <memory>

namespace Pegasus {

struct LanguageTagRep;

/// A language tag (RFC 3066) such as "en-US". It does not change, so copies share it safely. A
/// default-constructed tag is uninitialized: its accessors and comparisons throw
/// UninitializedObjectException.
class PEGASUS_COMMON_LINKAGE LanguageTag {
  public:
    LanguageTag() = default;
    /// Throws Exception if the text is no language tag: subtags of 1 to 8 letters and digits, with
    /// hyphens between them, of which the first is a language of two or three letters or one of
    /// "i" and "x", and the second has two characters at least. "*", for any language, is a tag.
    LanguageTag(const String& languageTagString);

    /// The first subtag, as it was given; empty for "*" and for tags beginning with "i" or "x".
    String getLanguage() const;
    /// The second subtag, if it follows a language and has two characters, else empty.
    String getCountry() const;
    /// What follows language and country; empty if there is no language.
    String getVariant() const;
    /// The tag as it was given.
    String toString() const;

    /// Ignores case.
    Boolean operator==(const LanguageTag& languageTag) const;
    Boolean operator!=(const LanguageTag& languageTag) const { return !(*this == languageTag); }

  private:
    std::shared_ptr<const LanguageTagRep> _rep;
};

} // namespace Pegasus
