#include "cimhost/OwnObjects.h"

#include "embedding/Text.h"
#include "http/Message.h"
#include "routing/Router.h"
#include "serverobjects/ServerObjectsProvider.h"

#include <iterator>

namespace embedded::cimhost {
namespace {

using Pegasus::embedding::utf8;

// As in the registration of the same module for other servers.
constexpr const char* moduleName = "ServerObjectsProviderModule";
constexpr const char* providerName = "ServerObjectsProvider";

// Values of CIM_ObjectManagerCommunicationMechanism, CIM schema 2.41.
constexpr std::uint16_t authenticationNone = 2; // AuthenticationMechanismsSupported
constexpr std::uint16_t authenticationBasic = 3;
constexpr std::uint16_t basicRead = 2; // FunctionalProfilesSupported
constexpr std::uint16_t instanceManipulation = 5;
constexpr std::uint16_t associationTraversal = 6;

/// HOST:PORT as clients can use it: where every address is listened on, the host's name.
std::string reachedAt(const std::string& address, std::uint16_t port) {
    const bool isEvery = address == "0.0.0.0" || address == "::";
    return http::authority(isEvery ? utf8(routing::localHostName()) : address, port);
}

} // namespace

void registerOwnObjects(const repository::View& view, routing::Registration& registration) {
    std::vector<Pegasus::CIMName> classNames;
    classNames.reserve(std::size(serverobjects::publishedClasses));
    for (const serverobjects::PublishedClass& published : serverobjects::publishedClasses)
        classNames.emplace_back(published.name);
    registration.addLinked(view, {moduleName, providerName}, providerName, classNames);
}

void linkOwnObjects(const Settings& settings, const repository::View& view,
                    const std::vector<std::uint16_t>& ports, routing::ModuleSettings& modules) {
    serverobjects::Settings own;
    own.askServer = false;
    own.systemCreationClassName = settings.systemClass;
    own.systemName = settings.systemName;
    own.name = "cimhost:" + std::to_string(ports.front());
    own.elementName = "cimhost";
    own.description = "cimhost, version " CIMHOST_VERSION;
    own.functionalProfiles = {basicRead, associationTraversal};
    if (settings.writable)
        own.functionalProfiles = {basicRead, instanceManipulation, associationTraversal};
    own.authenticationMechanisms.clear();
    if (!settings.users || settings.anonymousRead)
        own.authenticationMechanisms.push_back(authenticationNone);
    if (settings.users)
        own.authenticationMechanisms.push_back(authenticationBasic);
    if (settings.withHttp)
        own.httpAddress = reachedAt(settings.address, ports.front());
    if (settings.httpsPort)
        own.httpsAddress = reachedAt(settings.address, ports.back());
    for (const Pegasus::CIMNamespaceName& nameSpace : view.nameSpaces())
        own.nameSpaces.push_back(utf8(nameSpace));
    modules.linked.emplace(providerName, [own](const Pegasus::String&) {
        return new serverobjects::ServerObjectsProvider([own] { return own; });
    });
}

} // namespace embedded::cimhost
