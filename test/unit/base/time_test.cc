// Calendar times: texts both ways, and arithmetic against a calendar that is walked day by day.

#include "support/test.hh"

#include <qv/base/qv_time.hh>

#include <ctime>

using namespace test;

namespace
{

using Owned = Local<QV_TIME>;

Owned timeOf( QV_INT year, QV_INT month, QV_INT day, QV_INT hour = 0, QV_INT minute = 0, QV_INT second = 0 )
{
    Owned tm( qvTimeCreate() );
    qvTimeSetYear( tm.edit(), year );
    qvTimeSetMonth( tm.edit(), month );
    qvTimeSetDay( tm.edit(), day );
    qvTimeSetHour( tm.edit(), hour );
    qvTimeSetMinute( tm.edit(), minute );
    qvTimeSetSecond( tm.edit(), second );
    return tm;
}

std::string shown( QV_TIME *tm )
{
    return takeUtf8( qvTimeToString( tm ) );
}

// The text form of what a text means, or "none".
std::string parsed( std::string_view from )
{
    Owned tm( qvTimeTryCreateFromString( text( from ) ) );
    return tm ? shown( tm ) : "none";
}

QV_INT deltaOf( QV_TIME *tmA, QV_TIME *tmB )
{
    QV_INT delta = 12345;
    EXPECT_TRUE( qvTimeDeltaSeconds( tmA, tmB, &delta ) );
    return delta;
}

struct Date
{
    QV_INT year, month, day;

    bool operator==( const Date & ) const = default;
};

Date dateOf( QV_TIME *tm )
{
    return { qvTimeYear( tm ), qvTimeMonth( tm ), qvTimeDay( tm ) };
}

// Every date from 1 January of one year up to the end of another, written down one after the other.
std::vector<Date> walkCalendar( QV_INT firstYear, QV_INT lastYear )
{
    std::vector<Date> dates;
    Date date = { firstYear, 1, 1 };
    while ( date.year <= lastYear )
    {
        dates.push_back( date );
        QV_INT length = date.month == 2                                                             ? 28
                        : date.month == 4 || date.month == 6 || date.month == 9 || date.month == 11 ? 30
                                                                                                    : 31;
        bool isLeap = date.year % 4 == 0 && ( date.year % 100 != 0 || date.year % 400 == 0 );
        length += date.month == 2 && isLeap;
        if ( ++date.day > length )
        {
            date.day = 1;
            if ( ++date.month > 12 )
            {
                date.month = 1;
                date.year++;
            }
        }
    }
    return dates;
}

} // namespace

TEST( Time, ParsesItsTextWithPartsLeftOut )
{
    const std::pair<const char *, const char *> cases[] = {
        { "UTC 2024-01-01 12:00:00 (Monday)", "UTC 2024-01-01 12:00:00 (Monday)" },
        { "2024", "UTC 2024-01-01 00:00:00 (Monday)" },
        { "2024-02", "UTC 2024-02-01 00:00:00 (Thursday)" },
        { "utc 2024-feb-29 10", "UTC 2024-02-29 10:00:00 (Thursday)" },
        { "uTc  2024-SEPTEMBER-3\t10:7", "UTC 2024-09-03 10:07:00 (Tuesday)" },
        { "2024-01-01 (Monday)", "UTC 2024-01-01 00:00:00 (Monday)" },
        { "UTC 2024 1 ( monday )", "UTC 2024-01-01 01:00:00 (Monday)" },
        { "2024-01-01 23:59:61", "UTC 2024-01-01 23:59:61 (Monday)" },
        { "  0-1-1  ", "UTC 0-01-01 00:00:00 (Saturday)" },
        { "9223372036854775807-12-31", "UTC 9223372036854775807-12-31 00:00:00 (Thursday)" },
        { "2000-2-29", "UTC 2000-02-29 00:00:00 (Tuesday)" },
    };
    for ( auto [from, expected] : cases )
        EXPECT_EQ( expected, parsed( from ) ) << from;
    auto expectNone = []( std::initializer_list<const char *> texts ) {
        for ( const char *bad : texts )
            EXPECT_EQ( "none", parsed( bad ) ) << bad;
    };
    expectNone( { "", "UTC", "-5", "x2024", "2024x", "2024-", "2024-0", "2024-13", "2024-sept", "2024-1-0",
                  "2024-1-32", "2024-1-", "2024-1-1-1", "1900-2-29", "2023-02-29", "2024-04-31" } );
    expectNone( { "2024 ( monday )", "UTC UTC 2024", "2024-01-01 -1", "2024-01-01 10:60",
                  "2024-01-01 10:", "2024-01-01 Monday", "2024-01-01 (Monday", "2024-01-01 (",
                  "2024-01-01 ()", "2024-01-01 (Mon)" } );
    expectNone( { "9223372036854775808", "2024-01-01 24:00:00", "2024-01-01 10:59:62", "2024-01-01 10:59:-1",
                  "2024-01-01 10:00:00:00", "UTC 2024-01-01 00:00:00 (Tuesday)", "2024-01-01 (Monday) x",
                  "2024-01-01 (Monday) 10:00", "UTC 2024-01-01 10:00 (Monday) x",
                  "2024-01-01 10:00 11:00" } );
}

