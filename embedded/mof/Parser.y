/* The grammar of MOF (DSP0004 annex A). All lists are left-recursive, so that the parser's stack
   does not grow with their length; nothing in the grammar nests without end. */

%require "3.8"
%language "c++"
%skeleton "lalr1.cc"
%define api.namespace {embedded::mof}
%define api.parser.class {Parser}
%define api.value.type variant
%define api.value.automove
%define api.token.constructor
%define api.location.type {Position}
%locations
%define parse.error custom
/* Without it the parser would forget, before it reports, some tokens that could have followed. */
%define parse.lac full

%param { Scanner& scanner }
%parse-param { Reading& reading }

%code requires {
#include "mof/Source.h"

#include <memory>

namespace embedded::mof {

class Reading;
class Scanner;

// Parts of a declaration that the contract has no type for.

struct ArraySuffix {
    bool isArray = false;
    std::uint32_t size = 0;
};

struct Typed {
    std::string_view type; // as it is written, or "ref"
    std::string_view referenceClass;
    std::string_view name;
    ArraySuffix array;
    Position where;
};

struct Features {
    std::vector<Property> properties;
    std::vector<Method> methods;
};

} // namespace embedded::mof
}

%code {
#include "mof/Reading.h"
#include "mof/Scanner.h"
#include "text/Ascii.h"

#include <charconv>

// A rule stands where its first symbol stands.
#define YYLLOC_DEFAULT(Current, Rhs, N) ((Current) = YYRHSLOC(Rhs, (N) ? 1 : 0))

namespace embedded::mof {

static Parser::symbol_type yylex(Scanner& scanner) {
    return scanner.next();
}

static Literal literal(Literal::Kind kind, std::string text, const Location& where) {
    const bool boolean = kind == Literal::Kind::Boolean && text::lowered(text) == "true";
    return {kind, boolean, std::move(text), where};
}

static Literal literal(Literal::Kind kind, std::string_view text, const Location& where) {
    return literal(kind, std::string(text), where);
}

static Value scalar(Literal item) {
    Value value{false, {}, item.where};
    value.items.push_back(std::move(item));
    return value;
}

// Array sizes are plain decimal numbers, not every integer.
static std::uint32_t arraySize(std::string_view digits, const Source& source, const Position& at) {
    std::uint32_t size = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, size);
    if (error != std::errc() || stop != end || digits.front() == '0')
        source.fail(at, unexpected(digits, "an array size from 1 to 4294967295 in decimal digits"));
    return size;
}

static Property property(std::vector<Qualifier> qualifiers, const Typed& typed,
                         std::optional<Value> value, const Source& source) {
    return {std::move(qualifiers),   text::lowered(typed.type), std::string(typed.referenceClass),
            std::string(typed.name), typed.array.isArray, typed.array.size,
            std::move(value),        source.at(typed.where)};
}

static Parameter parameter(std::vector<Qualifier> qualifiers, const Typed& typed,
                           const ArraySuffix& array, const Source& source) {
    return {std::move(qualifiers),   text::lowered(typed.type), std::string(typed.referenceClass),
            std::string(typed.name), array.isArray,       array.size,
            source.at(typed.where)};
}

} // namespace embedded::mof
}

/* What a symbol stands for is moved often, as a block of the size of the largest of these types: they
   are kept small, large ones behind a pointer, and declarations are handed on at once. */

/* What stands in quotes here is what a message says was expected. */
%token END 0 "end of file"
%token LBRACE "'{'" RBRACE "'}'" LBRACKET "'['" RBRACKET "']'" LPAREN "'('" RPAREN "')'"
%token COLON "':'" SEMICOLON "';'" COMMA "','" EQUALS "'='"
%token PRAGMA "'#pragma'"
%token <std::string_view> IDENTIFIER "a name"
%token <std::string_view> CLASS "'class'" INSTANCE "'instance'" OF "'of'" AS "'as'" REF "'ref'"
%token <std::string_view> QUALIFIER "'qualifier'" SCOPE "'scope'" FLAVOR "'flavor'"
%token <std::string_view> TYPE "a type"
%token <std::string_view> SCOPE_NAME "a scope"
%token <std::string_view> FLAVOR_NAME "a flavor"
%token <std::string_view> INTEGER "an integer" REAL "a real number"
%token <std::string> CHARACTER "a character" STRING "a string"
%token <std::string_view> BOOLEAN "a boolean" NULL_VALUE "'null'" ALIAS "an alias"

