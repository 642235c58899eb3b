// The texts of times, months and weekdays.

#include <qv/base/qv_time.hh>

#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>

#include <cstring>

namespace
{

constexpr const char *monthNames[] = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December",
};

constexpr const char *weekdayNames[] = {
    "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday",
};

QV_STRING *stringAt( QV_VECTOR *vec, QV_INT idx )
{
    return static_cast<QV_STRING *>( qv::vectorAt( vec, idx ) );
}

// True if the lower-case text is the first nameLength letters of the name.
bool equalsName( QV_STRING *lowered, const char *name, QV_INT nameLength )
{
    if ( qv::stringLength( lowered ) != nameLength )
        return false;
    for ( QV_INT idx = 0; idx < nameLength; idx++ )
    {
        // Only the first letter of a name is a capital.
        QV_CHAR expected = static_cast<unsigned char>( name[idx] ) | 0x20;
        if ( qv::stringCharAt( lowered, idx ) != expected )
            return false;
    }
    return true;
}

QV_STRING *createTrimmedLower( QV_STRING *text )
{
    QV_STRING *lowered = qvStringCreateFrom( text );
    qvStringTrim( &lowered );
    qvStringToLower( &lowered );
    return lowered;
}

// A decimal number from least to most that takes up the whole text.
bool scanNumber( QV_STRING *text, QV_INT least, QV_INT most, QV_INT *number )
{
    QV_INT consumed;
    return qvStringScanInt( text, 0, -1, 10, number, &consumed ) && consumed == qv::stringLength( text ) &&
           *number >= least && *number <= most;
}

// Year, month and day, of which the last two may be missing.
bool parseDate( QV_STRING *text, QV_TIME *tm )
{
    qv::Local<QV_VECTOR> pieces( qvStringSplitChar( text, '-', 3 ) );
    QV_INT count = qv::vectorLength( pieces );
    if ( !scanNumber( stringAt( pieces, 0 ), 0, QV_INT_MAX, &tm->year ) )
        return false;
    if ( count > 1 )
    {
        QV_INT month = qvMonthFromString( stringAt( pieces, 1 ) );
        if ( month == -1 )
            return false;
        tm->month = month;
    }
    return count <= 2 || scanNumber( stringAt( pieces, 2 ), 1, 31, &tm->day );
}

// Hour, minute and second, of which the last two may be missing.
bool parseClock( QV_STRING *text, QV_TIME *tm )
{
    qv::Local<QV_VECTOR> pieces( qvStringSplitChar( text, ':', 3 ) );
    QV_INT count = qv::vectorLength( pieces );
    return scanNumber( stringAt( pieces, 0 ), 0, 23, &tm->hour ) &&
           ( count <= 1 || scanNumber( stringAt( pieces, 1 ), 0, 59, &tm->minute ) ) &&
           ( count <= 2 || scanNumber( stringAt( pieces, 2 ), 0, 61, &tm->second ) );
}

// The weekday of the date, in brackets.
bool isWeekdayOf( QV_STRING *text, QV_TIME *tm )
{
    if ( !qvStringBeginsWithChar( text, '(' ) || !qvStringEndsWithChar( text, ')' ) )
        return false;
    qv::Local<QV_STRING> name( qvStringCreateFromInner( text, 1, qv::stringLength( text ) - 2 ) );
    return qvWeekdayFromString( name ) == qvTimeWeekday( tm );
}

// Reads the parts from left to right into a private time.
bool parseParts( QV_VECTOR *parts, QV_TIME *tm )
{
    QV_INT count = qv::vectorLength( parts );
    QV_INT idx = qvStringEqualsCaseFoldCstr( stringAt( parts, 0 ), "UTC", -1 ) ? 1 : 0;
    if ( idx == count || !parseDate( stringAt( parts, idx++ ), tm ) )
        return false;
    if ( idx < count && !qvStringBeginsWithChar( stringAt( parts, idx ), '(' ) )
    {
        if ( !parseClock( stringAt( parts, idx++ ), tm ) )
            return false;
    }
    if ( !qvTimeValid( tm ) )
        return false;
    if ( idx < count && !isWeekdayOf( stringAt( parts, idx++ ), tm ) )
        return false;
    return idx == count;
}

} // namespace

QV_STRING *qv___TimeToStringFunc( qvObj thisObj )
{
    auto *tm = static_cast<QV_TIME *>( thisObj );
    QV_STRING *text = qvStringCreateFromFormatCstr( "UTC %i-%02i-%02i %02i:%02i:%02i", -1, tm->year,
                                                    tm->month, tm->day, tm->hour, tm->minute, tm->second );
    if ( qvTimeValid( tm ) )
        qvStringAppendFormatCstr( &text, " (%~s)", -1, qvWeekdayToString( qvTimeWeekday( tm ) ) );
    return text;
}

QV_TIME *qvTimeTryCreateFromString( QV_STRING *from )
{
    QV_CHECK( from );
    qv::Local<QV_VECTOR> parts( qvStringSplitWhitespace( from, 4 ) );
    qv::Local<QV_TIME> tm( qvTimeCreate() );
    return parseParts( parts, tm ) ? tm.give() : nullptr;
}

QV_INT qvMonthFromString( QV_STRING *text )
{
    QV_CHECK( text );
    qv::Local<QV_STRING> lowered( createTrimmedLower( text ) );
    for ( QV_INT idx = 0; idx < QV_SIZEOF_ARRAY( monthNames ); idx++ )
    {
        const char *name = monthNames[idx];
        if ( equalsName( lowered, name, 3 ) ||
             equalsName( lowered, name, static_cast<QV_INT>( std::strlen( name ) ) ) )
            return idx + 1;
    }
    // A number counts only without blanks around it.
    QV_INT month;
    bool isNumber =
        qv::stringLength( lowered ) == qv::stringLength( text ) && scanNumber( lowered, 1, 12, &month );
    return isNumber ? month : -1;
}

QV_STRING *qvMonthToString( QV_INT mo )
{
    QV_CHECK( QV_MONTH_OK( mo ) );
    return qvStringCreateFromCstr( monthNames[mo - 1], -1 );
}

QV_INT qvWeekdayFromString( QV_STRING *text )
{
    QV_CHECK( text );
    qv::Local<QV_STRING> lowered( createTrimmedLower( text ) );
    for ( QV_INT idx = 0; idx < QV_SIZEOF_ARRAY( weekdayNames ); idx++ )
    {
        const char *name = weekdayNames[idx];
        if ( equalsName( lowered, name, static_cast<QV_INT>( std::strlen( name ) ) ) )
            return idx;
    }
    return -1;
}

QV_STRING *qvWeekdayToString( QV_INT wd )
{
    QV_CHECK( QV_WEEKDAY_OK( wd ) );
    return qvStringCreateFromCstr( weekdayNames[wd], -1 );
}
