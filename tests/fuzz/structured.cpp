// Operations made of choices, through the router into the modules, which read back what the sample
// switch publishes. Each is answered or refused as a client may see it, names and objects agree,
// and the next operation is answered as ever.
#include "fuzz/Fuzz.h"

#include "mof/Mof.h"
#include "repository/Repository.h"
#include "routing/ProviderHandle.h"
#include "routing/Router.h"
#include "serverobjects/ServerObjectsProvider.h"

#include <Pegasus/Common/CIMProperty.h>
#include <embedding/Text.h>
#include <embedding/XmlWriter.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace embedded::routing;
using namespace Pegasus;
using embedded::repository::Repository;
using embedded::repository::View;
using embedding::utf8;
using fuzz::Choices;
using fuzz::require;
namespace mof = embedded::mof;

const std::vector<std::string> nameSpaces = {"interop", "root/cimv2", "root/PG_InterOp"};

mof::Specification read(const std::string& file) {
    return mof::readFile(SOURCE_DIRECTORY "/" + file, {SOURCE_DIRECTORY "/schema"});
}

void load(Repository& repository) {
    for (const char* file :
         {"schema/cim_schema.mof", "schema/pg_server.mof", "schema/orvex_switch.mof",
          "schema/orvex_serverprofile.mof", "samples/sample_switch.mof"}) {
        const mof::Specification declarations = read(file);
        for (const std::string& nameSpace : nameSpaces)
            repository.load(declarations, CIMNamespaceName(nameSpace.c_str()));
    }
    for (const char* file : {"schema/pg_registration.mof", "schema/serverprofile_registration.mof"})
        repository.load(read(file), CIMNamespaceName("root/PG_InterOp"));
}

constexpr const char* ownObjects = "OwnObjects"; // the server's, a module that is part of it

Registration registrationIn(const View& view) {
    Registration made(view, CIMNamespaceName("root/PG_InterOp"));
    std::vector<CIMName> classNames;
    for (const serverobjects::PublishedClass& published : serverobjects::publishedClasses)
        classNames.emplace_back(published.name);
    made.addLinked(view, {ownObjects, ownObjects}, ownObjects, classNames);
    return made;
}

ModuleSettings moduleSettings() {
    serverobjects::Settings own;
    own.askServer = false;
    own.systemCreationClassName = "ORVEX_ObjectManagerHost";
    own.systemName = "switch";
    own.name = "fuzz";
    own.httpAddress = "switch:5988";
    own.nameSpaces = nameSpaces;
    ModuleSettings settings;
    settings.directories = {MODULE_DIRECTORY};
    settings.keepLibraries = true;
    settings.linked.emplace(ownObjects, [own](const String&) {
        return new serverobjects::ServerObjectsProvider([own] { return own; });
    });
    return settings;
}

/// What cimhost serves with the sample switch.
struct Server {
    Server() {
        // The modules' traces are for people.
        require(std::freopen("/dev/null", "w", stdout) != nullptr, "there is a /dev/null");
    }

    Repository repository;
    ProviderModules modules{(load(repository), registrationIn(repository.view())),
                            moduleSettings()};
    Router router{repository, modules, "switch"};
    const ProviderHandles handles{router};
};

constexpr int answered = 0; // no status of CIM

struct Outcome {
    int status = answered;
    std::vector<Answered> things;
};

Outcome outcomeOf(const Operation& operation, Server& server) {
    Outcome outcome;
    try {
        const Answer answer = server.router.perform(operation);
        for (Answered thing; answer.next && answer.next(thing);)
            outcome.things.push_back(thing);
    } catch (const CIMException& error) {
        outcome.status = static_cast<int>(error.getCode());
        require(outcome.status > 0 && outcome.status <= 28, "an error has a status of CIM",
                utf8(error.getMessage()));
    }
    return outcome;
}

// What there is to choose from.
struct Known {
    std::vector<CIMName> classNames;
    std::vector<CIMName> propertyNames; // those of references are roles
    std::vector<CIMObjectPath> paths;
};

Known knownOf(Server& server) {
    Known known;
    const CIMNamespaceName home("interop");
    const View view = server.repository.view();
    known.classNames = view.subClassNames(home, CIMName(), true);
    for (const CIMName& className : known.classNames) {
        const CIMClass cimClass = view.getClass(home, className);
        for (Uint32 i = 0; i < cimClass.getPropertyCount(); ++i)
            if (cimClass.getProperty(i).getClassOrigin().equal(className))
                known.propertyNames.push_back(cimClass.getProperty(i).getName());
        if (view.superClassNames(home, className).empty()) {
            Operation operation;
            operation.kind = OperationKind::EnumerateInstanceNames;
            operation.nameSpace = home;
            operation.className = className;
            for (const Answered& thing : outcomeOf(operation, server).things)
                known.paths.push_back(std::get<CIMObjectPath>(thing));
        }
    }
    require(known.paths.size() > 20, "the modules and the sample publish objects");
    return known;
}

