// The fields that a datetime is written in, and the microseconds they say.
#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus::datetime {

constexpr Uint64 perSecond = 1000000;
constexpr Uint64 perMinute = 60 * perSecond;
constexpr Uint64 perHour = 60 * perMinute;
constexpr Uint64 perDay = 24 * perHour;

constexpr Uint64 intervalLimit = 100000000 * perDay; // eight digits of days
constexpr Uint64 timestampLimit = 3652425 * perDay;  // the year 10000

// Asterisks are counted over the 20 digits of either form, from the right: any number of
// microsecond digits, then whole fields.
constexpr Uint16 allDigits = 20;
constexpr Uint16 microsecondDigits = 6;
constexpr Uint16 toSeconds = 8;
constexpr Uint16 toMinutes = 10;
constexpr Uint16 toHours = 12;
constexpr Uint16 toMonth = 16;

/// Throws DateTimeOutOfRangeException.
[[noreturn]] void outOfRange(const char* reason);

/// The fields of either form as numbers. Days stand in `day` of an interval.
struct Fields {
    Uint32 year = 0;
    Uint32 month = 1;
    Uint32 day = 0;
    Uint32 hours = 0;
    Uint32 minutes = 0;
    Uint32 seconds = 0;
    Uint32 microseconds = 0;
};

/// Local microseconds since the year 0 began, and those of an interval. Both throw
/// DateTimeOutOfRangeException for fields that no clock or calendar shows.
Uint64 timestampOf(const Fields& fields);
Uint64 intervalOf(const Fields& fields);

/// The microseconds with the fields that asterisks cover at their least.
Uint64 significant(Uint64 microseconds, Uint16 wildcards, bool isInterval);

/// What the 25 characters say; see CIMDateTime.
struct Form {
    Uint64 microseconds; // local; insignificant fields at their least
    Sint32 utcOffset;    // minutes
    Uint16 wildcards;
    bool isInterval;
};

/// Throws InvalidDateTimeFormatException or DateTimeOutOfRangeException.
Form read(const String& text);

} // namespace Pegasus::datetime
