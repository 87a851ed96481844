// The operations of the instance and association provider interfaces: their frame, the checks of
// class and key, and the call of the function that the class's row names.
#include "common/ModuleState.h"
#include "common/ServedClasses.h"
#include "common/Trace.h"

#include <Pegasus/Provider/ProviderException.h>

#include <cstdio>

#include <strings.h>
#include <unistd.h>

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

/// The row of `className`; throws as _checkClass.
const ServedClass& rowOf(const CIMName& className) {
    if (const ServedClass* const served = findClass(plain(className)))
        return *served;
    trace("Quil _checkClass(): failed ");
    throw CIMNotSupportedException(String());
}

/// The key binding that names the object of a request.
struct FoundKey {
    bool accepted = false;
    String value; ///< of the accepted binding, else of the last one that was tried
};

FoundKey findKey(ServerProfileProvider& provider, const CIMObjectPath& path,
                 const char* className) {
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    FoundKey found;
    for (Uint32 i = 0; i < keys.size() && !found.accepted; ++i) {
        found.value = keys[i].getValue();
        found.accepted = provider._checkKey(className, plain(keys[i].getName())) != 0;
    }
    return found;
}

void requireKey(const FoundKey& key) {
    if (key.accepted)
        return;
    // All operations that need a key write this text, also those that are no getInstance.
    std::fputs("getInstance can't find key\n", stdout);
    std::fflush(stdout);
    throw CIMInvalidParameterException(String(" invalid key name"));
}

} // namespace

bool ServerProfileProvider::_checkClass(CIMName& className) {
    rowOf(className);
    return true;
}

int ServerProfileProvider::_checkKey(const char* className, const char* keyName) {
    // These lines go through stdio and have their own form.
    std::fprintf(stdout, "ServerProfileProvider: checking key name %s -- %s \n", className,
                 keyName);
    std::fflush(stdout);
    const ServedClass* const served = findClass(className);
    if (served != nullptr && (served->key == nullptr || ::strcasecmp(keyName, served->key) == 0))
        return 1;
    // "Serverprofile", and the tab: on purpose.
    std::fprintf(stdout, "\tServerprofileProvider: FAIL check key name %s -- %s \n", className,
                 keyName);
    std::fflush(stdout);
    return 0;
}

template <class Work>
void ServerProfileProvider::serve(const char* name, Handler& handler, Work work) {
    const auto traceFlag = [&](const char* stage) {
        trace("Quil ", name, "(): ", stage, _initInProgress.load());
    };

    traceFlag("Start BEFoRE MUTEX _initInProgress ");
    ModuleLock lock;
    try {
        traceFlag("Start AFTER MUTEX _initInProgress ");
        while (_initInProgress != 0) {
            trace("Quil - enum Test waiting init is ", _initInProgress.load());
            ::sleep(1);
        }
        traceFlag("Start _initInProgress ");
        if (!initFlag)
            initData();
        work();
        handler.complete();
    } catch (const Exception& exception) {
        lock.release();
        trace("Quil ", name, "(): ", "Exception - ", exception.getMessage());
    }
}

template <class ItemHandler, class Row, class Function>
void ServerProfileProvider::enumerate(const char* name, const CIMObjectPath& classReference,
                                      ItemHandler& handler, Function Row::*function) {
    serve(
        name, handler,
        [&] {
            const Row& row = rowOf(classReference.getClassName());
            if (row.*function != nullptr)
                (row.*function)(*this, row.name, handler,
                                classReference.getNameSpace().getString());
        });
}

void ServerProfileProvider::enumerateInstanceNames(const OperationContext&,
                                                   const CIMObjectPath& classReference,
                                                   PathHandler& handler) {
    trace("Quil enumerateInstanceNames(): className is ", classReference.getClassName());
    enumerate("enumerateInstanceNames", classReference, handler, &ServedClass::enumerateNames);
}

void ServerProfileProvider::enumerateInstances(const OperationContext&,
                                               const CIMObjectPath& classReference, const Boolean,
                                               const Boolean, const CIMPropertyList&,
                                               InstanceHandler& handler) {
    trace("Quil enumerateInstances(): Start ", classReference.getClassName());
    enumerate("enumerateInstances", classReference, handler, &ServedClass::enumerateInstances);
}

