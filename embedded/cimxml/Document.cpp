#include "cimxml/Document.h"

#include "cimxml/ElementRules.h"
#include "limits/Limits.h"
#include "text/Ascii.h"
#include "text/Utf8.h"
#include "threads/Locks.h"

#include <expat.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <random>
#include <utility>
#include <vector>

namespace embedded::cimxml {
namespace {

constexpr const char* unknownReference = "unknown entity or character reference";

struct FreeParser {
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};

using Parser = std::unique_ptr<XML_ParserStruct, FreeParser>;

/// Parsers that nobody uses just now: as many as there were readers at once. A parser that is used
/// again keeps its memory. Not one for each thread: the C library ends the process when it has no
/// memory to register a thread's destructors.
///
/// Entities are never declared here (see doctype()), external ones are never asked for (expat needs
/// a handler for that), and expat's own bound on what entities come to is on, as it is from 2.4 on.
class Parsers {
  public:
    Parsers() { _free.reserve(most); }

    Parser take() {
        Parser parser = takeFree();
        // Not tested: expat resets any parser but one that reads, and lacks memory.
        if (!parser || !XML_ParserReset(parser.get(), encoding))
            parser.reset(XML_ParserCreate(encoding));
        if (!parser) // Not tested: here; tests/faults lets memory lack
            throw std::bad_alloc();
        // Otherwise expat asks the kernel for a random number for each document.
        XML_SetHashSalt(parser.get(), _salt);
        return parser;
    }
    /// After a document of `size` bytes: gives the memory back if it may have come to much.
    void giveBack(Parser parser, std::size_t size) noexcept {
        const threads::Lock lock(_mutex);
        if (size <= kept &&
            _free.size() < most) // Not tested: it takes 65 threads that read at once
            _free.push_back(std::move(parser));
    }

  private:
    static constexpr const char* encoding = "UTF-8"; // whatever the document says
    static constexpr std::size_t most = 64;
    // What a parser keeps of documents up to that size comes to 1 MB at most, of the worst ones.
    static constexpr std::size_t kept = std::size_t{64} * 1024;

    Parser takeFree() {
        const threads::Lock lock(_mutex);
        if (_free.empty())
            return nullptr;
        Parser parser = std::move(_free.back());
        _free.pop_back();
        return parser;
    }

    const unsigned long _salt = std::random_device()() | 1U; // 0 means none
    threads::Mutex _mutex;
    std::vector<Parser> _free GUARDED_BY(_mutex);
};

bool isBlank(std::string_view text) { return text::trimmed(text).empty(); }

/// Rejects bytes that no document may hold, wherever they are: that goes before all else.
void checkBytes(std::string_view text) {
    const std::size_t end = std::min(text::findInvalidUtf8(text), text.size());
    for (std::size_t at = 0; at < end; ++at)
        if (static_cast<unsigned char>(text[at]) < ' ' && !isBlank(text.substr(at, 1)))
            rejectNotWellFormed("character not allowed in XML at byte " + std::to_string(at));
    if (end != text.size())
        rejectNotValid("not UTF-8 at byte " + std::to_string(end));
}

bool beginsWithDeclaration(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    constexpr std::string_view begin = "<?xml";
    if (text.substr(0, byteOrderMark.size()) == byteOrderMark)
        text.remove_prefix(byteOrderMark.size());
    return text.size() > begin.size() && text.substr(0, begin.size()) == begin &&
           isBlank(text.substr(begin.size(), 1));
}

} // namespace

void rejectNotWellFormed(const std::string& detail) {
    throw RequestRejected(400, "request-not-well-formed", detail);
}

void rejectNotValid(const std::string& detail) {
    throw RequestRejected(400, "request-not-valid", detail);
}

Attribute Element::attribute(std::string_view name) const {
    const Attribute* const found =
        std::find_if(beginAttributes(), endAttributes(),
                     [&](const Attribute& attribute) { return attribute.name == name; });
    return found == endAttributes() ? Attribute() : *found;
}

Element Element::child(std::string_view name) const { return *children(name).begin(); }

Element::Children Element::children(std::string_view name) const { return {child(), name}; }

class Document::Reader {
  public:
    Reader(Document& document, std::string_view text, XML_Parser parser)
        : _document(document), _text(text), _parser(parser) {
        XML_SetUserData(_parser, this);
        XML_SetXmlDeclHandler(_parser, handle<&Reader::declaration>);
        XML_SetStartDoctypeDeclHandler(_parser, handle<&Reader::doctype>);
        XML_SetElementHandler(_parser, handle<&Reader::start>, handle<&Reader::end>);
        XML_SetCharacterDataHandler(_parser, handle<&Reader::characters>);
        XML_SetSkippedEntityHandler(_parser, handle<&Reader::skippedEntity>);
    }

