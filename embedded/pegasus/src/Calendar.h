// The proleptic Gregorian calendar of the years 0 to 9999, in days since the year 0 began.
#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus::calendar {

struct Date {
    Uint32 year;
    Uint32 month; // from 1
    Uint32 day;   // from 1
};

Uint32 daysInMonth(Uint32 year, Uint32 month);
Uint64 daysSinceYear0(const Date& date);
Date dateOf(Uint64 daysSinceYear0);

} // namespace Pegasus::calendar
