#include "mof/Reading.h"

#include "text/Ascii.h"
#include "text/Utf8.h"

#include <algorithm>
#include <fstream>

namespace embedded::mof {

namespace fs = std::filesystem;

namespace {

// Far above what any schema needs; they end what would go on for ever or exhaust the memory:
// files that include each other under changing names, or a few files that include each other
// twice and so multiply.
constexpr std::size_t deepestInclude = 32;
constexpr std::size_t mostFiles = 10000;
constexpr std::size_t largestText = std::size_t{256} * 1024 * 1024;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string hexadecimal(char byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    return std::string("0x") + digits[value >> 4U] + digits[value & 0xFU];
}

void checkBytes(std::string_view text, const Source& source) {
    const std::size_t at = std::min(text::findInvalidUtf8(text), text.find('\0'));
    if (at == std::string_view::npos)
        return;
    Position where;
    where.advance(text.substr(0, at));
    source.fail(where, "unexpected byte " + hexadecimal(text[at]) + ", expected UTF-8 text");
}

// Only regular files: reading anything else could wait for ever.
std::string contents(const fs::path& file, const Source& source) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (!fs::exists(status))
        source.fail({}, "cannot be read: no such file");
    if (!fs::is_regular_file(status))
        source.fail({}, "cannot be read: not a regular file");
    const std::uintmax_t size = fs::file_size(file, error);
    if (error || size > largestText) // Not tested: the error; the file was there just now
        source.fail({}, "cannot be read: larger than 256 MiB");
    std::ifstream in(file, std::ios::binary);
    std::string text(static_cast<std::size_t>(size), '\0');
    // Not tested: whoever runs the tests as root may read everything.
    if (!in.read(text.data(), static_cast<std::streamsize>(size)))
        source.fail({}, "cannot be read: check its permissions");
    return text;
}

// The one name of a file, to know it again under another one.
fs::path canonicalName(const fs::path& file) {
    std::error_code error;
    fs::path canonical = fs::canonical(file, error);
    return error ? file : canonical; // Not tested: the file has just been read
}

bool isNameCharacter(char c, bool first) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
                        static_cast<unsigned char>(c) >= 0x80;
    return letter || (!first && c >= '0' && c <= '9');
}

// Names with slashes between them; one slash before the first is common and does no harm.
bool isNamespaceName(std::string_view text) {
    if (!text.empty() && text.front() == '/')
        text.remove_prefix(1);
    bool first = true;
    for (const char c : text) {
        const bool separator = c == '/' && !first;
        if (!separator && !isNameCharacter(c, first))
            return false;
        first = separator;
    }
    return !first;
}

[[noreturn]] void refuseInclude(const std::string& value, const std::string& why,
                                const Location& where) {
    throw MofError(where, "cannot include \"" + text::visible(value) + "\": " + why);
}

} // namespace

Reading::Reading(std::vector<fs::path> includeDirectories)
    : _includeDirectories(std::move(includeDirectories)) {}

void Reading::readFile(const fs::path& file) {
    const Source source(file.string());
    const std::string text = contents(file, source);
    read(text, source, {file, canonicalName(file)});
}

void Reading::readText(std::string_view text, const std::string& name) {
    read(text, Source(name), {});
}

void Reading::read(std::string_view text, const Source& source, OpenFile file) {
    // Not tested: it takes 256 MiB of memory, and a file of as much is refused before.
    if (text.size() > largestText)
        source.fail({}, "cannot be read: larger than 256 MiB");
    if (text.substr(0, byteOrderMark.size()) == byteOrderMark)
        text.remove_prefix(byteOrderMark.size());
    checkBytes(text, source);
    ++_filesRead;
    _open.push_back(std::move(file));
    parse(text, source, *this);
    _open.pop_back();
}

void Reading::declare(decltype(Declaration::what) what) {
    _declarations.push_back({_nameSpace, std::move(what)});
}

// Pragmas that nothing is known of say something to other compilers (DSP0004, clause on
// compiler directives).
void Reading::pragma(const std::string& name, const std::string& value, const Location& where) {
    const std::string known = text::lowered(name);
    if (known == "include")
        include(value, where);
    else if (known == "namespace")
        enterNamespace(value, where);
}

void Reading::include(const std::string& value, const Location& where) {
    const fs::path file = findInclude(value, where);
    const fs::path canonical = canonicalName(file);
    for (const OpenFile& open : _open)
        if (open.canonical == canonical)
            refuseInclude(value, "that file is still being read, it includes itself", where);
    if (_open.size() > deepestInclude)
        refuseInclude(value, "includes nest deeper than " + std::to_string(deepestInclude), where);
    if (_filesRead >= mostFiles)
        refuseInclude(value, "more than " + std::to_string(mostFiles) + " files", where);
    readFile(file);
}

fs::path Reading::findInclude(const std::string& value, const Location& where) const {
    std::vector<fs::path> directories;
    if (!_open.back().path.empty())
        directories.push_back(_open.back().path.parent_path());
    directories.insert(directories.end(), _includeDirectories.begin(), _includeDirectories.end());

    std::string tried;
    for (const fs::path& directory : directories) {
        fs::path candidate = (directory / value).lexically_normal();
        std::error_code ignored;
        if (fs::is_regular_file(candidate, ignored))
            return candidate;
        tried += (tried.empty() ? "" : ", ") + text::visible(candidate.string());
    }
    refuseInclude(value,
                  tried.empty() ? "there is no include directory to look in"
                                : "no such file, looked for " + tried,
                  where);
}

void Reading::enterNamespace(const std::string& value, const Location& where) {
    if (!isNamespaceName(value))
        throw MofError(where, unexpected('"' + value + '"', "a namespace name such as root/cimv2"));
    _nameSpace = value;
}

Specification readFile(const std::filesystem::path& file,
                       const std::vector<std::filesystem::path>& includeDirectories) {
    Reading reading(includeDirectories);
    reading.readFile(file);
    return reading.take();
}

Specification readText(const std::string& text, const std::string& name,
                       const std::vector<std::filesystem::path>& includeDirectories) {
    Reading reading(includeDirectories);
    reading.readText(text, name);
    return reading.take();
}

} // namespace embedded::mof
