#include "Throws.h"

#include <Pegasus/Common/CIMDateTime.h>

#include <cctype>

using namespace Pegasus;
using apitest::text;
using apitest::throws;

namespace {

CIMDateTime at(const char* form) { return CIMDateTime(String(form)); }

constexpr Uint64 daysOfMicroseconds = 86400000000ULL;

TEST(CIMDateTime, IsTheIntervalZeroUntilItIsGiven) {
    EXPECT_EQ(text(CIMDateTime().toString()), "00000000000000.000000:000");
    CIMDateTime cleared = at("20240101000000.000000+060");
    cleared.clear();
    EXPECT_EQ(text(cleared.toString()), "00000000000000.000000:000");
    EXPECT_TRUE(cleared.isInterval());
}

TEST(CIMDateTime, WritesWhatItRead) {
    const struct {
        const char* form;
        Uint64 microseconds;
    } cases[] = {
        {"20240229123456.123456+060", 63876425696123456ULL},
        {"20240229123456.123456-300", 63876447296123456ULL},
        {"00000101000000.000000+000", 0},
        {"00010101000000.000000+000", 31622400000000ULL},
        {"00000229000000.000000+000", 5097600000000ULL},
        {"20000229000000.000000+000", 63119001600000000ULL},
        {"99991231235959.999999+000", 315569519999999999ULL},
        {"20240101235959.99999*+000", 63871372799999990ULL},
        {"20240101235959.1*****+000", 63871372799100000ULL},
        {"20240101235959.******+000", 63871372799000000ULL},
        {"202401012359**.******+000", 63871372740000000ULL},
        {"2024010123****.******+000", 63871369200000000ULL},
        {"20240101******.******+000", 63871286400000000ULL},
        {"202402********.******+000", 63873964800000000ULL},
        {"2024**********.******+000", 63871286400000000ULL},
        {"**************.******-060", 0},
        {"12345678123456.123456:000", 1066666624496123456ULL},
        {"12345678123456.12345*:000", 1066666624496123450ULL},
        {"123456781234**.******:000", 1066666624440000000ULL},
        {"1234567812****.******:000", 1066666622400000000ULL},
        {"12345678******.******:000", 1066666579200000000ULL},
        {"99999999235959.999999:000", 8639999999999999999ULL},
    };
    for (const auto& c : cases) {
        const CIMDateTime x = at(c.form);
        EXPECT_EQ(text(x.toString()), c.form);
        EXPECT_EQ(x.toMicroSeconds(), c.microseconds) << c.form;
        EXPECT_EQ(x.isInterval(), c.form[21] == ':') << c.form;
    }
    EXPECT_EQ(text(at("**************.******:000").toString()), "**************.******:000");
    EXPECT_EQ(text(at("20240229123456.123456-000").toString()), "20240229123456.123456+000");
}

TEST(CIMDateTime, RejectsOtherForms) {
    for (const char* form :
         {"", "x", "20240101235959.123456+000 ", "20240101235959.123456+1000",
          "20240101235959,123456+000", "2024010123595a.123456+000", "20240101235959.123456*060",
          "20240101235959.123456+0a0", "20240101235959.123456+***", "12345678235959.000000:001",
          "**************.******:***", "202401012359*9.******+000", "2024010123**59.******+000",
          "20240101235959.*1****+000", "2024023*******.******+000", "1234567*******.******:000",
          "000000000000**.123456:000"}) {
        EXPECT_TRUE(
            throws<InvalidDateTimeFormatException>([&] { at(form); }, "invalid datetime format"))
            << form;
    }
}

TEST(CIMDateTime, RejectsDatesAndTimesThatAreNone) {
    const struct {
        const char* form;
        const char* reason;
    } cases[] = {
        {"20230229000000.000000+000", "illegal day number"},
        {"19000229000000.000000+000", "illegal day number"},
        {"20241131000000.000000+000", "illegal day number"},
        {"20240100000000.000000+000", "illegal day number"},
        {"20240132000000.000000+000", "illegal day number"},
        {"20240230******.******+000", "illegal day number"},
        {"20241301000000.000000+000", "illegal month number"},
        {"20240001000000.000000+000", "illegal month number"},
        {"20240101240000.000000+000", "illegal hours number "},
        {"20240101236000.000000+000", "illegal minutes number "},
        {"20240101235960.000000+000", "illegal seconds number "},
        {"12345678240000.000000:000", "illegal hours number "},
        {"12345678236000.000000:000", "illegal minutes number "},
        {"12345678235960.000000:000", "illegal seconds number "},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(throws<DateTimeOutOfRangeException>(
            [&] { at(c.form); }, std::string("DateTime is out of range : ") + c.reason))
            << c.form;
    }
}

TEST(CIMDateTime, CountsMicrosecondsUpToWhatCanBeWritten) {
    constexpr Uint64 intervals = 100000000 * daysOfMicroseconds;
    constexpr Uint64 timestamps = 3652425 * daysOfMicroseconds;
    EXPECT_EQ(text(CIMDateTime(intervals - 1, true).toString()), "99999999235959.999999:000");
    EXPECT_EQ(text(CIMDateTime(timestamps - 1, false).toString()), "99991231235959.999999+000");
    EXPECT_EQ(text(CIMDateTime(0, false).toString()), "00000101000000.000000+000");
    EXPECT_TRUE(throws<DateTimeOutOfRangeException>(
        [] { CIMDateTime x(intervals, true); },
        "DateTime is out of range : Cannot create a CIMDateTime interval greater than 100 million "
        "days"));
    EXPECT_TRUE(throws<DateTimeOutOfRangeException>(
        [] { CIMDateTime x(timestamps, false); },
        "DateTime is out of range : Cannot create a CIMDateTime time stamp beyond the year "
        "10,000"));
}

/// Every first of a month, and the day before it, is a day after the one before.
TEST(CIMDateTime, CountsDaysThroughTheCalendar) {
    const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    Uint64 days = 0;
    for (int year = 0; year < 10000; ++year) {
        const bool leap = year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
        for (int month = 1; month <= 12; ++month) {
            const int length = lengths[month - 1] + (month == 2 && leap ? 1 : 0);
            if (year % 97 == 0 || year % 100 == 0 || year == 9999) {
                for (int day : {1, length}) {
                    char form[64];
                    std::snprintf(form, sizeof form, "%04d%02d%02d000000.000000+000", year, month,
                                  day);
                    const Uint64 expected =
                        (days + static_cast<Uint64>(day) - 1) * daysOfMicroseconds;
                    EXPECT_EQ(at(form).toMicroSeconds(), expected) << form;
                    EXPECT_EQ(text(CIMDateTime(expected, false).toString()), form);
                }
            }
            days += static_cast<Uint64>(length);
        }
    }
}

TEST(CIMDateTime, ComparesInUtcAndOnlyWhatIsSignificant) {
    const struct {
        const char* x;
        const char* y;
        int order;
    } cases[] = {
        {"20240101000000.000000+000", "20240101010000.000000+060", 0},
        {"20240101000000.000000+000", "20240101000000.000001+000", -1},
        {"20240101000059.000000+000", "202401010000**.******+000", 0},
        {"20240101000100.000000+000", "202401010000**.******+000", 1},
        {"20240101000000.12****+000", "20240101000000.123***+000", 0},
        {"202401010100**.******+060", "20240101000030.000000+000", 0},
        {"2024**********.******+000", "202406********.******+000", 0},
        {"2024**********.******+060", "20231231235959.000000+000", 1},
        {"**************.******+000", "20240101000000.000000+000", 0},
        {"00000000000001.000000:000", "000000000000**.******:000", 0},
        {"00000000000001.000000:000", "00000000000002.000000:000", -1},
    };
    for (const auto& c : cases) {
        const CIMDateTime x = at(c.x);
        const CIMDateTime y = at(c.y);
        SCOPED_TRACE(std::string(c.x) + " " + c.y);
        EXPECT_EQ(x.equal(y), c.order == 0);
        EXPECT_EQ(x == y, c.order == 0);
        EXPECT_EQ(x != y, c.order != 0);
        EXPECT_EQ(x < y, c.order < 0);
        EXPECT_EQ(x <= y, c.order <= 0);
        EXPECT_EQ(x > y, c.order > 0);
        EXPECT_EQ(x >= y, c.order >= 0);
        EXPECT_EQ(y<x, c.order> 0);
    }
}

TEST(CIMDateTime, DoesNotCompareTimesWithIntervals) {
    const CIMDateTime time = at("20240101000000.000000+000");
    const std::string message =
        "type mismatch: Trying to compare CIMDateTime objects of differing types";
    EXPECT_TRUE(throws<TypeMismatchException>([&] { time.equal(CIMDateTime()); }, message));
    EXPECT_TRUE(
        throws<TypeMismatchException>([&] { static_cast<void>(CIMDateTime() < time); }, message));
    EXPECT_TRUE(throws<InvalidDateTimeFormatException>(
        [&] { CIMDateTime::getDifference(time, CIMDateTime()); }, "invalid datetime format"));
}

TEST(CIMDateTime, TellsTheDifferenceWithItsSign) {
    const CIMDateTime early = at("20240101000000.000000+000");
    const CIMDateTime late = at("20240101010001.000000+060");
    EXPECT_EQ(CIMDateTime::getDifference(early, late), 1000000);
    EXPECT_EQ(CIMDateTime::getDifference(late, early), -1000000);
    EXPECT_EQ(CIMDateTime::getDifference(at("00000000000001.000000:000"), CIMDateTime()), -1000000);
}

TEST(CIMDateTime, AddsAndSubtracts) {
    const CIMDateTime oneDay = at("00000001000000.000000:000");
    const CIMDateTime time = at("20240101000000.000000+060");
    EXPECT_EQ(text((time + oneDay).toString()), "20240102000000.000000+060");
    EXPECT_EQ(text((oneDay + at("00000001000000.000001:000")).toString()),
              "00000002000000.000001:000");
    EXPECT_EQ(text((at("202401010000**.******+060") + oneDay).toString()),
              "202401020000**.******+060");
    EXPECT_EQ(text((at("20240102000000.000000+000") - oneDay).toString()),
              "20240101000000.000000+000");
    EXPECT_EQ(text((time - at("20230101000000.000000+000")).toString()),
              "00000364230000.000000:000");
    EXPECT_EQ(text((oneDay - at("00000000000001.000000:000")).toString()),
              "00000000235959.000000:000");
    CIMDateTime changed = oneDay;
    changed += oneDay;
    changed -= at("00000000000001.000000:000");
    EXPECT_EQ(text(changed.toString()), "00000001235959.000000:000");
    EXPECT_TRUE(apitest::throwsTypeMismatch([&] { oneDay + time; }));
    EXPECT_TRUE(apitest::throwsTypeMismatch([&] { time + time; }));
    EXPECT_TRUE(apitest::throwsTypeMismatch([&] { oneDay - time; }));
    const std::string negative = "DateTime is out of range : Result of subtracting two "
                                 "CIMDateTimes would be negative.";
    EXPECT_TRUE(throws<DateTimeOutOfRangeException>([&] { CIMDateTime() - oneDay; }, negative));
    EXPECT_TRUE(throws<DateTimeOutOfRangeException>([&] { at("20230101000000.000000+000") - time; },
                                                    negative));
}

TEST(CIMDateTime, MultipliesAndDividesIntervals) {
    const CIMDateTime oneDay = at("00000001000000.000000:000");
    const CIMDateTime time = at("20240101000000.000000+060");
    EXPECT_EQ(text((oneDay * 3).toString()), "00000003000000.000000:000");
    EXPECT_EQ(text((oneDay * 0).toString()), "00000000000000.000000:000");
    EXPECT_EQ(text((oneDay / 3).toString()), "00000000080000.000000:000");
    EXPECT_EQ(text((at("00000001000000.0000**:000") / 3).toString()), "00000000080000.0000**:000");
    EXPECT_EQ(oneDay / at("00000000010000.000000:000"), 24U);
    CIMDateTime changed = oneDay;
    changed *= 4;
    changed /= 2;
    EXPECT_EQ(text(changed.toString()), "00000002000000.000000:000");
    EXPECT_TRUE(apitest::throwsTypeMismatch([&] { time * 3; }));
    EXPECT_TRUE(throws<TypeMismatchException>(
        [&] { time / 3; }, "type mismatch: Can not divide a TimeStamp by an integer"));
    EXPECT_TRUE(throws<TypeMismatchException>(
        [&] { static_cast<void>(oneDay / time); },
        "type mismatch: Can not divide two CIMDateTime objects if one of them is a TimeStamp"));
    EXPECT_TRUE(
        throws<Exception>([&] { oneDay / Uint64(0); }, "Can not divide CIMDateTime by zero"));
    EXPECT_TRUE(throws<Exception>([&] { static_cast<void>(oneDay / CIMDateTime()); },
                                  "Can not divide CIMDateTime by zero"));
}

TEST(CIMDateTime, KnowsNow) {
    const CIMDateTime before = CIMDateTime::getCurrentDateTime();
    const CIMDateTime after = CIMDateTime::getCurrentDateTime();
    EXPECT_FALSE(before.isInterval());
    EXPECT_TRUE(before <= after);
    EXPECT_TRUE(before > at("20240101000000.000000+000"));
    EXPECT_LT(CIMDateTime::getDifference(before, after), 60000000);
}

} // namespace
