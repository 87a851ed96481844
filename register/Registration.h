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
    /// Each namespace that a capability names, once. What cannot be one is passed over.
    std::vector<std::string> nameSpaces() const;
    /// The same registration for other namespaces.
    Registration servingIn(const std::vector<std::string>& nameSpaces) const;

  private:
    std::vector<Instance> _instances;
};

/// In what a registration is not what it should be.
struct Difference {
    std::string capability; ///< the class of the capability; "" for the module or the provider
    std::string text;
};

/// In what a registration that was found is not what it should be; empty if it is. Properties that
/// `wanted` does not speak of, such as the state of the module, do not count; namespaces and the
/// items of other arrays count in any order.
std::vector<Difference> differences(const Registration& wanted, const Registration& found);

/// Whether the capability is for instances alone (no association).
bool forInstancesAlone(const Instance& capability);

/// What a capability is called in messages: its class.
std::string capabilityName(const Instance& capability);

} // namespace registering
