#include "common/Association.h"

#include "common/ModuleState.h"
#include "common/Selection.h"
#include "common/Trace.h"

#include <Pegasus/Common/CIMObject.h>

PEGASUS_USING_PEGASUS;

namespace serverprofile {

namespace {

CIMObjectPath pathOrEmpty(const String& text, NoPath noPath) {
    try {
        return CIMObjectPath(text);
    } catch (const Exception&) {
        if (noPath == NoPath::IsAnError)
            throw;
        return CIMObjectPath();
    }
}

} // namespace

Association::End::End(const ReferenceRole& declared)
    : role(declared.name),
      referenceClass(declared.referenceClass != nullptr ? CIMName(declared.referenceClass)
                                                        : CIMName()) {}

void Association::End::set(const CIMObjectPath& end) {
    path = end;
    key.reset();
}

const CIMKeyBinding& Association::End::asKey() {
    if (!key)
        key = path.getClassName().isNull() ? CIMKeyBinding(role, String(), CIMKeyBinding::STRING)
                                           : CIMKeyBinding(role, CIMValue(path));
    return *key;
}

CIMProperty Association::End::asProperty() const {
    const Uint32 noArray = 0;
    return CIMProperty(role, CIMValue(path), noArray, referenceClass);
}

Association::Association(const AssociationClass& cimClass, const String& nameSpace)
    : _name(cimClass.name), _nameSpace(nameSpace), _first(cimClass.first),
      _second(cimClass.second) {}

Association& Association::from(const CIMObjectPath& first) {
    _first.set(first);
    return *this;
}

Association& Association::to(const CIMObjectPath& second) {
    _second.set(second);
    return *this;
}

Association& Association::secondIs(const CIMName& referenceClass) {
    _second.referenceClass = referenceClass;
    return *this;
}

Association& Association::secondPropertyFirst() {
    _secondPropertyFirst = true;
    return *this;
}

CIMObjectPath Association::path() {
    Array<CIMKeyBinding> keys;
    keys.append(_first.asKey());
    keys.append(_second.asKey());
    return CIMObjectPath(_getHostName(), CIMNamespaceName(_nameSpace), _name, keys);
}

CIMInstance Association::instance() const {
    CIMInstance instance(_name);
    instance.addProperty((_secondPropertyFirst ? _second : _first).asProperty());
    instance.addProperty((_secondPropertyFirst ? _first : _second).asProperty());
    return instance;
}

CIMInstance Association::instanceWithPath() {
    CIMInstance withPath = instance();
    withPath.setPath(path());
    return withPath;
}

CIMInstance namedInstance(const AssociationClass& cimClass, const CIMObjectPath& path,
                          NoPath noPath) {
    CIMObjectPath first;
    CIMObjectPath second;
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); ++i) {
        const CString name = plain(keys[i].getName());
        const bool isFirst = ::strcasecmp(name, cimClass.first.name) == 0;
        if (!isFirst && ::strcasecmp(name, cimClass.second.name) != 0)
            continue;
        CIMObjectPath& end = isFirst ? first : second;
        end = pathOrEmpty(keys[i].getValue(), noPath);
        if (!end.getClassName().isNull()) {
            end.setHost(_getHostName());
            end.setNameSpace(path.getNameSpace());
        }
    }
    Association named(cimClass, String());
    if (cimClass.second.referenceClass == nullptr)
        named.secondIs(second.getClassName());
    return named.from(first).to(second).instance();
}

CIMInstance echo(const AssociationClass& cimClass, const CIMObjectPath& path,
                 InstanceResponseHandler& handler, const char* startTrace, const char* exitTrace) {
    trace(startTrace);
    CIMInstance instance = namedInstance(cimClass, path, NoPath::IsAnEmptyEnd);
    instance.setPath(path);
    handler.deliver(instance);
    trace(exitTrace);
    return instance;
}

void deliver(ObjectPathResponseHandler& handler, Association& association) {
    handler.deliver(association.path());
}

void deliver(InstanceResponseHandler& handler, Association& association) {
    handler.deliver(association.instanceWithPath());
}

void deliver(ObjectResponseHandler& handler, Association& association) {
    handler.deliver(CIMObject(association.instanceWithPath()));
}

void deliver(ResponseHandler& handler, bool instances, Association& association) {
    if (instances)
        deliver(dynamic_cast<InstanceResponseHandler&>(handler), association);
    else
        deliver(dynamic_cast<ObjectPathResponseHandler&>(handler), association);
}

} // namespace serverprofile
