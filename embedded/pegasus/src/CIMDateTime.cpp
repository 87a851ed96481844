#include "text/Ascii.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <initializer_list>
#include <limits>
#include <string>

namespace Pegasus {

namespace {

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

[[noreturn]] void outOfRange(const char* reason) {
    throw DateTimeOutOfRangeException(String(reason));
}

/// Of the proleptic Gregorian calendar; month and day count from 1.
struct Date {
    Uint32 year;
    Uint32 month;
    Uint32 day;
};

// The calendar is computed from the first of March of the year -400: the leap day is then the last
// of its year, and 400 years always have the same number of days.

constexpr Uint64 daysIn400Years = 146097;
constexpr Uint64 daysBeforeYear0 = 146037;

Uint64 daysOf(Uint64 years) { return 365 * years + years / 4 - years / 100 + years / 400; }

Uint64 daysOfMonths(Uint64 monthsFromMarch) { return (153 * monthsFromMarch + 2) / 5; }

Uint64 daysSinceYear0(const Date& date) {
    const Uint64 year = 400 + Uint64{date.year} - (date.month < 3 ? 1 : 0);
    return daysOf(year) + daysOfMonths((date.month + 9) % 12) + date.day - 1 - daysBeforeYear0;
}

Date dateOf(Uint64 daysSinceYear0) {
    const Uint64 days = daysSinceYear0 + daysBeforeYear0;
    Uint64 year = days * 400 / daysIn400Years; // at most one too early
    if (daysOf(year + 1) <= days)
        ++year;
    const Uint64 dayOfYear = days - daysOf(year);
    const Uint64 month = (5 * dayOfYear + 2) / 153;
    const Uint64 isNextYear = month < 10 ? 0 : 1;
    return {static_cast<Uint32>(year + isNextYear - 400),
            static_cast<Uint32>(month + 3 - 12 * isNextYear),
            static_cast<Uint32>(dayOfYear - daysOfMonths(month) + 1)};
}

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

Uint64 microsecondsOfDay(const Fields& fields) {
    if (fields.hours > 23)
        outOfRange("illegal hours number ");
    if (fields.minutes > 59)
        outOfRange("illegal minutes number ");
    if (fields.seconds > 59)
        outOfRange("illegal seconds number ");
    return fields.hours * perHour + fields.minutes * perMinute + fields.seconds * perSecond +
           fields.microseconds;
}

/// Local microseconds since the year 0 began. Throws DateTimeOutOfRangeException for fields that no
/// clock or calendar shows; so does intervalOf().
Uint64 timestampOf(const Fields& fields) {
    if (fields.month < 1 || fields.month > 12)
        outOfRange("illegal month number");
    const Uint64 days = daysSinceYear0({fields.year, fields.month, fields.day});
    if (fields.day < 1 || dateOf(days).month != fields.month)
        outOfRange("illegal day number");
    return days * perDay + microsecondsOfDay(fields);
}

Uint64 intervalOf(const Fields& fields) { return fields.day * perDay + microsecondsOfDay(fields); }

/// The microseconds with the fields that asterisks cover at their least.
Uint64 significant(Uint64 microseconds, Uint16 wildcards, bool isInterval) {
    if (wildcards == allDigits)
        return 0;
    if (wildcards > toHours && !isInterval) {
        Date date = dateOf(microseconds / perDay);
        date.day = 1;
        if (wildcards >= toMonth)
            date.month = 1;
        return daysSinceYear0(date) * perDay;
    }
    Uint64 unit = 1;
    if (wildcards >= toHours)
        unit = perDay;
    else if (wildcards >= toMinutes)
        unit = perHour;
    else if (wildcards >= toSeconds)
        unit = perMinute;
    else
        for (Uint16 i = 0; i < wildcards; ++i)
            unit *= 10;
    return microseconds - microseconds % unit;
}

bool endsFields(Uint16 wildcards, bool isInterval) {
    if (wildcards <= microsecondDigits || wildcards == allDigits)
        return true;
    const bool wholeFields = wildcards % 2 == 0;
    return wholeFields && wildcards <= (isInterval ? toHours : toMonth);
}

/// Reads the characters, then the numbers that they make.
class Reader {
  public:
    explicit Reader(const String& text) {
        require(text.size() == 25 && text[14] == '.');
        const Uint16 sign = text[21];
        require(sign == '+' || sign == '-' || sign == ':');
        isInterval = sign == ':';
        for (Uint32 i = 0; i < 21; ++i)
            if (i != 14)
                _digits += readDigit(text[i]);
        for (Uint32 i = 22; i < 25; ++i) {
            const Uint16 digit = text[i];
            require(embedded::text::isDigit(digit));
            utcOffset = utcOffset * 10 + (digit - '0');
        }
        require(!isInterval || utcOffset == 0);
        if (sign == '-')
            utcOffset = -utcOffset;
        require(endsFields(wildcards, isInterval));
    }

    Uint64 microseconds() const {
        Fields fields;
        if (isInterval) {
            fields.day = number(0, 8, 0);
        } else {
            fields.year = number(0, 4, 0);
            fields.month = number(4, 2, 1);
            fields.day = number(6, 2, 1);
        }
        fields.hours = number(8, 2, 0);
        fields.minutes = number(10, 2, 0);
        fields.seconds = number(12, 2, 0);
        for (Uint32 i = 14; i < 20; ++i)
            fields.microseconds = fields.microseconds * 10 + number(i, 1, 0);
        return isInterval ? intervalOf(fields) : timestampOf(fields);
    }

    bool isInterval = false;
    Uint16 wildcards = 0;
    Sint32 utcOffset = 0;

  private:
    static void require(bool condition) {
        if (!condition)
            throw InvalidDateTimeFormatException();
    }

    char readDigit(Uint16 unit) {
        if (unit == '*') {
            ++wildcards;
            return '*';
        }
        require(embedded::text::isDigit(unit) && wildcards == 0);
        return static_cast<char>(unit);
    }

    Uint32 number(Uint32 index, Uint32 size, Uint32 leastValue) const {
        if (_digits[index] == '*')
            return leastValue;
        return static_cast<Uint32>(std::stoul(_digits.substr(index, size)));
    }

    std::string _digits;
};

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
    const Date date = _isInterval ? Date{0, 0, 0} : dateOf(days);
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
    const Reader reader(str);
    _microseconds = reader.microseconds();
    _utcOffset = reader.utcOffset;
    _wildcards = reader.wildcards;
    _isInterval = reader.isInterval;
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
    const Sint64 epoch = static_cast<Sint64>(daysSinceYear0({1970, 1, 1}) * perDay);
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
