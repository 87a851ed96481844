#include "serverobjects/ServerFacts.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/OperationContext.h>

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>

PEGASUS_USING_PEGASUS;

namespace serverobjects {

namespace {

String text(const std::string& utf8) { return String(utf8.c_str()); }

/// What `ask` returns; nothing if the server has no such namespace, class or provider.
template <class Ask>
auto ifThere(Ask ask) -> decltype(ask()) {
    try {
        return ask();
    } catch (const CIMException& error) {
        switch (error.getCode()) {
        case CIM_ERR_INVALID_NAMESPACE:
        case CIM_ERR_INVALID_CLASS:
        case CIM_ERR_NOT_FOUND:
        case CIM_ERR_NOT_SUPPORTED:
            return {};
        default:
            throw;
        }
    }
}

Array<CIMObjectPath> names(CIMOMHandle& cimom, const CIMNamespaceName& nameSpace,
                           const char* className) {
    return ifThere([&] {
        return cimom.enumerateInstanceNames(OperationContext(), nameSpace, CIMName(className));
    });
}

/// The value of a key, empty without it.
String key(const CIMObjectPath& path, const char* name) {
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); ++i)
        if (keys[i].getName().equal(CIMName(name)))
            return keys[i].getValue();
    return String();
}

String stringOf(const CIMInstance& instance, const char* name) {
    const Uint32 position = instance.findProperty(CIMName(name));
    String value;
    if (position != PEG_NOT_FOUND) {
        const CIMValue held = instance.getProperty(position).getValue();
        if (held.getType() == CIMTYPE_STRING && !held.isArray())
            held.get(value);
    }
    return value;
}

/// The server's configuration in force, by name; nothing if the server is not asked.
using Configuration = std::map<String, String>;

Configuration configurationOf(CIMOMHandle& cimom) {
    const Array<CIMInstance> settings = ifThere([&] {
        return cimom.enumerateInstances(OperationContext(), CIMNamespaceName("root/PG_Internal"),
                                        CIMName("PG_ConfigSetting"), true, false, false, false,
                                        CIMPropertyList());
    });
    Configuration values;
    for (Uint32 i = 0; i < settings.size(); ++i)
        values[stringOf(settings[i], "PropertyName")] = stringOf(settings[i], "CurrentValue");
    return values;
}

/// The value in force; `otherwise` where the server has none.
String valueOf(const Configuration& configuration, const char* name, const String& otherwise) {
    const auto found = configuration.find(name);
    return found == configuration.end() || found->second.size() == 0 ? otherwise : found->second;
}

/// A server's access and the settings that speak of it; the ports are those that are registered for
/// the services wbem-http and wbem-https.
struct AccessRow {
    const char* scheme;
    std::string Settings::*address;
    const char* enabled;
    const char* port;
    const char* registeredPort;
};
const std::array<AccessRow, 2> accessRows{{
    {"http", &Settings::httpAddress, "enableHttpConnection", "httpPort", "5988"},
    {"https", &Settings::httpsAddress, "enableHttpsConnection", "httpsPort", "5989"},
}};

std::vector<Access> accesses(const Settings& settings, const Configuration& configuration) {
    std::vector<Access> result;
    for (const AccessRow& row : accessRows) {
        if (configuration.count(row.enabled) == 0) {
            if (!(settings.*row.address).empty())
                result.push_back({row.scheme, text(settings.*row.address)});
        } else if (valueOf(configuration, row.enabled, "") == String("true")) {
            const String host = valueOf(configuration, "fullyQualifiedHostName",
                                        valueOf(configuration, "hostname", ""));
            result.push_back(
                {row.scheme,
                 host + String(":") + valueOf(configuration, row.port, row.registeredPort)});
        }
    }
    return result;
}

// CIM_ObjectManagerCommunicationMechanism.AuthenticationMechanismsSupported.
constexpr std::uint16_t authenticationNone = 2;
constexpr std::uint16_t authenticationBasic = 3;

std::vector<std::uint16_t> authentication(const Settings& settings,
                                          const Configuration& configuration) {
    constexpr const char* enabled = "enableAuthentication";
    if (configuration.count(enabled) == 0)
        return settings.authenticationMechanisms;
    if (valueOf(configuration, enabled, "") != String("true"))
        return {authenticationNone};
    return valueOf(configuration, "httpAuthType", "") == String("Basic")
               ? std::vector<std::uint16_t>{authenticationBasic}
               : settings.authenticationMechanisms;
}

/// `nameSpace` and all below it.
void addBelow(CIMOMHandle& cimom, const String& nameSpace, std::vector<String>& found) {
    const Array<CIMObjectPath> below = names(cimom, CIMNamespaceName(nameSpace), "__Namespace");
    for (Uint32 i = 0; i < below.size(); ++i) {
        const String name = nameSpace + String("/") + key(below[i], "Name");
        found.push_back(name);
        addBelow(cimom, name, found);
    }
}

std::vector<String> nameSpaces(const Settings& settings, CIMOMHandle& cimom) {
    std::vector<String> found;
    if (settings.askServer) {
        addBelow(cimom, "root", found);
        if (!found.empty())
            found.emplace_back("root");
    }
    for (const std::string& nameSpace : settings.nameSpaces) {
        const String name = text(nameSpace);
        if (std::none_of(found.begin(), found.end(),
                         [&](const String& other) { return String::equalNoCase(name, other); }))
            found.push_back(name);
    }
    std::sort(found.begin(), found.end(), [](const String& one, const String& other) {
        return String::compareNoCase(one, other) < 0;
    });
    return found;
}

/// As the machine's resolver has it; empty if it does not know the machine.
String canonicalName() {
    std::array<char, 256> name{};
    // The last byte stays zero: a name that is cut off need not be terminated.
    if (gethostname(name.data(), name.size() - 1) != 0)
        return String();
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_flags = AI_CANONNAME;
    addrinfo* answer = nullptr;
    if (getaddrinfo(name.data(), nullptr, &hints, &answer) != 0)
        return String();
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(answer, &freeaddrinfo);
    return answer->ai_canonname == nullptr ? String() : String(answer->ai_canonname);
}

} // namespace

bool publishesItself(CIMOMHandle& cimom, const CIMNamespaceName& nameSpace) {
    return names(cimom, nameSpace, "PG_ObjectManager").size() != 0;
}

ServerFacts findFacts(const Settings& settings, CIMOMHandle& cimom) {
    ServerFacts facts;
    facts.systemCreationClassName = text(settings.systemCreationClassName);
    facts.systemName = settings.systemName ? text(*settings.systemName) : canonicalName();
    facts.name = settings.name.empty() ? text(settings.elementName) + String(":") + facts.systemName
                                       : text(settings.name);
    if (settings.askServer && !settings.serverNamespace.empty()) {
        const Array<CIMObjectPath> own =
            names(cimom, CIMNamespaceName(text(settings.serverNamespace)), "PG_ObjectManager");
        if (own.size() != 0) {
            facts.systemCreationClassName = key(own[0], "SystemCreationClassName");
            facts.systemName = key(own[0], "SystemName");
            facts.name = key(own[0], "Name");
        }
    }
    const Configuration configuration =
        settings.askServer ? configurationOf(cimom) : Configuration();
    facts.accesses = accesses(settings, configuration);
    facts.authenticationMechanisms = authentication(settings, configuration);
    facts.nameSpaces = nameSpaces(settings, cimom);
    return facts;
}

} // namespace serverobjects
