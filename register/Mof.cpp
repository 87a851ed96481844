#include "register/Mof.h"

#include "register/MofTokens.h"
#include "register/Names.h"

#include <stdexcept>

namespace registering {
namespace {

class Reader {
  public:
    Reader(const std::string& text, const std::string& origin)
        : _tokens(mofTokens(text, origin)), _origin(origin) {}

    Mof all() {
        Mof mof;
        Qualifiers before;
        while (_tokens[_at].kind != Token::Kind::End) {
            if (isSymbol("[")) {
                before = qualifiers();
            } else if (isWord("class")) {
                mof.classes.push_back(classDeclaration(before.version));
                before = {};
            } else if (isWord("instance")) {
                mof.instances.push_back(instance());
            } else if (isWord("qualifier")) {
                advance();
                mof.qualifiers.push_back(word());
                passDeclaration();
            } else {
                fail("a class or an instance is expected, not");
            }
        }
        return mof;
    }

  private:
    // What is read of a list of qualifiers.
    struct Qualifiers {
        std::string version;
        bool key = false;
    };

    Qualifiers qualifiers() {
        Qualifiers found;
        unsigned open = 0;
        do {
            const bool isVersion = isWord("Version");
            found.key |= isWord("Key");
            open += isSymbol("[");
            open -= isSymbol("]");
            advance();
            if (isVersion && isSymbol("(")) {
                advance();
                found.version = string();
            }
        } while (open > 0);
        return found;
    }

    Class classDeclaration(const std::string& version) {
        advance();
        Class result{word(), "", version, {}, {}};
        if (isSymbol(":")) {
            advance();
            result.superclass = word();
        }
        expect("{");
        while (!isSymbol("}"))
            member(result);
        advance();
        expect(";");
        return result;
    }

    // A property or a method.
    void member(Class& result) {
        const bool key = isSymbol("[") && qualifiers().key;
        const std::string type = word();
        if (isWord("REF")) {
            addName(result.references, type);
            advance();
        }
        const std::string name = word();
        if (key)
            result.keys.push_back(name);
        passDeclaration();
    }

    // Passes all up to a semicolon, and that, too.
    void passDeclaration() {
        while (!isSymbol(";"))
            advance();
        advance();
    }

    Instance instance() {
        advance();
        if (!isWord("of"))
            fail("'of' is expected, not");
        advance();
        Instance result{word(), {}};
        expect("{");
        while (!isSymbol("}")) {
            if (isSymbol("["))
                qualifiers();
            Property property{word(), false, {}};
            expect("=");
            value(property);
            expect(";");
            if (property.isArray || !sameName(property.items.front(), "NULL"))
                result.properties.push_back(property);
        }
        advance();
        expect(";");
        return result;
    }

    void value(Property& property) {
        if (!isSymbol("{")) {
            property.items.push_back(literal());
            return;
        }
        property.isArray = true;
        do {
            advance();
            if (!isSymbol("}"))
                property.items.push_back(literal());
        } while (isSymbol(","));
        expect("}");
    }

    std::string literal() {
        return _tokens[_at].kind == Token::Kind::String ? quoted(string()) : word();
    }

    // A string, its pieces joined, without its quotes.
    std::string string() {
        std::string text;
        while (_tokens[_at].kind == Token::Kind::String) {
            text += _tokens[_at].text.substr(1, _tokens[_at].text.size() - 2);
            advance();
        }
        return text;
    }

    std::string word() {
        if (_tokens[_at].kind != Token::Kind::Word)
            fail("a name or a value is expected, not");
        return _tokens[_at++].text;
    }

    void expect(const char* symbol) {
        if (!isSymbol(symbol))
            fail(std::string("'") + symbol + "' is expected, not");
        advance();
    }

    void advance() {
        if (_tokens[_at].kind == Token::Kind::End)
            fail("more is expected, not");
        ++_at;
    }

    bool isSymbol(const char* text) const {
        return _tokens[_at].kind == Token::Kind::Symbol && _tokens[_at].text == text;
    }

    bool isWord(const char* text) const {
        return _tokens[_at].kind == Token::Kind::Word && sameName(_tokens[_at].text, text);
    }

    [[noreturn]] void fail(const std::string& what) const {
        const Token& token = _tokens[_at];
        throw std::runtime_error(
            _origin + ":" + std::to_string(token.line) + ": " + what + " " +
            (token.kind == Token::Kind::End ? "the end" : "'" + token.text + "'"));
    }

    std::vector<Token> _tokens;
    const std::string& _origin;
    std::size_t _at = 0;
};

} // namespace

const Property* Instance::find(const std::string& name) const {
    for (const Property& property : properties)
        if (sameName(property.name, name))
            return &property;
    return nullptr;
}

std::vector<std::string> Instance::texts(const std::string& name) const {
    std::vector<std::string> result;
    if (const Property* property = find(name))
        for (const std::string& item : property->items)
            result.push_back(item.front() == '"' ? item.substr(1, item.size() - 2) : item);
    return result;
}

std::string Instance::text(const std::string& name) const {
    const std::vector<std::string> all = texts(name);
    return all.empty() ? "" : all.front();
}

Mof readMof(const std::string& text, const std::string& origin) {
    return Reader(text, origin).all();
}

std::string writeMof(const std::vector<Instance>& instances) {
    std::string text;
    for (const Instance& instance : instances) {
        text += "instance of " + instance.className + " {\n";
        for (const Property& property : instance.properties) {
            std::string items;
            for (const std::string& item : property.items)
                items += (items.empty() ? "" : ", ") + item;
            text += "    " + property.name + " = " +
                    (property.isArray ? "{" + items + "}" : items) + ";\n";
        }
        text += "};\n\n";
    }
    return text;
}

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

} // namespace registering
