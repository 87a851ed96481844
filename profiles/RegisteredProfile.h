// The value record behind one entry of the profile catalogue: what differs between the entries.
#pragma once

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/String.h>

/// Names a profile by its InstanceID and its RegisteredName. The getters that fill a CIMProperty
/// replace whatever it held, name included, and always return true.
///
/// Their CIM types, and the value of AdvertiseTypes, differ from those of the catalogue's
/// instances on purpose: the catalogue sets these values itself.
class RegisteredProfile {
  public:
    RegisteredProfile() = default;
    /// The key comes first, although it is the second field.
    RegisteredProfile(Pegasus::String instanceId, Pegasus::String registeredName);

    /// Does nothing; there for symmetry with the other records.
    void initialize();
    void setRegisteredName(Pegasus::String name);

    Pegasus::String getInstanceId() const;
    Pegasus::String getRegisteredName() const;

    bool getInstanceId(Pegasus::CIMProperty& property) const;                  ///< string
    bool getRegisteredName(Pegasus::CIMProperty& property) const;              ///< string
    bool getRegisteredVersion(Pegasus::CIMProperty& property) const;           ///< string "1.1.0"
    bool getOtherRegisteredOrganization(Pegasus::CIMProperty& property) const; ///< string ""
    bool getRegisteredOrganization(Pegasus::CIMProperty& property) const;      ///< sint32 11
    bool getAdvertiseTypes(Pegasus::CIMProperty& property) const;              ///< sint32 0
    bool getAdvertiseTypeDescriptions(Pegasus::CIMProperty& property) const;   ///< sint32 0

    Pegasus::String registeredName; ///< "RegisteredName", for example "Fabric"
    Pegasus::String instanceId;     ///< the key "InstanceID", for example "Orvex1"
};