/// Any characters, lone surrogates among them.
String anyText(Choices& choices) {
    String text;
    for (const char byte : choices.text()) {
        const auto unit = static_cast<unsigned char>(byte);
        text.append(Char16(static_cast<Uint16>(unit == 0xFF ? 0xD800 : unit)));
    }
    return text;
}

class Maker {
  public:
    Maker(Choices& choices, const Known& known) : _choices(choices), _known(known) {}

    Operation operation() {
        Operation made;
        made.kind = static_cast<OperationKind>(
            _choices.below(static_cast<std::size_t>(OperationKind::EnumerateQualifiers) + 1));
        made.nameSpace = nameSpace();
        made.className = className();
        made.objectName = path();
        made.assocClass = className();
        made.resultClass = className();
        made.role = role();
        made.resultRole = role();
        const std::uint8_t flags = _choices.byte();
        made.localOnly = (flags & 1U) != 0;
        made.deepInheritance = (flags & 2U) != 0;
        made.includeQualifiers = (flags & 4U) != 0;
        made.includeClassOrigin = (flags & 8U) != 0;
        made.caller.userName = (flags & 16U) != 0 ? anyText(_choices) : String();
        made.propertyList = propertyList();
        made.memberName = _choices.of(_known.propertyNames);
        if (made.kind == OperationKind::CreateInstance ||
            made.kind == OperationKind::ModifyInstance)
            made.instance = instance(made.objectName);
        return made;
    }

  private:
    CIMNamespaceName nameSpace() {
        static const std::vector<std::string> more = {"interop", "root/cimv2", "root/PG_InterOp",
                                                      "ROOT/CIMV2", "root/none"};
        return CIMNamespaceName(_choices.of(more).c_str());
    }

    // One of all, none, or one that does not exist.
    CIMName className() {
        const std::size_t chosen = _choices.below(_known.classNames.size() + 2);
        if (chosen == 0)
            return CIMName();
        return chosen == 1 ? CIMName("CIM_Nowhere") : _known.classNames[chosen - 2];
    }

    String role() {
        switch (_choices.below(3)) {
        case 0:
            return String();
        case 1:
            return _choices.of(_known.propertyNames).getString();
        default:
            return anyText(_choices);
        }
    }

    CIMPropertyList propertyList() {
        const std::size_t count = _choices.below(8);
        if (count == 0)
            return CIMPropertyList();
        Array<CIMName> names;
        for (std::size_t i = 1; i < count; ++i)
            names.append(_choices.of(_known.propertyNames));
        return CIMPropertyList(names);
    }

    CIMKeyBinding key() {
        return CIMKeyBinding(_choices.of(_known.propertyNames), anyText(_choices),
                             static_cast<CIMKeyBinding::Type>(_choices.below(3)));
    }

    // The path of an object, or something like it.
    CIMObjectPath path() {
        CIMObjectPath made = _choices.of(_known.paths);
        Array<CIMKeyBinding> keys;
        for (Uint32 i = 0; i < made.getKeyBindings().size(); ++i)
            keys.append(CIMKeyBinding(made.getKeyBindings()[i]));
        for (std::size_t changes = _choices.below(4); changes != 0; --changes) {
            const auto at = static_cast<Uint32>(keys.size() ? _choices.below(keys.size()) : 0);
            switch (_choices.below(8)) {
            case 0:
                made.setNameSpace(nameSpace());
                break;
            case 1:
                made.setClassName(_choices.of(_known.classNames));
                break;
            case 2:
                made.setHost(_choices.flag() ? "elsewhere:5988" : "");
                break;
            case 3:
                keys.clear();
                break;
            case 4:
                keys.append(key());
                break;
            case 5:
                if (keys.size() != 0)
                    keys.remove(at);
                break;
            case 6:
                if (keys.size() != 0 && keys[at].getType() != CIMKeyBinding::REFERENCE)
                    keys[at].setValue(anyText(_choices));
                break;
            default: {
                const CIMObjectPath& other = _choices.of(_known.paths);
                keys.append(CIMKeyBinding(_choices.of(_known.propertyNames), other.toString(),
                                          CIMKeyBinding::REFERENCE));
            }
            }
        }
        made.setKeyBindings(keys);
        return made;
    }