%nterm <std::string_view> name qualifier_name alias superclass scope
%nterm <std::string> strings
%nterm <std::vector<std::string>> scopes default_flavors flavor_list flavors qualifier_flavors
%nterm <std::vector<Qualifier>> qualifiers qualifier_list
%nterm <std::unique_ptr<Qualifier>> qualifier
%nterm <std::optional<Value>> qualifier_value default_value
%nterm <Value> initializer array_value
%nterm <Literal> constant
%nterm <std::vector<Literal>> constants
%nterm <ArraySuffix> array_suffix
%nterm <Features> features
%nterm <Typed> typed reference
%nterm <std::vector<Parameter>> parameters parameter_list
%nterm <std::unique_ptr<Parameter>> parameter
%nterm <std::vector<PropertyInitializer>> initializers

%%

specification:
  %empty
| specification PRAGMA name LPAREN strings RPAREN {
    reading.pragma(std::string($3), $5, scanner.source().at(@5));
  }
| specification qualifier_declaration
| specification class_declaration
| specification instance_declaration
;

/* Names. Class names always carry a schema prefix and so never are keywords; everything else may
   be named like one, where it cannot be mistaken. */

name:
  IDENTIFIER | CLASS | INSTANCE | OF | AS | QUALIFIER | SCOPE | FLAVOR | TYPE | SCOPE_NAME
| FLAVOR_NAME
;

qualifier_name: name | REF ;

alias:
  %empty   {}
| AS ALIAS { $$ = $2; }
;

/* Qualifier declarations. */

qualifier_declaration:
  QUALIFIER qualifier_name COLON TYPE array_suffix default_value COMMA
  SCOPE LPAREN scopes RPAREN default_flavors SEMICOLON {
    const ArraySuffix array = $5;
    reading.declare(QualifierDeclaration{std::string($2), text::lowered($4), array.isArray, array.size,
                                         $6, $10, $12, scanner.source().at(@2)});
  }
;

scopes:
  scope              { $$.push_back(text::lowered($1)); }
| scopes COMMA scope { $$ = $1; $$.push_back(text::lowered($3)); }
;

scope: SCOPE_NAME | CLASS | QUALIFIER ;

default_flavors:
  %empty                                 {}
| COMMA FLAVOR LPAREN flavor_list RPAREN { $$ = $4; }
;

flavor_list:
  FLAVOR_NAME                   { $$.push_back(text::lowered($1)); }
| flavor_list COMMA FLAVOR_NAME { $$ = $1; $$.push_back(text::lowered($3)); }
;

/* Qualifiers. */

qualifiers:
  %empty                           {}
| LBRACKET qualifier_list RBRACKET { $$ = $2; }
;

qualifier_list:
  qualifier                      { $$.push_back(std::move(*$1)); }
| qualifier_list COMMA qualifier { $$ = $1; $$.push_back(std::move(*$3)); }
;

qualifier:
  qualifier_name qualifier_value qualifier_flavors {
    $$ = std::make_unique<Qualifier>(
        Qualifier{std::string($1), $2, $3, scanner.source().at(@1)});
  }
;

qualifier_value:
  %empty                 {}
| LPAREN constant RPAREN { $$ = scalar($2); }
| array_value            { $$ = $1; }
;

qualifier_flavors:
  %empty        {}
| COLON flavors { $$ = $2; }
;

flavors:
  FLAVOR_NAME         { $$.push_back(text::lowered($1)); }
| flavors FLAVOR_NAME { $$ = $1; $$.push_back(text::lowered($2)); }
;

/* Classes. */

class_declaration:
  qualifiers CLASS IDENTIFIER alias superclass LBRACE features RBRACE SEMICOLON {
    Features features = $7;
    reading.declare(ClassDeclaration{$1, std::string($3), std::string($4), std::string($5),
                                     std::move(features.properties), std::move(features.methods),
                                     scanner.source().at(@3)});
  }
;

superclass:
  %empty           {}
| COLON IDENTIFIER { $$ = $2; }
;

features:
  %empty {}
| features qualifiers typed default_value SEMICOLON {
    $$ = $1;
    $$.properties.push_back(property($2, $3, $4, scanner.source()));
  }
