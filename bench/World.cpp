// Reads the file of world.py: a line for each thing, its words separated by tabs.
//
//   class NAME                         the following belong to a class definition
//   published NAME                     the following instances answer for NAME
//   instance NAME PATH                 the following belong to an instance
//   property NAME TYPE array|scalar REFERENCE-CLASS CLASS-ORIGIN null|value VALUE...
//   qualifier NAME TYPE array|scalar null|value VALUE...   of the last property, or of the class
#include "Handle.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/Exception.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

PEGASUS_USING_PEGASUS;

namespace bench {
namespace {

using Words = std::vector<std::string>;

Words split(const std::string& line) {
    Words words;
    std::istringstream in(line);
    for (std::string word; std::getline(in, word, '\t');)
        words.push_back(word);
    return words;
}

String string(const std::string& text) { return String(text.c_str()); }

CIMName name(const std::string& text) { return text.empty() ? CIMName() : CIMName(string(text)); }

template <class Type, class Convert>
CIMValue valueOf(const Words& texts, bool isArray, Convert convert) {
    Array<Type> all;
    for (const std::string& text : texts)
        all.append(convert(text));
    return isArray ? CIMValue(all) : CIMValue(all[0]);
}

template <class Type>
CIMValue numberOf(const Words& texts, bool isArray) {
    return valueOf<Type>(
        texts, isArray,
        [](const std::string& text) {
            return static_cast<Type>(std::strtoll(text.c_str(), nullptr, 10));
        });
}

const struct {
    const char* name;
    CIMType type;
    CIMValue (*value)(const Words& texts, bool isArray);
} types[] = {
    {"boolean", CIMTYPE_BOOLEAN,
     [](const Words& texts, bool isArray) {
         return valueOf<Boolean>(texts, isArray, [](const std::string& t) { return t == "TRUE"; });
     }},
    {"string", CIMTYPE_STRING,
     [](const Words& texts, bool isArray) { return valueOf<String>(texts, isArray, string); }},
    {"datetime", CIMTYPE_DATETIME,
     [](const Words& texts, bool isArray) {
         return valueOf<CIMDateTime>(
             texts, isArray, [](const std::string& text) { return CIMDateTime(string(text)); });
     }},
    {"reference", CIMTYPE_REFERENCE,
     [](const Words& texts, bool isArray) {
         return valueOf<CIMObjectPath>(
             texts, isArray, [](const std::string& text) { return CIMObjectPath(string(text)); });
     }},
    {"uint8", CIMTYPE_UINT8, numberOf<Uint8>},
    {"sint8", CIMTYPE_SINT8, numberOf<Sint8>},
    {"uint16", CIMTYPE_UINT16, numberOf<Uint16>},
    {"sint16", CIMTYPE_SINT16, numberOf<Sint16>},
    {"uint32", CIMTYPE_UINT32, numberOf<Uint32>},
    {"sint32", CIMTYPE_SINT32, numberOf<Sint32>},
    {"uint64", CIMTYPE_UINT64, numberOf<Uint64>},
    {"sint64", CIMTYPE_SINT64, numberOf<Sint64>},
};

/// TYPE array|scalar, from the word `at` on, and null|value VALUE... from the word `from` on.
CIMValue value(const Words& words, std::size_t at, std::size_t from) {
    const bool isArray = words.at(at + 1) == "array";
    const Words texts(words.begin() + static_cast<Words::difference_type>(from) + 1, words.end());
    for (const auto& row : types) {
        if (words.at(at) == row.name) {
            const bool hasValue = words.at(from) == "value" && (isArray || !texts.empty());
            return hasValue ? row.value(texts, isArray) : CIMValue(row.type, isArray);
        }
    }
    throw std::runtime_error("no such type: " + words.at(at));
}

/// Takes the lines one after the other.
class Reader {
  public:
    void take(const Words& words) {
        const std::string& kind = words.at(0);
        if (kind == "qualifier") {
            const CIMQualifier qualifier(name(words.at(1)), value(words, 2, 4));
            if (_hasProperty)
                _property.addQualifier(qualifier);
            else
                current([&](auto& object) { object.addQualifier(qualifier); });
            return;
        }
        endProperty();
        if (kind == "property") {
            _property = CIMProperty(name(words.at(1)), value(words, 2, 6), 0, name(words.at(4)),
                                    name(words.at(5)));
            _hasProperty = true;
            return;
        }
        _isClass = kind == "class";
        if (_isClass) {
            world().classes.push_back(CIMClass(name(words.at(1))));
        } else if (kind == "published") {
            world().published.push_back({name(words.at(1)), {}, {}});
        } else if (kind == "instance") {
            const CIMObjectPath path(string(words.at(2)));
            CIMInstance instance(name(words.at(1)));
            instance.setPath(path);
            world().published.back().names.append(path);
            world().published.back().instances.append(instance);
        } else {
            throw std::runtime_error("no such kind of line: " + kind);
        }
    }

    void endProperty() {
        if (_hasProperty) {
            _hasProperty = false;
            current([&](auto& object) { object.addProperty(_property); });
        }
    }

  private:
    template <class Change>
    void current(Change change) {
        if (_isClass) {
            change(world().classes.back());
        } else {
            Array<CIMInstance>& instances = world().published.back().instances;
            change(instances[instances.size() - 1]);
        }
    }

    bool _isClass = false;
    bool _hasProperty = false;
    CIMProperty _property;
};

} // namespace

void readWorld(const std::string& file) {
    std::ifstream in(file);
    if (!in)
        throw std::runtime_error(file + ": cannot be read");
    Reader reader;
    unsigned number = 0;
    const auto fail = [&](const std::string& reason) {
        throw std::runtime_error(file + ":" + std::to_string(number) + ": " + reason);
    };
    try {
        for (std::string line; ++number, std::getline(in, line);)
            reader.take(split(line));
        reader.endProperty();
    } catch (const Exception& exception) {
        fail(static_cast<const char*>(exception.getMessage().getCString()));
    } catch (const std::exception& exception) {
        fail(exception.what());
    }
}

} // namespace bench
