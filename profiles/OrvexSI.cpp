#include "profiles/OrvexSI.h"

PEGASUS_USING_PEGASUS;

String OrvexSI::getInstanceId() const {
    return String("OrvexSI1");
}

String OrvexSI::getManu() const {
    return String("Orvex Systems");
}

String OrvexSI::getVersion() const {
    return String("3.0");
}

String OrvexSI::getName() const {
    return String("Kelmar");
}
