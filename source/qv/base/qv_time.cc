#include <qv/base/qv_time.hh>

#include <qv/base/qv_string.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_int.h>

#include <ctime>
#include <limits>

// The record of a time, its fields, and the conversions to and from the platform's time. The calendar stands in
// qv_time_calendar.cc, the texts in qv_time_text.cc.

QV_SORT_DEFINE( QV_TIME, qvTime,
                { .compareFunc = qv___TimeCompareFunc, .toStringFunc = qv___TimeToStringFunc } )

namespace
{

constinit QV_TIME *started = nullptr;

QV_TIME *createTime( QV_INT year, QV_INT month, QV_INT day, QV_INT hour, QV_INT minute, QV_INT second )
{
    auto *tm = qv::create<QV_TIME>( qvTimeSort() );
    tm->year = year;
    tm->month = month;
    tm->day = day;
    tm->hour = hour;
    tm->minute = minute;
    tm->second = second;
    return tm;
}

QV_INT compareNumbers( QV_INT thisNumber, QV_INT thatNumber )
{
    return ( thisNumber > thatNumber ) - ( thisNumber < thatNumber );
}

// Seconds since 1970 in the platform's calendar form. False if the platform can't tell.
bool splitSeconds( QV_INT seconds, std::tm *fields )
{
    if ( seconds < std::numeric_limits<time_t>::min() || seconds > std::numeric_limits<time_t>::max() )
        return false;
    auto t = static_cast<time_t>( seconds );
    return ::gmtime_r( &t, fields ) != nullptr;
}

void setFields( QV_TIME **tm, const std::tm &fields )
{
    qvTimeSetYear( tm, static_cast<QV_INT>( fields.tm_year ) + 1900 );
    qvTimeSetMonth( tm, fields.tm_mon + 1 );
    qvTimeSetDay( tm, fields.tm_mday );
    qvTimeSetHour( tm, fields.tm_hour );
    qvTimeSetMinute( tm, fields.tm_min );
    qvTimeSetSecond( tm, fields.tm_sec );
}

} // namespace

QV_INT qv___TimeCompareFunc( qvObj thisObj, qvObj thatObj )
{
    auto *thisTime = static_cast<QV_TIME *>( thisObj );
    auto *thatTime = static_cast<QV_TIME *>( thatObj );
    if ( QV_INT order = compareNumbers( thisTime->year, thatTime->year ) )
        return order;
    if ( QV_INT order = compareNumbers( thisTime->month, thatTime->month ) )
        return order;
    if ( QV_INT order = compareNumbers( thisTime->day, thatTime->day ) )
        return order;
    if ( QV_INT order = compareNumbers( thisTime->hour, thatTime->hour ) )
        return order;
    if ( QV_INT order = compareNumbers( thisTime->minute, thatTime->minute ) )
        return order;
    return compareNumbers( thisTime->second, thatTime->second );
}

void qv___TimeStartup()
{
    started = qvTimeNow();
}

void qv___TimeShutdown()
{
    qv::retire( &started );
}

QV_TIME *qv___TimeStarted()
{
    return qv::retained( started );
}

QV_TIME *qvTimeCreate( void )
{
    return createTime( 0, 1, 1, 0, 0, 0 );
}

QV_TIME *qvTimeCreateFrom( QV_TIME *tm )
{
    QV_CHECK( tm );
    return createTime( tm->year, tm->month, tm->day, tm->hour, tm->minute, tm->second );
}

QV_TIME *qvTimeNow( void )
{
    QV_TIME *tm = qvTimeCreate();
    qvTimeSetNow( &tm );
    return tm;
}

void qvTimeSetNow( QV_TIME **tm )
{
    QV_CHECK( tm );
    QV_CHECK( *tm );
    std::tm fields;
    QV_CHECK( splitSeconds( std::time( nullptr ), &fields ) );
    setFields( tm, fields );
}

QV_TIME *qvTimeTryCreateFromSystemTime( QV_INT year, QV_INT month, QV_INT day, QV_INT hour, QV_INT minute,
                                        QV_INT second )
{
    bool inRange = QV_MONTH_OK( month ) && day >= 1 && day <= 31 && hour >= 0 && hour <= 23 && minute >= 0 &&
                   minute <= 59 && second >= 0 && second <= 59;
    return inRange ? createTime( year, month, day, hour, minute, second ) : nullptr;
}

QV_TIME *qvTimeTryCreateFromTimeT( QV_INT t )
{
    QV_TIME *tm = nullptr;
    return qvTimeTryConvertFromTimeT( &tm, &t ) ? tm : nullptr;
}

QV_BOOL qvTimeTryConvertFromTimeT( QV_TIME **tm, const QV_INT *t )
{
    QV_CHECK( tm );
    QV_CHECK( t );
    std::tm fields;
    if ( !splitSeconds( *t, &fields ) )
        return QV_FALSE;
    if ( !*tm )
        *tm = qvTimeCreate();
    setFields( tm, fields );
    return QV_TRUE;
}

