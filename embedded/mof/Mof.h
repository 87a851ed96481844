// The MOF reader turns text into declarations (DSP0004 annex A) and gives them no meaning.
//
// It reads a file whole, with its includes, before it returns anything, so that a file with an
// error is never half loaded. Whoever uses the declarations decides what superclasses, types and
// aliases mean; each declaration carries its location for error messages.
//
// Thread-safety: reading shares no state; the results are plain values.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace embedded::mof {

/// A place in a MOF text. Line and column count from 1; the column counts bytes.
struct Location {
    const std::string* file = nullptr; ///< its name, which is kept as long as the program runs
    unsigned line = 1;
    unsigned column = 1;

    /// "file:line:column"
    std::string text() const;
};

/// Thrown for text that cannot be read, and by the repository for declarations without meaning.
/// what() is one line: "file:line:column: <message>".
class MofError : public std::runtime_error {
  public:
    MofError(const Location& where, const std::string& message);
    const Location& where() const { return _where; }

  private:
    Location _where;
};

/// One constant as it is written: `text` is the value without quotes and with escapes resolved
/// (strings and chars, UTF-8), the digits as written (numbers), or the alias with its `$`.
struct Literal {
    enum class Kind { Null, Boolean, Integer, Real, Character, String, Alias };
    Kind kind = Kind::Null;
    bool boolean = false; ///< only for Kind::Boolean
    std::string text;
    Location where;
};

/// A scalar (one item) or an array in braces (any number of items).
struct Value {
    bool isArray = false;
    std::vector<Literal> items;
    Location where;
};

struct Qualifier {
    std::string name;
    std::optional<Value> value;       ///< absent: the type's default (true for a boolean)
    std::vector<std::string> flavors; ///< lower case: "tosubclass", "enableoverride", ...
    Location where;
};

struct QualifierDeclaration {
    std::string name;
    std::string type; ///< intrinsic type name in lower case: "string", "uint16", ...
    bool isArray = false;
    std::uint32_t arraySize = 0; ///< 0: no size given
    std::optional<Value> value;
    std::vector<std::string> scopes;  ///< lower case: "class", "property", "any", ...
    std::vector<std::string> flavors; ///< lower case
    Location where;
};

struct Property {
    std::vector<Qualifier> qualifiers;
    std::string type;           ///< intrinsic type name in lower case, or "ref"
    std::string referenceClass; ///< only for "ref"
    std::string name;
    bool isArray = false;
    std::uint32_t arraySize = 0;
    std::optional<Value> value;
    Location where;
};

struct Parameter {
    std::vector<Qualifier> qualifiers;
    std::string type;
    std::string referenceClass;
    std::string name;
    bool isArray = false;
    std::uint32_t arraySize = 0;
    Location where;
};

struct Method {
    std::vector<Qualifier> qualifiers;
    std::string returnType;
    std::string name;
    std::vector<Parameter> parameters;
    Location where;
};

struct ClassDeclaration {
    std::vector<Qualifier> qualifiers;
    std::string name;
    std::string alias;      ///< with its `$`; empty when there is none
    std::string superclass; ///< empty when there is none
    std::vector<Property> properties;
    std::vector<Method> methods;
    Location where;
};

struct PropertyInitializer {
    std::vector<Qualifier> qualifiers;
    std::string name;
    Value value;
    Location where;
};

struct InstanceDeclaration {
    std::vector<Qualifier> qualifiers;
    std::string className;
    std::string alias; ///< with its `$`; empty when there is none
    std::vector<PropertyInitializer> properties;
    Location where;
};

/// One declaration, and the namespace in which `#pragma namespace` has put it.
struct Declaration {
    std::optional<std::string> nameSpace; ///< none: the one that the loader was told
    std::variant<QualifierDeclaration, ClassDeclaration, InstanceDeclaration> what;
};

/// All declarations of a file and its includes, in the order in which they stand.
using Specification = std::vector<Declaration>;

/// Reads `file`. A `#pragma include` is looked for beside the including file, then in
/// `includeDirectories`, in order.
/// Throws MofError for text that is not MOF, for an include that cannot be opened or that
/// includes itself, and for a file that cannot be read (line 1, column 1).
Specification readFile(const std::filesystem::path& file,
                       const std::vector<std::filesystem::path>& includeDirectories = {});

/// Reads `text`; `name` stands for the file in locations. Includes as in readFile, looked for in
/// `includeDirectories` only. Throws MofError.
Specification readText(const std::string& text, const std::string& name,
                       const std::vector<std::filesystem::path>& includeDirectories = {});

} // namespace embedded::mof
