#include "repository/ClassForm.h"

#include "repository/Qualifiers.h"

#include <algorithm>

namespace embedded::repository {

using namespace Pegasus;

namespace {

/// Those that instances have in common are few; they are forgotten rather than that a class whose
/// instances all differ fills the memory.
constexpr std::size_t mostShapes = 64;

bool names(const CIMValue& key) {
    if (key.isNull())
        return false;
    if (key.getType() != CIMTYPE_REFERENCE)
        return true;
    CIMObjectPath path;
    key.get(path);
    return !path.getClassName().isNull();
}

/// Whether one may stand for the other. Values of some types are equal although their texts differ.
bool isSame(const CIMValue& a, const CIMValue& b) {
    switch (a.getType()) {
    case CIMTYPE_REAL32:
    case CIMTYPE_REAL64:
    case CIMTYPE_DATETIME:
    case CIMTYPE_REFERENCE:
        return false;
    default:
        return a.equal(b);
    }
}

} // namespace

ClassForm::ClassForm(const ClassNode& node) : _head(node.head) {
    node.properties.forEach([&](const ClassNode::Property& each) {
        const auto place = static_cast<Uint32>(_properties.size());
        _places.emplace(folded(each.getName()), place);
        if (node.keys.find(each.getName()))
            _keys.push_back(place);
        _properties.push_back(each.declared);
    });
}

bool ClassForm::isKey(Uint32 property) const {
    return std::find(_keys.begin(), _keys.end(), property) != _keys.end();
}

Uint32 ClassForm::find(const CIMName& property) const {
    const auto found = _places.find(folded(property));
    return found == _places.end() ? noIndex : found->second;
}

Ref<Shape> ClassForm::keep(std::vector<Shape::Member> members, const std::string& written,
                           const std::function<CIMInstance()>& makeExample) {
    std::string key;
    for (const Shape::Member& each : members)
        key += std::to_string(each.property) + (each.given ? "+" : "-");
    key += written;
    Ref<Shape>& known = _shapes[key];
    if (known)
        return known;
    auto* shape = new Shape;
    Ref<Shape> made(shape);
    shape->whole = makeExample();
    shape->bare = shape->whole.clone();
    const auto all = [](const auto&) { return true; };
    removeQualifiers(shape->bare, all);
    for (std::size_t i = 0; i < members.size(); ++i) {
        const auto place = static_cast<Uint32>(i);
        CIMProperty property = shape->bare.getProperty(place);
        removeQualifiers(property, all);
        if (members[i].given)
            shape->given.push_back(place);
        if (property.getType() == CIMTYPE_REFERENCE)
            shape->references.push_back(place);
    }
    shape->members = std::move(members);
    shape->written = written;
    if (_shapes.size() > mostShapes)
        _shapes.clear();
    _shapes[key] = made;
    return made;
}

Ref<Shape> ClassForm::shape(const std::vector<Uint32>& given, const std::string& written,
                            const std::function<void(CIMInstance&)>& qualify) {
    std::vector<bool> isGiven(_properties.size());
    for (const Uint32 place : given)
        isGiven[place] = true;
    std::vector<Shape::Member> members;
    for (Uint32 place = 0; place < _properties.size(); ++place)
        if (!isGiven[place])
            members.push_back({place, false});
    for (const Uint32 place : given)
        members.push_back({place, true});
    return keep(members, written, [&] {
        CIMInstance example(className());
        addQualifiers(example, buildQualifiers({}, {}, {}, qualifiersOf(_head)));
        for (const Shape::Member& each : members) {
            const CIMConstProperty& declared = _properties[each.property];
            example.addProperty(CIMProperty(
                declared.getName(), declared.getValue(), declared.getArraySize(),
                declared.getReferenceClassName(), declared.getClassOrigin(), !each.given));
        }
        if (qualify)
            qualify(example);
        return example;
    });
}

Ref<Shape> ClassForm::reshaped(const Ref<Shape>& shape, const std::vector<Shape::Member>& members) {
    if (members == shape->members)
        return shape;
    return keep(members, shape->written, [&] {
        CIMInstance example = shape->whole.clone();
        for (std::size_t i = 0; i < members.size(); ++i) {
            CIMProperty property = example.getProperty(static_cast<Uint32>(i));
            property.setValue(_properties[members[i].property].getValue());
            property.setPropagated(!members[i].given);
        }
        return example;
    });
}

CIMObjectPath ClassForm::path(const ValueSource& source) const {
    Array<CIMKeyBinding> bindings;
    for (const Uint32 key : _keys) {
        const CIMConstProperty& declared = _properties[key];
        const CIMValue* given = source(key);
        const CIMValue& value = given ? *given : declared.getValue();
        if (!names(value))
            throw MissingKey{declared.getName()};
        bindings.append(CIMKeyBinding(declared.getName(), value));
    }
    return CIMObjectPath(String::EMPTY, CIMNamespaceName(), className(), bindings);
}

Ref<Stored> ClassForm::stored(const Ref<Shape>& shape, const CIMObjectPath& path,
                              const std::vector<CIMValue>& values) {
    auto* instance = new Stored;
    Ref<Stored> made(instance);
    instance->shape = shape;
    instance->path = path;
    instance->values = std::make_unique<CIMValue[]>(values.size());
    const bool likeLast = _last && _last->shape.get() == shape.get();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool isShared = likeLast && isSame(values[i], _last->values[i]);
        instance->values[i] = isShared ? _last->values[i] : values[i];
    }
    _last = made;
    return made;
}

} // namespace embedded::repository
