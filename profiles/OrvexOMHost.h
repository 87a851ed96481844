// The value record behind the host of the object manager.
#pragma once

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/String.h>

/// The record has no state of its own: the host name and the name-format flag belong to the class,
/// so every object, temporaries included, reports what the last name-setting constructor stored.
/// The getters that fill a CIMProperty replace whatever it held and always return true; the host
/// instance uses only that result.
///
/// Thread-safety: the two values are written while the module mutex is held, and only read after.
class OrvexOMHost {
  public:
    OrvexOMHost() = default;
    /// Ignores its argument.
    explicit OrvexOMHost(Pegasus::String name);
    /// Stores `name` for the class, cut to 255 bytes; the flag stays as it is.
    explicit OrvexOMHost(char* name);
    /// Stores `name` as above, and `flag`: 0 for a resolved name, else not resolved.
    OrvexOMHost(char* name, int flag);
    OrvexOMHost(const OrvexOMHost&) = default;
    OrvexOMHost& operator=(const OrvexOMHost&) = default;
    /// Traces, and touches nothing.
    ~OrvexOMHost();

    /// Does nothing.
    void initialize();

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