    CIMInstance instance(const CIMObjectPath& path) {
        CIMInstance made(path.getClassName());
        for (std::size_t count = _choices.below(8); count != 0; --count) {
            const CIMName& name = _choices.of(_known.propertyNames);
            if (made.findProperty(name) != PEG_NOT_FOUND)
                continue;
            switch (_choices.below(3)) {
            case 0:
                made.addProperty(CIMProperty(name, CIMValue(anyText(_choices))));
                break;
            case 1:
                made.addProperty(CIMProperty(name, CIMValue(Uint16(_choices.byte()))));
                break;
            default:
                made.addProperty(CIMProperty(name, CIMValue(_choices.of(_known.paths))));
            }
        }
        made.setPath(path);
        return made;
    }

    Choices& _choices;
    const Known& _known;
};

// Class and keys of what names or objects answer with; where it is, is said in several ways.
std::string placeless(const Answered& thing) {
    CIMObjectPath path;
    if (const auto* named = std::get_if<CIMObjectPath>(&thing))
        path = *named;
    else if (const auto* instance = std::get_if<CIMInstance>(&thing))
        path = instance->getPath();
    else if (const auto* object = std::get_if<CIMObject>(&thing))
        path = object->getPath();
    path.setHost(String());
    path.setNameSpace(CIMNamespaceName());
    return utf8(path.toString());
}

std::string listed(const Outcome& outcome) {
    std::string lines = outcome.status == answered ? "" : std::to_string(outcome.status);
    for (const Answered& thing : outcome.things)
        lines += placeless(thing) + "\n";
    return lines;
}

std::string described(const Operation& operation) {
    return std::string(embedding::operationName(operation.kind)) + " in " +
           utf8(operation.nameSpace.getString()) + " of " + utf8(operation.className) + ", " +
           utf8(operation.objectName.toString()) + ", by " + utf8(operation.assocClass) + " to " +
           utf8(operation.resultClass) + ", " + utf8(operation.role) + " to " +
           utf8(operation.resultRole);
}

std::optional<OperationKind> namesOf(OperationKind kind) {
    switch (kind) {
    case OperationKind::EnumerateInstances:
        return OperationKind::EnumerateInstanceNames;
    case OperationKind::Associators:
        return OperationKind::AssociatorNames;
    case OperationKind::References:
        return OperationKind::ReferenceNames;
    default:
        return std::nullopt;
    }
}

void checkThing(const Answered& thing, const Operation& operation) {
    std::string xml;
    const embedding::InstanceFilter filter{operation.includeQualifiers,
                                           operation.includeClassOrigin, operation.propertyList};
    if (const auto* path = std::get_if<CIMObjectPath>(&thing))
        embedding::appendInstancePath(xml, *path);
    else if (const auto* instance = std::get_if<CIMInstance>(&thing))
        embedding::appendInstance(xml, *instance, filter);
    else if (const auto* object = std::get_if<CIMObject>(&thing))
        embedding::appendObject(xml, *object, filter);
    else if (const auto* cimClass = std::get_if<CIMClass>(&thing))
        embedding::appendClass(xml, *cimClass);
    else
        return;
    require(fuzz::isWellFormed(xml), "what is answered is written as XML", xml);
}

// REQUIRES: `names` are the answer to `operation`, an EnumerateInstanceNames.
void checkNamed(const Operation& operation, const Outcome& names, Server& server) {
    for (const Answered& name : names.things) {
        Operation get;
        get.kind = OperationKind::GetInstance;
        get.nameSpace = operation.nameSpace;
        get.objectName = std::get<CIMObjectPath>(name);
        require(outcomeOf(get, server).status == answered, "what is named can be got",
                described(get));
    }
}

void check(const Operation& operation, Server& server) {
    const Outcome outcome = outcomeOf(operation, server);
    for (const Answered& thing : outcome.things)
        checkThing(thing, operation);
    if (operation.kind == OperationKind::EnumerateInstanceNames)
        checkNamed(operation, outcome, server);
    if (const std::optional<OperationKind> names = namesOf(operation.kind)) {
        Operation other = operation;
        other.kind = *names;
        const std::string named = listed(outcomeOf(other, server));
        require(named == listed(outcome), "names and objects agree",
                described(operation) + "\n" + listed(outcome) + "but names:\n" + named);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Server server;
    static const Known known = knownOf(server);
    static const Operation good = [] {
        Operation operation;
        operation.kind = OperationKind::EnumerateInstances;
        operation.nameSpace = CIMNamespaceName("interop");
        operation.className = CIMName("CIM_RegisteredProfile");
        return operation;
    }();
    static const std::string goodOutcome = listed(outcomeOf(good, server));
    const std::string bytes(data, data + size);
    std::optional<Operation> operation;
    try {
        Choices choices{bytes};
        operation = Maker(choices, known).operation();
    } catch (const MalformedObjectNameException&) {
        return 0; // there is no such path
    }
    check(*operation, server);
    require(listed(outcomeOf(good, server)) == goodOutcome,
            "the next operation is answered as ever");
    return 0;
}
