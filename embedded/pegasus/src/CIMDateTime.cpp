#include "Calendar.h"
#include "DateTimeForm.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <initializer_list>
#include <limits>

namespace Pegasus {

using namespace datetime;

namespace {

/// UTC, which may lie before the year 0.
Sint64 inUtc(Uint64 microseconds, Sint32 utcOffset) {
    return static_cast<Sint64>(microseconds) - utcOffset * static_cast<Sint64>(perMinute);
}

Uint64 difference(Uint64 x, Uint64 y) {
    if (y > x)
        outOfRange("Result of subtracting two CIMDateTimes would be negative.");
    return x - y;
}

/// How many asterisks setTimeStamp() and setInterval() ask for: a field that is WILDCARD makes all
/// behind it insignificant. Only the first field has not two digits.
Uint16 wildcardsFor(std::initializer_list<Uint32> fieldsFromTheLeft, Uint32 digitsOfTheFirst,
                    Uint32 significantMicrosecondDigits) {
    if (significantMicrosecondDigits > microsecondDigits)
        outOfRange("bad numSignificantMicrosecondDigits (must fall between 0 and 6)");
    auto left = static_cast<Uint16>(allDigits - digitsOfTheFirst);
    Uint16 fromHere = allDigits;
    for (const Uint32 field : fieldsFromTheLeft) {
        if (field == CIMDateTime::WILDCARD)
            return fromHere;
        fromHere = left;
        left = static_cast<Uint16>(left - 2);
    }
    return static_cast<Uint16>(microsecondDigits - significantMicrosecondDigits);
}

Uint32 orLeast(Uint32 field, Uint32 leastValue) {
    return field == CIMDateTime::WILDCARD ? leastValue : field;
}

Uint32 checkedMicroseconds(Uint32 microseconds) {
    if (microseconds > 999999)
        outOfRange("microseconds number must be less than 999999");
    return microseconds;
}

} // namespace

const Uint32 CIMDateTime::WILDCARD = 0xFFFFFFFF;

CIMDateTime::CIMDateTime(Uint64 usec, Boolean isInterval)
    : _microseconds(usec), _utcOffset(0), _wildcards(0), _isInterval(isInterval) {
    if (isInterval && usec >= intervalLimit)
        outOfRange("Cannot create a CIMDateTime interval greater than 100 million days");
    if (!isInterval && usec >= timestampLimit)
        outOfRange("Cannot create a CIMDateTime time stamp beyond the year 10,000");
}

String CIMDateTime::toString() const {
    char text[40];
    const Uint64 days = _microseconds / perDay;
    const calendar::Date date = _isInterval ? calendar::Date{0, 0, 0} : calendar::dateOf(days);
    const Uint64 leading =
        _isInterval ? days : date.year * 10000ULL + date.month * 100ULL + date.day;
    std::snprintf(text, sizeof text, "%08llu%02llu%02llu%02llu.%06llu%c%03d", leading,
                  _microseconds % perDay / perHour, _microseconds % perHour / perMinute,
                  _microseconds % perMinute / perSecond, _microseconds % perSecond,
                  _isInterval ? ':' : (_utcOffset < 0 ? '-' : '+'), std::abs(_utcOffset));
    char* at = text + 20;
    for (Uint16 wild = _wildcards; wild > 0; --at) {
        if (*at != '.') {
            *at = '*';
            --wild;
        }
    }
    return String(text);
}

void CIMDateTime::set(const String& str) {
    const Form form = read(str);
    _microseconds = form.microseconds;
    _utcOffset = form.utcOffset;
    _wildcards = form.wildcards;
    _isInterval = form.isInterval;
}

void CIMDateTime::setTimeStamp(Uint32 year, Uint32 month, Uint32 day, Uint32 hours, Uint32 minutes,
                               Uint32 seconds, Uint32 microseconds,
                               Uint32 numSignificantMicrosecondDigits, Sint32 utcOffset) {
    if (year != WILDCARD && year > 9999)
        outOfRange("year is greater than 9999");
    if (std::abs(static_cast<long long>(utcOffset)) > 999)
        outOfRange("illegal utcOffset");
    const Uint16 wildcards = wildcardsFor({year, month, day, hours, minutes, seconds}, 4,
                                          numSignificantMicrosecondDigits);
    Fields fields;
    fields.year = orLeast(year, 0);
    fields.month = orLeast(month, 1);
    fields.day = orLeast(day, 1);
    fields.hours = orLeast(hours, 0);
    fields.minutes = orLeast(minutes, 0);
    fields.seconds = orLeast(seconds, 0);
    fields.microseconds = checkedMicroseconds(microseconds);
    _microseconds = significant(timestampOf(fields), wildcards, false);
    _utcOffset = utcOffset;
    _wildcards = wildcards;
    _isInterval = false;
}

void CIMDateTime::setInterval(Uint32 days, Uint32 hours, Uint32 minutes, Uint32 seconds,
                              Uint32 microseconds, Uint32 numSignificantMicrosecondDigits) {
    if (days != WILDCARD && days > 99999999)
        outOfRange("illegal days number (must be less than 100000000");
    const Uint16 wildcards =
        wildcardsFor({days, hours, minutes, seconds}, 8, numSignificantMicrosecondDigits);
    Fields fields;
    fields.day = orLeast(days, 0);
    fields.hours = orLeast(hours, 0);
    fields.minutes = orLeast(minutes, 0);
    fields.seconds = orLeast(seconds, 0);
    fields.microseconds = checkedMicroseconds(microseconds);
    _microseconds = significant(intervalOf(fields), wildcards, true);
    _utcOffset = 0;
    _wildcards = wildcards;
    _isInterval = true;
}

CIMDateTime CIMDateTime::getCurrentDateTime() {
    using namespace std::chrono;
    const Uint64 sinceEpoch = static_cast<Uint64>(
        duration_cast<std::chrono::microseconds>(system_clock::now().time_since_epoch()).count());
    const auto seconds = static_cast<std::time_t>(sinceEpoch / perSecond);
    std::tm local = {};
    localtime_r(&seconds, &local);
    const Sint64 offset = local.tm_gmtoff / 60;
    const Sint64 epoch = static_cast<Sint64>(calendar::daysSinceYear0({1970, 1, 1}) * perDay);
    CIMDateTime now(static_cast<Uint64>(epoch + static_cast<Sint64>(sinceEpoch) +
                                        offset * static_cast<Sint64>(perMinute)),
                    false);
    now._utcOffset = static_cast<Sint32>(offset);
    return now;
}

Sint64 CIMDateTime::getDifference(CIMDateTime startTime, CIMDateTime finishTime) {
    if (startTime._isInterval != finishTime._isInterval)
        throw InvalidDateTimeFormatException();
    return static_cast<Sint64>(finishTime.toMicroSeconds() - startTime.toMicroSeconds());
}

Uint64 CIMDateTime::toMicroSeconds() const {
    // Fewer than none when the offset leads before the year 0: modulo 2^64 then.
    return _wildcards == allDigits ? 0 : static_cast<Uint64>(inUtc(_microseconds, _utcOffset));
}

int CIMDateTime::_compare(const CIMDateTime& x) const {
    if (_isInterval != x._isInterval)
        throw TypeMismatchException(
            String("Trying to compare CIMDateTime objects of differing types"));
    // Each is cut in its own time zone, since that is where its fields are insignificant.
    const Uint16 wildcards = std::max(_wildcards, x._wildcards);
    if (wildcards == allDigits)
        return 0;
    const Sint64 mine = inUtc(significant(_microseconds, wildcards, _isInterval), _utcOffset);
    const Sint64 other = inUtc(significant(x._microseconds, wildcards, _isInterval), x._utcOffset);
    return mine < other ? -1 : mine > other;
}

CIMDateTime& CIMDateTime::operator+=(const CIMDateTime& x) {
    if (!x._isInterval)
        throw TypeMismatchException();
    return *this = _withMicroseconds(_microseconds + x._microseconds);
}

CIMDateTime& CIMDateTime::operator-=(const CIMDateTime& x) {
    if (_isInterval && !x._isInterval)
        throw TypeMismatchException();
    // The difference of two of a kind is an interval, and as exact as its digits.
    if (_isInterval == x._isInterval)
        return *this = CIMDateTime(difference(toMicroSeconds(), x.toMicroSeconds()), true);
    return *this = _withMicroseconds(difference(_microseconds, x._microseconds));
}

CIMDateTime& CIMDateTime::operator*=(Uint64 x) {
    if (!_isInterval)
        throw TypeMismatchException();
    const Uint64 largest = std::numeric_limits<Uint64>::max();
    const bool fits = x == 0 || _microseconds <= largest / x;
    return *this = _withMicroseconds(fits ? _microseconds * x : largest);
}

CIMDateTime& CIMDateTime::operator/=(Uint64 num) {
    if (!_isInterval)
        throw TypeMismatchException(String("Can not divide a TimeStamp by an integer"));
    if (num == 0)
        throw Exception(String("Can not divide CIMDateTime by zero"));
    return *this = _withMicroseconds(_microseconds / num);
}

Uint64 CIMDateTime::operator/(const CIMDateTime& cdt) const {
    if (!_isInterval || !cdt._isInterval)
        throw TypeMismatchException(
            String("Can not divide two CIMDateTime objects if one of them is a TimeStamp"));
    if (cdt._microseconds == 0)
        throw Exception(String("Can not divide CIMDateTime by zero"));
    return _microseconds / cdt._microseconds;
}

CIMDateTime CIMDateTime::_withMicroseconds(Uint64 microseconds) const {
    CIMDateTime result(microseconds, _isInterval);
    result._microseconds = significant(microseconds, _wildcards, _isInterval);
    result._utcOffset = _utcOffset;
    result._wildcards = _wildcards;
    return result;
}

} // namespace Pegasus
