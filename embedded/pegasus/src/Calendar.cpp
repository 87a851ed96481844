#include "Calendar.h"

namespace Pegasus::calendar {

namespace {

bool isLeap(Uint32 year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

/// Days before the first of January. The year 0 is a leap year.
Uint64 daysBefore(Uint32 year) {
    if (year == 0)
        return 0;
    const Uint64 last = year - 1;
    return Uint64{365} * year + last / 4 - last / 100 + last / 400 + 1;
}

} // namespace

Uint32 daysInMonth(Uint32 year, Uint32 month) {
    static const Uint32 days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeap(year) ? 29 : days[month - 1];
}

Uint64 daysSinceYear0(const Date& date) {
    Uint64 days = daysBefore(date.year) + date.day - 1;
    for (Uint32 month = 1; month < date.month; ++month)
        days += daysInMonth(date.year, month);
    return days;
}

Date dateOf(Uint64 daysSinceYear0) {
    // 400 years have 146097 days; the guess is at most one year too early.
    auto year = static_cast<Uint32>(daysSinceYear0 * 400 / 146097);
    while (daysBefore(year) > daysSinceYear0)
        --year;
    while (daysBefore(year + 1) <= daysSinceYear0)
        ++year;
    Date date = {year, 1, static_cast<Uint32>(daysSinceYear0 - daysBefore(year)) + 1};
    while (date.day > daysInMonth(year, date.month)) {
        date.day -= daysInMonth(year, date.month);
        ++date.month;
    }
    return date;
}

} // namespace Pegasus::calendar