TEST( Time, NamesOfMonthsAndWeekdays )
{
    const char *months[] = { "January", "February", "March",     "April",   "May",      "June",
                             "July",    "August",   "September", "October", "November", "December" };
    for ( QV_INT mo = 1; mo <= 12; mo++ )
    {
        std::string name = months[mo - 1];
        EXPECT_EQ( name, takeUtf8( qvMonthToString( mo ) ) );
        EXPECT_EQ( mo, qvMonthFromString( text( name ) ) );
        EXPECT_EQ( mo, qvMonthFromString( text( " " + name.substr( 0, 3 ) + "\t" ) ) );
        EXPECT_EQ( mo, qvMonthFromString( text( "0" + std::to_string( mo ) ) ) );
        EXPECT_EQ( -1, qvMonthFromString( text( name + "x" ) ) );
    }
    EXPECT_EQ( 3, qvMonthFromString( text( "mAR" ) ) );
    for ( const char *bad : { "", " ", " 3", "3 ", "0", "13", "3.", "-3", "marc" } )
        EXPECT_EQ( -1, qvMonthFromString( text( bad ) ) ) << bad;

    const char *weekdays[] = { "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday" };
    for ( QV_INT wd = 0; wd <= 6; wd++ )
    {
        std::string name = weekdays[wd];
        EXPECT_EQ( name, takeUtf8( qvWeekdayToString( wd ) ) );
        EXPECT_EQ( wd, qvWeekdayFromString( text( "  " + name ) ) );
        EXPECT_EQ( -1, qvWeekdayFromString( text( name.substr( 0, 3 ) ) ) );
    }
    EXPECT_EQ( -1, qvWeekdayFromString( text( "1" ) ) );
    EXPECT_DEATH( qvMonthToString( 0 ), "QV_MONTH_OK" );
    EXPECT_DEATH( qvWeekdayToString( 7 ), "QV_WEEKDAY_OK" );
}

TEST( Time, ShiftsByMonthsAndYearsSkipDaysThatDontExist )
{
    const struct
    {
        Date from;
        QV_INT years, months;
        Date expected;
    } cases[] = {
        { { 2024, 1, 31 }, 0, 1, { 2024, 3, 1 } },       { { 2023, 1, 31 }, 0, 1, { 2023, 3, 1 } },
        { { 2024, 2, 29 }, 1, 0, { 2025, 3, 1 } },       { { 2024, 2, 29 }, 4, 0, { 2028, 2, 29 } },
        { { 2024, 2, 29 }, -124, 0, { 1900, 3, 1 } },    { { 2024, 12, 15 }, 0, 1, { 2025, 1, 15 } },
        { { 2024, 1, 15 }, 0, -1, { 2023, 12, 15 } },    { { 2024, 1, 15 }, 0, -25, { 2021, 12, 15 } },
        { { 2024, 10, 31 }, 0, 25, { 2026, 12, 1 } },    { { 2024, 3, 31 }, 0, -1, { 2024, 3, 1 } },
        { { 0, 1, 1 }, -1, -1, { -2, 12, 1 } },          { { 2024, 5, 5 }, 0, 0, { 2024, 5, 5 } },
        { { 2024, 7, 31 }, 0, -12000, { 1024, 7, 31 } },
    };
    for ( const auto &c : cases )
    {
        Owned tm = timeOf( c.from.year, c.from.month, c.from.day, 1, 2, 3 );
        if ( c.years )
            qvTimeShiftYears( tm.edit(), c.years );
        if ( c.months )
            qvTimeShiftMonths( tm.edit(), c.months );
        EXPECT_EQ( c.expected, dateOf( tm ) ) << shown( tm );
        EXPECT_EQ( 1, qvTimeHour( tm ) );
    }
}

