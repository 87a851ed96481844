// The value records behind the module's own objects.
//
// A getter that fills a CIMProperty replaces whatever it held, name included, with no array size,
// reference class or class of origin, not propagated. It always returns true.
#pragma once

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/String.h>

/// One entry of the profile catalogue: what differs between the entries.
///
/// The types of the properties differ from those of the catalogue's instances: on purpose.
class RegisteredProfile {
  public:
    RegisteredProfile() = default;
    /// The key comes first, although it is the second field.
    RegisteredProfile(Pegasus::String instanceId, Pegasus::String registeredName);

    /// Does nothing; there for symmetry with the other records.
    void initialize() {}
    void setRegisteredName(Pegasus::String name) { registeredName = name; }

    Pegasus::String getInstanceId() const { return instanceId; }
    Pegasus::String getRegisteredName() const { return registeredName; }

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

/// The host of the object manager. The host name and the name-format flag belong to the class:
/// every object, temporaries included, reports what the last name-setting constructor stored. The
/// host instance uses only the results of the getters that fill a CIMProperty.
///
/// Thread-safety: the two values are written while the module mutex is held, and only read after.
class OrvexOMHost {
  public:
    OrvexOMHost() = default;
    /// Ignores its argument.
    explicit OrvexOMHost(Pegasus::String) {}
    /// Stores `name` for the class, cut to 255 bytes; the flag stays as it is.
    explicit OrvexOMHost(char* name);
    /// Stores `name` as above, and `flag`: 0 for a resolved name, else not resolved.
    OrvexOMHost(char* name, int flag);
    OrvexOMHost(const OrvexOMHost&) = default;
    OrvexOMHost& operator=(const OrvexOMHost&) = default;
    /// Traces, and touches nothing.
    ~OrvexOMHost();

    /// Does nothing.
    void initialize() {}

    // The values belong to the class, and asking for them makes no temporary (which would trace).
    static Pegasus::String getCreationClassName(); ///< "ORVEX_ObjectManagerHost"
    static Pegasus::String getName();              ///< the host name; empty until one was stored
    static Pegasus::String getNameFormat();        ///< "Other" for flag 0, else "IP"

    bool getCreationClassName(Pegasus::CIMProperty& property) const;
    bool getName(Pegasus::CIMProperty& property) const;
    bool getNameFormat(Pegasus::CIMProperty& property) const;
    bool getElementName(Pegasus::CIMProperty& property) const;       ///< string ""
    bool getDescription(Pegasus::CIMProperty& property) const;       ///< string ""
    bool getOperationalStatus(Pegasus::CIMProperty& property) const; ///< boolean TRUE
};

/// The software identity of the switch's firmware: constants. Thread-safety: no state.
class OrvexSI {
  public:
    Pegasus::String getInstanceId() const { return "OrvexSI1"; } ///< the key
    Pegasus::String getManu() const { return "Orvex Systems"; }
    Pegasus::String getVersion() const { return "3.0"; } ///< not that of the running firmware
    Pegasus::String getName() const { return "Kelmar"; }
};