    void read() {
        if (XML_Parse(_parser, _text.data(), static_cast<int>(_text.size()), XML_TRUE) !=
                XML_STATUS_OK &&
            !isEnough())
            reject();
    }

  private:
    struct Open {
        Element::Node* element = nullptr; ///< null for one that is not kept
        Element::Node* lastChild = nullptr;
        bool hasChild = false;
    };

    // What a handler throws waits until expat's frames have returned.
    template <auto member, class... Arguments>
    static void handle(void* self, Arguments... arguments) noexcept {
        Reader& reader = *static_cast<Reader*>(self);
        if (reader._thrown || reader.isEnough())
            return;
        try {
            (reader.*member)(arguments...);
        } catch (...) {
            reader._thrown = std::current_exception();
            XML_StopParser(reader._parser, XML_FALSE);
        }
    }

    [[noreturn]] void fail(const std::string& what) const {
        rejectNotWellFormed(what + " at byte " + std::to_string(XML_GetCurrentByteIndex(_parser)));
    }

    [[noreturn]] void reject() const {
        checkBytes(_text);
        if (_thrown)
            std::rethrow_exception(_thrown);
        const XML_Error error = XML_GetErrorCode(_parser);
        switch (error) {
        case XML_ERROR_NO_MEMORY:
            throw std::bad_alloc();
        case XML_ERROR_NO_ELEMENTS:
            // That is what expat says of any end that comes too early. Here, it has to come after
            // whole markup and no element.
            if (!_document._root && text::trimmed(_text).back() == '>')
                rejectNotValid("no element");
            fail(XML_ErrorString(error));
        case XML_ERROR_UNDEFINED_ENTITY:
        case XML_ERROR_BAD_CHAR_REF:
            fail(unknownReference);
        default:
            fail(XML_ErrorString(error));
        }
    }

    void declaration(const char* version, const char* encoding, int /*standalone*/) {
        // Not tested: only external entities, which are never read, may do without a version.
        if (!version || std::string_view(version) != "1.0")
            rejectNotValid("XML version is not 1.0");
        if (encoding && !text::equalIgnoringCase(encoding, "utf-8"))
            rejectNotValid("encoding is not UTF-8");
    }

    void doctype(const char* /*name*/, const char* system, const char* /*publicId*/,
                 int hasDeclarations) {
        if (hasDeclarations != 0)
            rejectNotValid("declarations in the document are not supported");
        _hasExternalType = system != nullptr;
    }

    void skippedEntity(const char* /*name*/, int /*isParameter*/) { fail(unknownReference); }

    // Where a document type stands elsewhere, expat takes entities that it does not know for
    // declared there: in text it says so, of an attribute's value it leaves them out.
    void checkReferences() const {
        constexpr std::array<std::string_view, 5> entities = {"lt", "gt", "amp", "quot", "apos"};
        std::string_view tag =
            _text.substr(static_cast<std::size_t>(XML_GetCurrentByteIndex(_parser)),
                         static_cast<std::size_t>(XML_GetCurrentByteCount(_parser)));
        while (tag.find('&') != std::string_view::npos) {
            tag.remove_prefix(tag.find('&') + 1);
            const std::string_view name = tag.substr(0, tag.find(';'));
            if (name.front() != '#' &&
                std::find(entities.begin(), entities.end(), name) == entities.end())
                fail(unknownReference);
        }
    }

