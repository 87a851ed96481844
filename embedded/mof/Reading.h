// One reading: a file, the files it includes, and what has been declared so far.
#pragma once

#include "mof/Source.h"

namespace embedded::mof {

class Reading {
  public:
    explicit Reading(std::vector<std::filesystem::path> includeDirectories);

    // See mof/Mof.h for what these throw.
    void readFile(const std::filesystem::path& file);
    void readText(std::string_view text, const std::string& name);
    Specification take() { return std::move(_declarations); }

    // What the parser has found.

    void declare(decltype(Declaration::what) what);
    /// `#pragma name ("value")`, its value at `where`. Throws MofError.
    void pragma(const std::string& name, const std::string& value, const Location& where);

  private:
    struct OpenFile {
        std::filesystem::path path; ///< as it was found; empty for a text
        std::filesystem::path canonical;
    };

    void read(std::string_view text, const Source& source, OpenFile file);
    void include(const std::string& value, const Location& where);
    std::filesystem::path findInclude(const std::string& value, const Location& where) const;
    void enterNamespace(const std::string& value, const Location& where);

    std::vector<std::filesystem::path> _includeDirectories;
    std::vector<OpenFile> _open; ///< each included by the one before it
    std::size_t _filesRead = 0;
    std::optional<std::string> _nameSpace;
    Specification _declarations;
};

/// Runs the generated parser: parses `text`, valid UTF-8 without NUL bytes, and hands every
/// declaration and pragma to `reading` as soon as it is whole. Throws MofError.
void parse(std::string_view text, const Source& source, Reading& reading);

} // namespace embedded::mof
