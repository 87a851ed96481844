#include "DateTimeForm.h"

#include "Calendar.h"
#include "text/Ascii.h"

#include <Pegasus/Common/Exception.h>

#include <string>

namespace Pegasus::datetime {

namespace {

bool endsFields(Uint16 wildcards, bool isInterval) {
    if (wildcards <= microsecondDigits || wildcards == allDigits)
        return true;
    const bool wholeFields = wildcards % 2 == 0;
    return wholeFields && wildcards <= (isInterval ? toHours : toMonth);
}

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

} // namespace

void outOfRange(const char* reason) { throw DateTimeOutOfRangeException(String(reason)); }

Uint64 timestampOf(const Fields& fields) {
    if (fields.month < 1 || fields.month > 12)
        outOfRange("illegal month number");
    if (fields.day < 1 || fields.day > calendar::daysInMonth(fields.year, fields.month))
        outOfRange("illegal day number");
    return calendar::daysSinceYear0({fields.year, fields.month, fields.day}) * perDay +
           microsecondsOfDay(fields);
}

Uint64 intervalOf(const Fields& fields) { return fields.day * perDay + microsecondsOfDay(fields); }

Uint64 significant(Uint64 microseconds, Uint16 wildcards, bool isInterval) {
    if (wildcards == allDigits)
        return 0;
    if (wildcards > toHours && !isInterval) {
        calendar::Date date = calendar::dateOf(microseconds / perDay);
        date.day = 1;
        if (wildcards >= toMonth)
            date.month = 1;
        return calendar::daysSinceYear0(date) * perDay;
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

Form read(const String& text) {
    const Reader reader(text);
    return {reader.microseconds(), reader.utcOffset, reader.wildcards, reader.isInterval};
}

} // namespace Pegasus::datetime
