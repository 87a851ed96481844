// The value record behind the switch firmware's software identity: constants.
#pragma once

#include <Pegasus/Common/String.h>

/// Thread-safety: no state.
class OrvexSI {
  public:
    Pegasus::String getInstanceId() const; ///< "OrvexSI1", the key
    Pegasus::String getManu() const;       ///< "Orvex Systems"
    Pegasus::String getVersion() const;    ///< "3.0", a constant, not the running firmware's
    Pegasus::String getName() const;       ///< "Kelmar"
};
