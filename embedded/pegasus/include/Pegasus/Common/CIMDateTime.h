#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

namespace Pegasus {

/// The CIM type datetime (DSP0004, "Datetime type"): a point in time with its offset from UTC, or
/// an interval. Both are written in 25 characters,
///
///     yyyymmddhhmmss.mmmmmmsutc    a point in time; s is '+' or '-', utc are minutes
///     ddddddddhhmmss.mmmmmm:000    an interval
///
/// where the fields, from the right, may be given as asterisks: not significant.
///
/// Thread-safety: as that of an int.
class PEGASUS_COMMON_LINKAGE CIMDateTime {
  public:
    /// The interval 0.
    CIMDateTime() = default;
    /// Throws InvalidDateTimeFormatException, or DateTimeOutOfRangeException when the form is
    /// right and the time is not one that can be converted to UTC.
    CIMDateTime(const String& str) { set(str); }
    /// The interval of `usec` microseconds, or the time so long after the year 1 BCE began, UTC.
    /// Throws DateTimeOutOfRangeException.
    CIMDateTime(Uint64 usec, Boolean isInterval);

    String toString() const;
    /// As the constructor from a String.
    void set(const String& str);
    /// Makes it the interval 0.
    void clear() { *this = CIMDateTime(); }

    /// Now, with the local offset from UTC.
    static CIMDateTime getCurrentDateTime();
    /// `finishTime` minus `startTime` in microseconds. Throws InvalidDateTimeFormatException when
    /// one is an interval and the other is not.
    static Sint64 getDifference(CIMDateTime startTime, CIMDateTime finishTime);

    Boolean isInterval() const { return _isInterval; }
    /// Equality and order compare points in time in UTC, and only the fields that are significant
    /// on both sides. Throws TypeMismatchException when one is an interval and the other is not.
    Boolean equal(const CIMDateTime& x) const { return _compare(x) == 0; }
    /// The interval's microseconds, or those since the year 1 BCE began, UTC. Fields that are not
    /// significant count as their least value.
    Uint64 toMicroSeconds() const;

    /// Arithmetic throws TypeMismatchException for operands that have no such operation, and
    /// DateTimeOutOfRangeException when the result cannot be written.
    CIMDateTime operator+(const CIMDateTime& x) const { return CIMDateTime(*this) += x; }
    CIMDateTime& operator+=(const CIMDateTime& x);
    CIMDateTime operator-(const CIMDateTime& x) const { return CIMDateTime(*this) -= x; }
    CIMDateTime& operator-=(const CIMDateTime& x);
    CIMDateTime operator*(Uint64 x) const { return CIMDateTime(*this) *= x; }
    CIMDateTime& operator*=(Uint64 x);
    CIMDateTime operator/(Uint64 num) const { return CIMDateTime(*this) /= num; }
    CIMDateTime& operator/=(Uint64 num);
    Uint64 operator/(const CIMDateTime& cdt) const;
    Boolean operator<(const CIMDateTime& x) const { return _compare(x) < 0; }
    Boolean operator<=(const CIMDateTime& x) const { return _compare(x) <= 0; }
    Boolean operator>(const CIMDateTime& x) const { return _compare(x) > 0; }
    Boolean operator>=(const CIMDateTime& x) const { return _compare(x) >= 0; }
    Boolean operator!=(const CIMDateTime& x) const { return _compare(x) != 0; }

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    /// Stands for a field that is not significant.
    static const Uint32 WILDCARD;

    CIMDateTime(Uint32 year, Uint32 month, Uint32 day, Uint32 hours, Uint32 minutes, Uint32 seconds,
                Uint32 microseconds, Uint32 numSignificantMicrosecondDigits, Sint32 utcOffset) {
        setTimeStamp(year, month, day, hours, minutes, seconds, microseconds,
                     numSignificantMicrosecondDigits, utcOffset);
    }
    CIMDateTime(Uint32 days, Uint32 hours, Uint32 minutes, Uint32 seconds, Uint32 microseconds,
                Uint32 numSignificantMicrosecondDigits) {
        setInterval(days, hours, minutes, seconds, microseconds, numSignificantMicrosecondDigits);
    }
    void setTimeStamp(Uint32 year, Uint32 month, Uint32 day, Uint32 hours, Uint32 minutes,
                      Uint32 seconds, Uint32 microseconds, Uint32 numSignificantMicrosecondDigits,
                      Sint32 utcOffset);
    void setInterval(Uint32 days, Uint32 hours, Uint32 minutes, Uint32 seconds, Uint32 microseconds,
                     Uint32 numSignificantMicrosecondDigits);
    Boolean isTimeStamp() const { return !_isInterval; }
#endif

  private:
    int _compare(const CIMDateTime& x) const;
    /// Of this kind, with this offset and these asterisks.
    CIMDateTime _withMicroseconds(Uint64 microseconds) const;

    Uint64 _microseconds = 0; // local time for a point in time; insignificant fields at their least
    Sint32 _utcOffset = 0;    // minutes east of UTC; 0 for an interval
    Uint16 _wildcards = 0;    // characters that are asterisks, counted from the right, '.' left out
    Boolean _isInterval = true;
};

inline Boolean operator==(const CIMDateTime& x, const CIMDateTime& y) { return x.equal(y); }

} // namespace Pegasus
