// The text of a request as a tree of elements: strict XML, read by expat in one pass.
#pragma once

#include "limits/Limits.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace embedded::cimxml {

/// Thrown for a document that gets no CIM-XML reply but an HTTP status and a CIMError header
/// (DSP0200 clause 6.3.3.2): `status` 400 or 501, `cimError` such as "request-not-well-formed".
class RequestRejected : public std::runtime_error {
  public:
    RequestRejected(unsigned status, std::string cimError, const std::string& detail)
        : std::runtime_error(detail), _status(status), _cimError(std::move(cimError)) {}
    unsigned status() const { return _status; }
    const std::string& cimError() const { return _cimError; }

  private:
    unsigned _status;
    std::string _cimError;
};

/// The bytes are not an XML document.
[[noreturn]] void rejectNotWellFormed(const std::string& detail);
/// An XML document, but not a CIM-XML request.
[[noreturn]] void rejectNotValid(const std::string& detail);

/// An attribute, or none. Its texts live as long as the document.
struct Attribute {
    std::string_view name;
    std::string_view value; ///< references resolved, blanks made spaces

    explicit operator bool() const { return !name.empty(); }
};

/// An element of a document, or none; lives as long as the document. None has no text, no child and
/// no attribute.
class Element {
  public:
    class Children;
    /// What the document keeps of an element.
    struct Node {
        std::string_view name() const { return {nameBegin, nameSize}; }
        std::string_view text() const { return {textBegin, textSize}; }

        // There may be a million of them: sizes are kept apart, so that there are no gaps.
        const char* nameBegin = nullptr;
        const char* textBegin = nullptr;
        const Attribute* attributes = nullptr;
        const Node* firstChild = nullptr;
        const Node* next = nullptr;
        std::uint32_t nameSize = 0;
        std::uint32_t textSize = 0;
        std::uint8_t attributeCount = 0;
        bool isMixed = false;
    };
    static_assert(limits::attributes <= UINT8_MAX);

    Element() = default;
    explicit Element(const Node* node) : _node(node) {}
    explicit operator bool() const { return _node != nullptr; }

    std::string_view name() const { return _node ? _node->name() : std::string_view(); }
    /// All character data, also CDATA, of an element without child elements; "" of others.
    std::string_view text() const { return _node ? _node->text() : std::string_view(); }
    /// Whether it has elements and, between them, text that is not blank.
    bool isMixed() const { return _node && _node->isMixed; }

    const Attribute* beginAttributes() const { return _node ? _node->attributes : nullptr; }
    const Attribute* endAttributes() const {
        return _node ? _node->attributes + _node->attributeCount : nullptr;
    }
    Attribute attribute(std::string_view name) const;

    /// The first child.
    Element child() const { return Element(_node ? _node->firstChild : nullptr); }
    /// The first child of that name.
    Element child(std::string_view name) const;
    Element nextSibling() const { return Element(_node ? _node->next : nullptr); }
    /// All children, or those of that name, in their order.
    Children children(std::string_view name = {}) const;

  private:
    const Node* _node = nullptr;
};

/// The children of an element, for a loop: the rest of them, which begins with `*`.
class Element::Children {
  public:
    Children(Element first, std::string_view name) : _at(first), _name(name) { skipOthers(); }
    Children begin() const { return *this; }
    std::nullptr_t end() const { return nullptr; }

    bool operator!=(std::nullptr_t) const { return static_cast<bool>(_at); }
    const Element& operator*() const { return _at; }
    Children& operator++() {
        _at = _at.nextSibling();
        skipOthers();
        return *this;
    }

  private:
    void skipOthers() {
        while (_at && !_name.empty() && _at.name() != _name)
            _at = _at.nextSibling();
    }

    Element _at;
    std::string_view _name;
};

/// A document that has been read, without comments and processing instructions. Nothing is kept
/// behind the first element that no request has, because that makes the document invalid.
///
/// Thread-safety: one thread at a time; documents are independent of each other.
class Document {
  public:
    /// Throws RequestRejected unless `text` is, within the limits, a well-formed XML 1.0 document
    /// in UTF-8 that starts with an XML declaration. A document type declaration may name a DTD (it
    /// is not fetched) but must not declare anything, so the five predefined entities are the only
    /// ones. After limits::unknownElements unknown elements, the rest is not checked.
    explicit Document(const std::string& text);
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    Element root() const { return Element(_root); }

  private:
    class Reader;

    std::array<std::byte, 4096> _nearby; // enough for nearly all requests
    std::pmr::monotonic_buffer_resource _memory{_nearby.data(), _nearby.size()};
    const Element::Node* _root = nullptr;
};

} // namespace embedded::cimxml