| features qualifiers reference default_value SEMICOLON {
    $$ = $1;
    $$.properties.push_back(property($2, $3, $4, scanner.source()));
  }
| features qualifiers TYPE name LPAREN parameters RPAREN SEMICOLON {
    $$ = $1;
    $$.methods.push_back({$2, text::lowered($3), std::string($4), $6, scanner.source().at(@4)});
  }
;

typed: TYPE name array_suffix { $$ = {$1, {}, $2, $3, @2}; } ;

/* A property never is an array of references, but a parameter may be one. */
reference: IDENTIFIER REF name { $$ = {"ref", $1, $3, {}, @3}; } ;

array_suffix:
  %empty                    {}
| LBRACKET RBRACKET         { $$ = {true, 0}; }
| LBRACKET INTEGER RBRACKET { $$ = {true, arraySize($2, scanner.source(), @2)}; }
;

parameters:
  %empty         {}
| parameter_list { $$ = $1; }
;

parameter_list:
  parameter                      { $$.push_back(std::move(*$1)); }
| parameter_list COMMA parameter { $$ = $1; $$.push_back(std::move(*$3)); }
;

parameter:
  qualifiers typed {
    const Typed typed = $2;
    $$ = std::make_unique<Parameter>(parameter($1, typed, typed.array, scanner.source()));
  }
| qualifiers reference array_suffix {
    $$ = std::make_unique<Parameter>(parameter($1, $2, $3, scanner.source()));
  }
;

/* Instances. */

instance_declaration:
  qualifiers INSTANCE OF IDENTIFIER alias LBRACE initializers RBRACE SEMICOLON {
    std::vector<PropertyInitializer> properties = $7;
    properties.shrink_to_fit();
    reading.declare(InstanceDeclaration{$1, std::string($4), std::string($5), std::move(properties),
                                        scanner.source().at(@4)});
  }
;

initializers:
  %empty {}
| initializers qualifiers name EQUALS initializer SEMICOLON {
    $$ = $1;
    $$.push_back({$2, std::string($3), $5, scanner.source().at(@3)});
  }
;

/* Values. */

default_value:
  %empty             {}
| EQUALS initializer { $$ = $2; }
;

initializer:
  constant    { $$ = scalar($1); }
| ALIAS       { $$ = scalar(literal(Literal::Kind::Alias, $1, scanner.source().at(@1))); }
| array_value
;

array_value:
  LBRACE RBRACE           { $$ = {true, {}, scanner.source().at(@1)}; }
| LBRACE constants RBRACE { $$ = {true, $2, scanner.source().at(@1)}; }
;

constants:
  constant                 { $$.push_back($1); }
| constants COMMA constant { $$ = $1; $$.push_back($3); }
;

constant:
  INTEGER    { $$ = literal(Literal::Kind::Integer, $1, scanner.source().at(@1)); }
| REAL       { $$ = literal(Literal::Kind::Real, $1, scanner.source().at(@1)); }
| CHARACTER  { $$ = literal(Literal::Kind::Character, $1, scanner.source().at(@1)); }
| strings    { $$ = literal(Literal::Kind::String, $1, scanner.source().at(@1)); }
| BOOLEAN    { $$ = literal(Literal::Kind::Boolean, $1, scanner.source().at(@1)); }
| NULL_VALUE { $$ = literal(Literal::Kind::Null, $1, scanner.source().at(@1)); }
;

strings:
  STRING
| strings STRING { $$ = $1; $$ += $2; }
;

%%

namespace embedded::mof {

void Parser::report_syntax_error(const context& at) const {
    std::vector<symbol_kind_type> kinds(symbol_kind::YYNTOKENS);
    const int count = at.expected_tokens(kinds.data(), symbol_kind::YYNTOKENS);
    std::vector<std::string> expected;
    for (int i = 0; i < count; ++i)
        expected.emplace_back(symbol_name(kinds[static_cast<std::size_t>(i)]));
    scanner.source().fail(at.location(), unexpected(scanner.tokenText(), listExpected(expected)));
}

// Only the skeleton's own failures come here.
void Parser::error(const Position& where, const std::string& message) {
    scanner.source().fail(where, message);
}

void parse(std::string_view text, const Source& source, Reading& reading) {
    Scanner scanner(text, source);
    Parser(scanner, reading).parse();
}

} // namespace embedded::mof
