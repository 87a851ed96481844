// A module's registration.
#pragma once

#include "register/Mof.h"

#include <string>
#include <vector>

namespace registering {

/// A module's registration: PG_ProviderModule, PG_Provider and PG_ProviderCapabilities instances.
class Registration {
  public:
    Registration() = default;
    explicit Registration(std::vector<Instance> instances) : _instances(std::move(instances)) {}

    const std::vector<Instance>& instances() const { return _instances; }
    bool empty() const { return _instances.empty(); }

    std::vector<Instance> capabilities() const;
    /// The module's name.
    std::string module() const;
    /// The name of its provider.
    std::string provider() const;
    /// The file name of its library.
    std::string library() const;
    /// Each namespace that a capability names, once. Skips texts that are no namespace names.
    std::vector<std::string> nameSpaces() const;
    /// The same registration for other namespaces.
    Registration servingIn(const std::vector<std::string>& nameSpaces) const;

  private:
    std::vector<Instance> _instances;
};

/// A difference between a registration that was found and the one that is wanted.
struct Difference {
    std::string capability; ///< the class of the capability; "" for the module or the provider
    std::string text;
};

/// The differences of `found` from `wanted`; empty if there are none. Properties that `wanted` does
/// not have, such as the state of the module, are not compared, nor is the order of an array's
/// items.
std::vector<Difference> differences(const Registration& wanted, const Registration& found);

/// Whether the capability is for instances alone (no association).
bool forInstancesAlone(const Instance& capability);

/// What a capability is called in messages: its class.
std::string capabilityName(const Instance& capability);

} // namespace registering