QV_BOOL qvTimeTryConvertToTimeT( QV_TIME *tm, QV_INT *t )
{
    QV_CHECK( tm );
    if ( !QV_INT_SUB_OK( tm->year, 1900 ) )
        return QV_FALSE;
    QV_INT year = tm->year - 1900;
    if ( year < std::numeric_limits<int32_t>::min() || year > std::numeric_limits<int32_t>::max() )
        return QV_FALSE;
    std::tm fields = {};
    fields.tm_year = static_cast<int>( year );
    fields.tm_mon = static_cast<int>( tm->month - 1 );
    fields.tm_mday = static_cast<int>( tm->day );
    fields.tm_hour = static_cast<int>( tm->hour );
    fields.tm_min = static_cast<int>( tm->minute );
    fields.tm_sec = static_cast<int>( tm->second );
    time_t seconds = ::timegm( &fields );
    if ( seconds == -1 )
        return QV_FALSE;
    if ( t )
        *t = seconds;
    return QV_TRUE;
}

QV_INT qvTimeYear( QV_TIME *tm )
{
    QV_CHECK( tm );
    return tm->year;
}

QV_INT qvTimeMonth( QV_TIME *tm )
{
    QV_CHECK( tm );
    return tm->month;
}

QV_INT qvTimeDay( QV_TIME *tm )
{
    QV_CHECK( tm );
    return tm->day;
}

QV_INT qvTimeHour( QV_TIME *tm )
{
    QV_CHECK( tm );
    return tm->hour;
}

QV_INT qvTimeMinute( QV_TIME *tm )
{
    QV_CHECK( tm );
    return tm->minute;
}

QV_INT qvTimeSecond( QV_TIME *tm )
{
    QV_CHECK( tm );
    return tm->second;
}

void qvTimeSetYear( QV_TIME **tm, QV_INT year )
{
    QV_CHECK( tm );
    QV_CHECK( *tm );
    qv::makePrivate( tm, qvTimeCreateFrom );
    ( *tm )->year = year;
}

void qvTimeSetMonth( QV_TIME **tm, QV_INT month )
{
    QV_CHECK( tm );
    QV_CHECK( *tm );
    QV_CHECK( QV_MONTH_OK( month ) );
    qv::makePrivate( tm, qvTimeCreateFrom );
    ( *tm )->month = month;
}

void qvTimeSetDay( QV_TIME **tm, QV_INT day )
{
    QV_CHECK( tm );
    QV_CHECK( *tm );
    QV_CHECK( day >= 1 );
    QV_CHECK( day <= 31 );
    qv::makePrivate( tm, qvTimeCreateFrom );
    ( *tm )->day = day;
}

void qvTimeSetHour( QV_TIME **tm, QV_INT hour )
{
    QV_CHECK( tm );
    QV_CHECK( *tm );
    QV_CHECK( hour >= 0 );
    QV_CHECK( hour <= 23 );
    qv::makePrivate( tm, qvTimeCreateFrom );
    ( *tm )->hour = hour;
}

void qvTimeSetMinute( QV_TIME **tm, QV_INT minute )
{
    QV_CHECK( tm );
    QV_CHECK( *tm );
    QV_CHECK( minute >= 0 );
    QV_CHECK( minute <= 59 );
    qv::makePrivate( tm, qvTimeCreateFrom );
    ( *tm )->minute = minute;
}

void qvTimeSetSecond( QV_TIME **tm, QV_INT second )
{
    QV_CHECK( tm );
    QV_CHECK( *tm );
    QV_CHECK( second >= 0 );
    QV_CHECK( second <= 61 );
    qv::makePrivate( tm, qvTimeCreateFrom );
    ( *tm )->second = second;
}

QV_INT qvNanosecondsTryConvertFromMilliseconds( QV_INT ms )
{
    QV_CHECK( ms >= 0 );
    return QV_INT_MUL_OK( ms, 1000000 ) ? ms * 1000000 : -1;
}

QV_INT qvNanosecondsConvertFromMillisecondsSaturating( QV_INT ms )
{
    QV_CHECK( ms >= 0 );
    return qvIntMulSaturating( ms, 1000000 );
}

QV_INT qvNanosecondsConvertToMillisecondsTruncate( QV_INT ns )
{
    QV_CHECK( QV_NANOSECONDS_OK( ns ) );
    return ns / 1000000;
}

QV_INT qvNanosecondsConvertToMillisecondsExtend( QV_INT ns )
{
    QV_CHECK( QV_NANOSECONDS_OK( ns ) );
    return ns / 1000000 + ( ns % 1000000 > 0 );
}