TEST( Time, DatesAgreeWithACalendarWalkedDayByDay )
{
    const std::vector<Date> dates = walkCalendar( -805, 2405 );
    // One known day fixes the weekdays of the whole walk.
    ASSERT_EQ( 0, qvTimeWeekday( timeOf( 2024, 1, 1 ) ) );
    std::mt19937_64 random( 8101 );
    auto below = [&]( size_t limit ) { return static_cast<size_t>( random() % limit ); };

    QV_INT dayOfYear = 0;
    QV_INT weekday = -1;
    for ( size_t idx = 0; idx < dates.size(); idx++ )
    {
        const Date &date = dates[idx];
        dayOfYear = date.month == 1 && date.day == 1 ? 1 : dayOfYear + 1;
        Owned tm = timeOf( date.year, date.month, date.day );
        weekday = idx == 0 ? qvTimeWeekday( tm ) : ( weekday + 1 ) % 7;
        ASSERT_EQ( weekday, qvTimeWeekday( tm ) ) << shown( tm );
        ASSERT_EQ( dayOfYear, qvTimeDayOfYear( tm ) ) << shown( tm );
        bool isLast = idx + 1 == dates.size() || dates[idx + 1].day == 1;
        ASSERT_EQ( isLast, qvTimeDaysInMonth( tm ) == date.day ) << shown( tm );
    }

    for ( int round = 0; round < 100000; round++ )
    {
        size_t from = below( dates.size() );
        // Near and far targets, so that the ends of months and the skipped leap years are met often.
        size_t reach = std::min( dates.size() - 1, from + ( round % 2 ? 70 : dates.size() ) );
        size_t to = round % 4 < 2 ? from + below( reach - from + 1 ) : below( dates.size() );
        Owned tm = timeOf( dates[from].year, dates[from].month, dates[from].day, 23, 59, 58 );
        Owned target = timeOf( dates[to].year, dates[to].month, dates[to].day, 23, 59, 58 );
        auto days = static_cast<QV_INT>( to ) - static_cast<QV_INT>( from );
        ASSERT_EQ( days * 86400, deltaOf( tm, target ) );
        qvTimeShiftDays( tm.edit(), days );
        ASSERT_EQ( dates[to], dateOf( tm ) ) << days << " days from " << dates[from].year;
    }
}

TEST( Time, SecondsAgreeWithThePlatform )
{
    std::mt19937_64 random( 8102 );
    for ( int round = 0; round < 20000; round++ )
    {
        int bits = static_cast<int>( random() % 36 );
        QV_INT from = static_cast<QV_INT>( random() % ( 1ULL << 35 ) ) - ( 1LL << 34 );
        QV_INT shift = static_cast<QV_INT>( random() % ( 2ULL << bits ) ) - ( 1LL << bits );
        Owned tm( qvTimeTryCreateFromTimeT( from ) );
        Owned target( qvTimeTryCreateFromTimeT( from + shift ) );
        ASSERT_TRUE( tm && target );
        ASSERT_EQ( shift, deltaOf( tm, target ) );
        ASSERT_EQ( -shift, deltaOf( target, tm ) );
        qvTimeShiftSeconds( tm.edit(), shift );
        ASSERT_TRUE( qvTimeEquals( tm, target ) ) << shown( tm ) << " and " << shown( target );
        auto t = static_cast<time_t>( from + shift );
        std::tm fields;
        ASSERT_TRUE( gmtime_r( &t, &fields ) );
        ASSERT_EQ( ( fields.tm_wday + 6 ) % 7, qvTimeWeekday( tm ) );
        QV_INT back = 0;
        if ( t != -1 )
        {
            ASSERT_TRUE( qvTimeTryConvertToTimeT( tm, &back ) );
            ASSERT_EQ( t, back );
        }
        ASSERT_EQ( shown( tm ), parsed( shown( tm ) ) );
    }
}

