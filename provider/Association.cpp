#include "provider/Association.h"

#include "provider/ModuleState.h"

#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMProperty.h>

PEGASUS_USING_PEGASUS;

namespace serverprofile {

namespace {

CIMName classOf(const ReferenceRole& role) {
    return role.referenceClass != nullptr ? CIMName(role.referenceClass) : CIMName();
}

CIMProperty referenceProperty(const ReferenceRole& role, const CIMName& referenceClass,
                              const CIMObjectPath& end) {
    const Uint32 noArray = 0;
    return CIMProperty(CIMName(role.name), CIMValue(end), noArray, referenceClass);
}

CIMKeyBinding referenceKey(const ReferenceRole& role, const CIMObjectPath& end) {
    if (end.getClassName().isNull()) {
        return CIMKeyBinding(CIMName(role.name), String(), CIMKeyBinding::STRING);
    }
    return CIMKeyBinding(CIMName(role.name), CIMValue(end));
}

CIMObjectPath pathOrEmpty(const String& text, NoPath noPath) {
    try {
        return CIMObjectPath(text);
    } catch (const Exception&) {
        if (noPath == NoPath::IsAnError) {
            throw;
        }
        return CIMObjectPath();
    }
}

} // namespace

Association::Association(const AssociationClass& cimClass, const CIMObjectPath& first,
                         const CIMObjectPath& second)
    : _class(cimClass), _first(first), _second(second), _secondClass(classOf(cimClass.second)) {
}

Association& Association::secondIs(const CIMName& referenceClass) {
    _secondClass = referenceClass;
    return *this;
}

Association& Association::secondPropertyFirst() {
    _secondPropertyFirst = true;
    return *this;
}

CIMObjectPath Association::path(const String& nameSpace) const {
    Array<CIMKeyBinding> keys;
    keys.append(referenceKey(_class.first, _first));
    keys.append(referenceKey(_class.second, _second));
    return CIMObjectPath(_getHostName(), CIMNamespaceName(nameSpace), CIMName(_class.name), keys);
}

CIMInstance Association::instance() const {
    const CIMProperty first = referenceProperty(_class.first, classOf(_class.first), _first);
    const CIMProperty second = referenceProperty(_class.second, _secondClass, _second);
    CIMInstance instance{CIMName(_class.name)};
    instance.addProperty(_secondPropertyFirst ? second : first);
    instance.addProperty(_secondPropertyFirst ? first : second);
    return instance;
}

CIMInstance Association::instance(const String& nameSpace) const {
    CIMInstance withPath = instance();
    withPath.setPath(path(nameSpace));
    return withPath;
}

Association namedAssociation(const AssociationClass& cimClass, const CIMObjectPath& path,
                             NoPath noPath) {
    CIMObjectPath first;
    CIMObjectPath second;
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); ++i) {
        const CIMName name = keys[i].getName();
        const bool isFirst = name == cimClass.first.name;
        if (!isFirst && name != cimClass.second.name) {
            continue;
        }
        CIMObjectPath& end = isFirst ? first : second;
        end = pathOrEmpty(keys[i].getValue(), noPath);
        if (!end.getClassName().isNull()) {
            end.setHost(_getHostName());
            end.setNameSpace(path.getNameSpace());
        }
    }
    return Association(cimClass, first, second);
}

void deliver(ObjectPathResponseHandler& handler, const Association& association,
             const String& nameSpace) {
    handler.deliver(association.path(nameSpace));
}

void deliver(InstanceResponseHandler& handler, const Association& association,
             const String& nameSpace) {
    handler.deliver(association.instance(nameSpace));
}

void deliver(ObjectResponseHandler& handler, const Association& association,
             const String& nameSpace) {
    handler.deliver(CIMObject(association.instance(nameSpace)));
}

void deliver(ResponseHandler& handler, bool instances, const Association& association,
             const String& nameSpace) {
    if (instances) {
        deliver(dynamic_cast<InstanceResponseHandler&>(handler), association, nameSpace);
    } else {
        deliver(dynamic_cast<ObjectPathResponseHandler&>(handler), association, nameSpace);
    }
}

} // namespace serverprofile