void ServerProfileProvider::getInstance(const OperationContext&,
                                        const CIMObjectPath& instanceReference, const Boolean,
                                        const Boolean, const CIMPropertyList&,
                                        InstanceHandler& handler) {
    trace("Quil getInstance() Start: className ", instanceReference.getClassName());
    serve("getInstance", handler, [&] {
        const CIMName className = instanceReference.getClassName();
        const ServedClass& row = rowOf(className);
        const FoundKey key = findKey(*this, instanceReference, plain(className));
        trace(className, " keyvalue ", key.value);
        requireKey(key);
        if (row.getInstance != nullptr)
            row.getInstance(*this, instanceReference, key.value, handler);
    });
}

void ServerProfileProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                           const CIMInstance&, PathHandler&) {
    throw CIMNotSupportedException(String());
}

void ServerProfileProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                           const CIMInstance&, const Boolean,
                                           const CIMPropertyList&, Handler&) {
    throw CIMNotSupportedException(String());
}

void ServerProfileProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                           Handler&) {
    throw CIMNotSupportedException(String());
}

template <class Request, class ItemHandler, class Row, class Function>
void ServerProfileProvider::traverse(const char* name, Request request, ItemHandler& handler,
                                     Function Row::*function, const char* flagTrace) {
    trace("Quil ", name, "(): Start ", request.source.getClassName());
    serve(name, handler, [&] {
        if (flagTrace != nullptr)
            trace(flagTrace, initFlag);
        const CIMName className = request.source.getClassName();
        trace("Quil ", name, "(): className ", className);
        const Row& row = rowOf(className);
        trace("Quil ", name, "(): keys.size is: ", request.source.getKeyBindings().size());
        const FoundKey key = findKey(*this, request.source, plain(className));
        requireKey(key);
        request.keyValue = key.value;
        if (row.*function != nullptr)
            (row.*function)(*this, request, handler);
    });
}

void ServerProfileProvider::associatorNames(const OperationContext&,
                                            const CIMObjectPath& objectName,
                                            const CIMName& associationClass,
                                            const CIMName& resultClass, const String& role,
                                            const String& resultRole, PathHandler& handler) {
    traverse("associatorNames",
             AssociationRequest{objectName, plain(associationClass), plain(resultClass),
                                plain(role), plain(resultRole)},
             handler, &ServedClass::associatorNames);
}

void ServerProfileProvider::associators(const OperationContext&, const CIMObjectPath& objectName,
                                        const CIMName& associationClass, const CIMName& resultClass,
                                        const String& role, const String& resultRole,
                                        const Boolean includeQualifiers,
                                        const Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList,
                                        ObjectHandler& handler) {
    traverse("associators",
             AssociationRequest{objectName, plain(associationClass), plain(resultClass),
                                plain(role), plain(resultRole), includeQualifiers,
                                includeClassOrigin, propertyList},
             handler, &ServedClass::associators, "Quil - associators() initFlag is ");
}

void ServerProfileProvider::referenceNames(const OperationContext&, const CIMObjectPath& objectName,
                                           const CIMName& resultClass, const String& role,
                                           PathHandler& handler) {
    traverse("referenceNames",
             AssociationRequest{objectName, plain(String()), plain(resultClass), plain(role),
                                plain(String())},
             handler, &ServedClass::referenceNames);
}

void ServerProfileProvider::references(const OperationContext&, const CIMObjectPath& objectName,
                                       const CIMName& resultClass, const String& role,
                                       const Boolean includeQualifiers,
                                       const Boolean includeClassOrigin,
                                       const CIMPropertyList& propertyList,
                                       ObjectHandler& handler) {
    traverse("references",
             AssociationRequest{objectName, plain(String()), plain(resultClass), plain(role),
                                plain(String()), includeQualifiers, includeClassOrigin,
                                propertyList},
             handler, &ServedClass::references);
}