TEST( Time, FarYears )
{
    std::mt19937_64 random( 8103 );
    for ( int round = 0; round < 2000; round++ )
    {
        auto year = static_cast<QV_INT>( random() ) / 4;
        auto count = static_cast<QV_INT>( random() ) / 2;
        Owned tm = timeOf( year, 1 + round % 12, 1 + round % 28, round % 24, round % 60, round % 59 );
        Owned before( qvTimeCreateFrom( tm ) );
        qvTimeShiftSeconds( tm.edit(), count );
        ASSERT_EQ( count, deltaOf( before, tm ) );
        qvTimeShiftSeconds( tm.edit(), -count );
        ASSERT_TRUE( qvTimeEquals( before, tm ) );
        qvTimeShiftDays( tm.edit(), count );
        qvTimeShiftDays( tm.edit(), -count );
        ASSERT_TRUE( qvTimeEquals( before, tm ) );
        // Whole cycles of the calendar keep the weekday.
        Owned cycled( qvTimeCreateFrom( before ) );
        qvTimeSetYear( cycled.edit(), year % 400 );
        ASSERT_EQ( qvTimeWeekday( cycled ), qvTimeWeekday( before ) );
    }

    Owned first = timeOf( QV_INT_MIN, 1, 1 );
    Owned last = timeOf( QV_INT_MAX, 12, 31 );
    QV_INT delta = 7;
    EXPECT_FALSE( qvTimeDeltaSeconds( first, last, &delta ) );
    EXPECT_FALSE( qvTimeDeltaSeconds( timeOf( 0, 1, 1 ), timeOf( 300000000000, 1, 1 ), &delta ) );
    EXPECT_FALSE( qvTimeDeltaSeconds( first, last, nullptr ) );
    EXPECT_EQ( 7, delta );
    EXPECT_FALSE( qvTimeTryConvertToTimeT( first, &delta ) );
    EXPECT_FALSE( qvTimeTryConvertToTimeT( timeOf( 2147485548, 1, 1 ), &delta ) );
    EXPECT_TRUE( qvTimeTryConvertToTimeT( timeOf( 2147485547, 1, 1 ), nullptr ) );
    EXPECT_FALSE( qvTimeTryConvertToTimeT( timeOf( 1969, 12, 31, 23, 59, 59 ), &delta ) );
    EXPECT_EQ( 7, delta );
    EXPECT_EQ( nullptr, qvTimeTryCreateFromTimeT( QV_INT_MAX ) );
    EXPECT_FALSE( qvTimeTryConvertFromTimeT( last.edit(), &first->year ) );
    EXPECT_EQ( QV_INT_MAX, qvTimeYear( last ) );

    EXPECT_DEATH( qvTimeShiftDays( last.edit(), 1 ), "QV_INT_ADD_OK" );
    EXPECT_DEATH( qvTimeShiftSeconds( first.edit(), -1 ), "QV_INT_ADD_OK" );
    EXPECT_DEATH( qvTimeShiftMonths( last.edit(), 1 ), "QV_INT_ADD_OK" );
    EXPECT_DEATH( qvTimeShiftYears( first.edit(), QV_INT_MIN ), "QV_INT_ADD_OK" );
    qvTimeShiftDays( last.edit(), QV_INT_MIN );
    qvTimeShiftDays( first.edit(), QV_INT_MAX );
}

TEST( Time, DaysThatDontExist )
{
    Owned tm = timeOf( 2023, 2, 31, 10 );
    EXPECT_FALSE( qvTimeValid( tm ) );
    EXPECT_EQ( "UTC 2023-02-31 10:00:00", shown( tm ) );
    EXPECT_EQ( -2 * 86400, deltaOf( tm, timeOf( 2023, 3, 1, 10 ) ) );
    EXPECT_EQ( 30 * 86400, deltaOf( timeOf( 2023, 2, 1, 10 ), tm ) );

    const std::pair<QV_INT, Date> cases[] = {
        { 0, { 2023, 2, 31 } },   { -1, { 2023, 2, 30 } }, { -30, { 2023, 2, 1 } },
        { -31, { 2023, 1, 31 } }, { 1, { 2023, 3, 4 } },   { 29, { 2023, 4, 1 } },
    };
    for ( auto [days, expected] : cases )
    {
        Owned moved( qvTimeCreateFrom( tm ) );
        qvTimeShiftDays( moved.edit(), days );
        EXPECT_EQ( expected, dateOf( moved ) ) << days;
    }
}