    void start(const char* name, const char** attributes) {
        if (_depth == limits::depth)
            rejectNotValid("elements nested deeper than " + std::to_string(limits::depth));
        if (_hasExternalType)
            checkReferences();
        const std::size_t attributeCount = counted(attributes);
        Element::Node* const element = _unknown == 0 ? make<Element::Node>(1) : nullptr;
        if (_depth == 0) {
            _document._root = element;
        } else {
            Open& parent = _open[_depth - 1];
            endText(parent, true);
            parent.hasChild = true;
            if (element) {
                (parent.lastChild ? parent.lastChild->next : parent.element->firstChild) = element;
                parent.lastChild = element;
            }
        }
        _open[_depth++] = {element};
        const std::string_view known = knownElement(name);
        _unknown += known.empty() ? 1 : 0;
        if (element) {
            takeName(*element, known.empty() ? keep(name) : known);
            takeAttributes(*element, attributes, attributeCount);
        }
        if (isEnough())
            XML_StopParser(_parser, XML_FALSE);
    }

    bool isEnough() const { return _unknown > limits::unknownElements; }

    // `attributes`: names and values in turn, then null.
    static std::size_t counted(const char** attributes) {
        std::size_t count = 0;
        while (attributes[2 * count])
            if (++count > limits::attributes)
                rejectNotValid("more than " + std::to_string(limits::attributes) + " attributes");
        return count;
    }

    static void takeName(Element::Node& element, std::string_view name) {
        element.nameBegin = name.data();
        element.nameSize = static_cast<std::uint32_t>(name.size());
    }

    void takeAttributes(Element::Node& element, const char** attributes, std::size_t count) {
        auto* const taken = make<Attribute>(count);
        for (std::size_t i = 0; i < count; ++i)
            taken[i] = {keep(attributes[2 * i]), keep(attributes[2 * i + 1])};
        element.attributes = taken;
        element.attributeCount = static_cast<std::uint8_t>(count);
    }

    void end(const char* /*name*/) {
        Open& ended = _open[--_depth];
        endText(ended, ended.hasChild);
    }

    void characters(const char* piece, int length) {
        _pending.append(piece, static_cast<std::size_t>(length));
    }

    void endText(Open& open, bool besideElements) {
        if (!open.element) {
            // Nobody will ask for it.
        } else if (!besideElements) {
            const std::string_view text = keep(_pending);
            open.element->textBegin = text.data();
            open.element->textSize = static_cast<std::uint32_t>(text.size());
        } else if (!isBlank(_pending)) {
            open.element->isMixed = true;
        }
        _pending.clear();
    }

    template <class T>
    T* make(std::size_t count) {
        T* const made = static_cast<T*>(_document._memory.allocate(count * sizeof(T), alignof(T)));
        std::uninitialized_value_construct_n(made, count);
        return made;
    }

    std::string_view keep(std::string_view text) {
        char* const kept = make<char>(text.size());
        std::copy(text.begin(), text.end(), kept);
        return {kept, text.size()};
    }

    Document& _document;
    std::string_view _text;
    XML_Parser _parser;
    std::exception_ptr _thrown;
    bool _hasExternalType = false;
    std::size_t _unknown = 0; // elements
    std::array<Open, limits::depth> _open{};
    std::size_t _depth = 0;
    std::string _pending; // text that is not yet its element's
};

Document::Document(const std::string& text) {
    if (text.size() > INT_MAX) // Not tested: no body may be as long
        rejectNotValid("longer than " + std::to_string(INT_MAX) + " bytes");
    if (!beginsWithDeclaration(text)) {
        checkBytes(text);
        rejectNotValid("no XML declaration");
    }
    static Parsers parsers;
    struct Use {
        Parser parser;
        std::size_t size;
        ~Use() { parsers.giveBack(std::move(parser), size); }
    } const use{parsers.take(), text.size()};
    Reader(*this, text, use.parser.get()).read();
}

} // namespace embedded::cimxml
