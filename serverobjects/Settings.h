// What an administrator, or the program that this room is linked into, says of the CIM server.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace serverobjects {

/// Where the server says the same of itself, the server is believed. What neither says is not
/// claimed: it stays out of the objects, or has the value that the schema has for "unknown".
/// All texts are UTF-8. Thread-safety: a plain value.
struct Settings {
    /// Whether the server is asked for its ports, namespaces and its own object manager.
    bool askServer = true;
    /// The namespace in which the server may publish an object manager of its own; empty: none.
    std::string serverNamespace;

    std::string systemCreationClassName = "CIM_ComputerSystem";
    /// None: the canonical name of this machine, empty where its resolver does not know it.
    std::optional<std::string> systemName;
    /// The object manager's Name; empty: its element name and the system's name.
    std::string name;
    std::string elementName = "CIM server";
    /// Clients look for "version X.Y" in it. Empty: the element name.
    std::string description;

    /// CIM_ObjectManagerCommunicationMechanism.FunctionalProfilesSupported. 2 and 6, Basic Read and
    /// Association Traversal, are what a server needs to publish these objects and lead to them.
    std::vector<std::uint16_t> functionalProfiles{2, 6};
    /// CIM_ObjectManagerCommunicationMechanism.AuthenticationMechanismsSupported: 0 is unknown.
    std::vector<std::uint16_t> authenticationMechanisms{0};
    /// HOST:PORT of each access; empty: there is none.
    std::string httpAddress;
    std::string httpsAddress;
    /// Namespaces that the server's own list does not have.
    std::vector<std::string> nameSpaces;
};

/// Reads lines "Key = value"; empty lines and lines that begin with # are passed over. Each member
/// but askServer has a key: ServerNamespace, SystemCreationClassName, SystemName, Name,
/// ElementName, Description, FunctionalProfilesSupported, AuthenticationMechanismsSupported,
/// HttpAddress, HttpsAddress, Namespaces; the items of a list are separated by commas. Throws
/// std::runtime_error "origin:line: ..." where a line is none of these.
Settings readSettings(std::istream& text, const std::string& origin);

/// The settings of the provider of that name: those of the file NAME.conf in the directory that was
/// chosen when this was built (SERVEROBJECTS_SETTINGS_DIR), the defaults if there is no such file.
/// Throws std::runtime_error if it cannot be read, or the name cannot be that of a file.
Settings settingsOf(const std::string& providerName);

} // namespace serverobjects