TEST( Time, LeapSecondsCountAsTheyStand )
{
    Owned tm = timeOf( 2016, 12, 31, 23, 59, 61 );
    EXPECT_EQ( 3, deltaOf( timeOf( 2016, 12, 31, 23, 59, 58 ), tm ) );
    EXPECT_EQ( -1, deltaOf( tm, timeOf( 2017, 1, 1 ) ) );
    qvTimeShiftSeconds( tm.edit(), 0 );
    EXPECT_EQ( "UTC 2017-01-01 00:00:01 (Sunday)", shown( tm ) );
    tm.take( timeOf( 2024, 12, 31, 23, 59, 59 ).give() );
    qvTimeShiftSeconds( tm.edit(), 1 );
    EXPECT_EQ( "UTC 2025-01-01 00:00:00 (Wednesday)", shown( tm ) );
    qvTimeShiftMinutes( tm.edit(), -1 );
    EXPECT_EQ( "UTC 2024-12-31 23:59:00 (Tuesday)", shown( tm ) );
    qvTimeShiftHours( tm.edit(), -24 * 366 );
    EXPECT_EQ( "UTC 2023-12-31 23:59:00 (Sunday)", shown( tm ) );
}

TEST( Time, SettersCheckTheirRangeAndKeepSharedValues )
{
    Owned tm = timeOf( 2024, 1, 31 );
    auto witness = Owned::share( tm );
    qvTimeSetMonth( tm.edit(), 2 );
    EXPECT_EQ( 1, qvTimeMonth( witness ) );
    EXPECT_LT( qvTimeCompare( witness, tm ), 0 );
    EXPECT_LT( qvTimeCompare( timeOf( -1, 12, 31, 23, 59, 59 ), timeOf( 0, 1, 1 ) ), 0 );
    EXPECT_GT( qvTimeCompare( timeOf( 1, 1, 1, 1, 1, 2 ), timeOf( 1, 1, 1, 1, 1, 1 ) ), 0 );
    EXPECT_DEATH( qvTimeSetMonth( tm.edit(), 13 ), "QV_MONTH_OK" );
    EXPECT_DEATH( qvTimeSetDay( tm.edit(), 32 ), "day <= 31" );
    EXPECT_DEATH( qvTimeSetSecond( tm.edit(), 62 ), "second <= 61" );
    EXPECT_EQ( nullptr, qvTimeTryCreateFromSystemTime( 2024, 1, 1, 0, 0, 60 ) );
    EXPECT_EQ( nullptr, qvTimeTryCreateFromSystemTime( 2024, 0, 1, 0, 0, 0 ) );
    Owned odd( qvTimeTryCreateFromSystemTime( 2023, 2, 31, 23, 59, 59 ) );
    EXPECT_EQ( "UTC 2023-02-31 23:59:59", shown( odd ) );

    QV_INT sinceStart = deltaOf( Owned( qv___TimeStarted() ), Owned( qvTimeNow() ) );
    EXPECT_GE( sinceStart, 0 );
    EXPECT_LT( sinceStart, 3600 );
}

TEST( Time, Durations )
{
    EXPECT_EQ( 9223372036854000000, qvNanosecondsTryConvertFromMilliseconds( 9223372036854 ) );
    EXPECT_EQ( -1, qvNanosecondsTryConvertFromMilliseconds( 9223372036855 ) );
    EXPECT_EQ( QV_INT_MAX, qvNanosecondsConvertFromMillisecondsSaturating( 9223372036855 ) );
    EXPECT_EQ( 0, qvNanosecondsConvertToMillisecondsTruncate( 999999 ) );
    EXPECT_EQ( 0, qvNanosecondsConvertToMillisecondsExtend( 0 ) );
    EXPECT_EQ( 1, qvNanosecondsConvertToMillisecondsExtend( 1 ) );
    EXPECT_EQ( 1, qvNanosecondsConvertToMillisecondsExtend( 1000000 ) );
    EXPECT_EQ( 9223372036855, qvNanosecondsConvertToMillisecondsExtend( QV_INT_MAX ) );
    EXPECT_DEATH( qvNanosecondsConvertToMillisecondsTruncate( -1 ), "QV_NANOSECONDS_OK" );
}
