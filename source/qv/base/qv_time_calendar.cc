// The calendar: leap years, weekdays, shifts and differences. A day that doesn't exist in its month counts as that many
// days behind the start of the month.

#include <qv/base/qv_time.hh>

#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>

namespace
{

constexpr QV_INT daysPerCycle = 146097; // the calendar repeats every 400 years
constexpr QV_INT secondsPerDay = 86400;

bool isLeapYear( QV_INT year )
{
    return year % 400 == 0 || ( year % 4 == 0 && year % 100 != 0 );
}

QV_INT daysInMonth( QV_INT year, QV_INT month )
{
    switch ( month )
    {
    case 2:
        return isLeapYear( year ) ? 29 : 28;
    case 4:
    case 6:
    case 9:
    case 11:
        return 30;
    default:
        return 31;
    }
}

// From 1 January to the start of the month.
QV_INT daysBeforeMonth( QV_INT year, QV_INT month )
{
    constexpr QV_INT days[] = { 0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334 };
    return days[month - 1] + ( month > 2 && isLeapYear( year ) ? 1 : 0 );
}

// From the start of the 400 years to the start of one of them, 0 to 400.
QV_INT daysBeforeYearOfCycle( QV_INT yearOfCycle )
{
    return 365 * yearOfCycle + ( yearOfCycle + 3 ) / 4 - ( yearOfCycle + 99 ) / 100 +
           ( yearOfCycle + 399 ) / 400;
}

// Rounds towards negative infinity; divisor is above 0.
QV_INT floorDivide( QV_INT dividend, QV_INT divisor )
{
    return dividend / divisor - ( dividend % divisor < 0 );
}

QV_INT floorModulo( QV_INT dividend, QV_INT divisor )
{
    QV_INT remainder = dividend % divisor;
    return remainder < 0 ? remainder + divisor : remainder;
}

// From the start of its 400 years to the time's date.
QV_INT dayOfCycle( QV_TIME *tm )
{
    return daysBeforeYearOfCycle( floorModulo( tm->year, 400 ) ) + daysBeforeMonth( tm->year, tm->month ) +
           tm->day - 1;
}

bool isValid( QV_TIME *tm )
{
    return tm->day <= daysInMonth( tm->year, tm->month );
}

QV_INT secondOfDay( QV_TIME *tm )
{
    return 3600 * tm->hour + 60 * tm->minute + tm->second;
}

void makePrivate( QV_TIME **tm )
{
    QV_CHECK( tm );
    QV_CHECK( *tm );
    qv::makePrivate( tm, qvTimeCreateFrom );
}

void addYears( QV_TIME *tm, QV_INT years )
{
    QV_CHECK( QV_INT_ADD_OK( tm->year, years ) );
    tm->year += years;
}

// A day that doesn't exist becomes day 1 of the next month, which is never in the next year: December has 31 days.
void moveToExistingDay( QV_TIME *tm )
{
    if ( isValid( tm ) )
        return;
    tm->month++;
    tm->day = 1;
}

// Sets the date to a day counted from the start of the 400 years that hold the time's year, and cycles times 400 years
// later. The day may lie outside of the 400 years.
void setDayOfCycle( QV_TIME *tm, QV_INT cycles, QV_INT day )
{
    QV_INT before = floorModulo( tm->year, 400 );
    cycles += floorDivide( day, daysPerCycle );
    day = floorModulo( day, daysPerCycle );

    QV_INT year = day / 366;
    while ( daysBeforeYearOfCycle( year + 1 ) <= day )
    {
        year++;
    }
    day -= daysBeforeYearOfCycle( year );
    QV_INT month = 12;
    while ( daysBeforeMonth( year, month ) > day )
    {
        month--;
    }
    addYears( tm, 400 * cycles + year - before );
    tm->month = month;
    tm->day = day - daysBeforeMonth( year, month ) + 1;
}

// Adds a count to a field that runs from 0 to base - 1, and carries into the next larger unit.
void shiftField( QV_TIME **tm, QV_INT qv___Time::*field, QV_INT base, QV_INT count,
                 void ( *shiftLarger )( QV_TIME **tm, QV_INT count ) )
{
    makePrivate( tm );
    QV_INT value = ( *tm )->*field + count % base;
    QV_INT carry = 0;
    if ( value >= base )
        carry = 1;
    else if ( value < 0 )
        carry = -1;
    ( *tm )->*field = value - carry * base;
    shiftLarger( tm, carry );
    shiftLarger( tm, count / base );
}

// From the earlier to the later date. False on overflow.
bool secondsBetweenDates( QV_TIME *earlier, QV_TIME *later, QV_INT *seconds )
{
    QV_INT cycles = floorDivide( later->year, 400 ) - floorDivide( earlier->year, 400 );
    QV_INT days;
    return !__builtin_mul_overflow( cycles, daysPerCycle, &days ) &&
           !__builtin_add_overflow( days, dayOfCycle( later ) - dayOfCycle( earlier ), &days ) &&
           !__builtin_mul_overflow( days, secondsPerDay, seconds );
}

} // namespace

QV_BOOL qvTimeLeapYear( QV_TIME *tm )
{
    QV_CHECK( tm );
    return isLeapYear( tm->year );
}

QV_INT qvTimeDaysInMonth( QV_TIME *tm )
{
    QV_CHECK( tm );
    return daysInMonth( tm->year, tm->month );
}

QV_INT qvTimeDaysInYear( QV_TIME *tm )
{
    QV_CHECK( tm );
    return isLeapYear( tm->year ) ? 366 : 365;
}

QV_INT qvTimeDayOfYear( QV_TIME *tm )
{
    QV_CHECK( tm );
    return daysBeforeMonth( tm->year, tm->month ) + tm->day;
}

QV_INT qvTimeWeekday( QV_TIME *tm )
{
    QV_CHECK( tm );
    // 1 January of year 0, and so of every 400th year, is a Saturday.
    return ( dayOfCycle( tm ) + 5 ) % 7;
}

QV_BOOL qvTimeValid( QV_TIME *tm )
{
    QV_CHECK( tm );
    return isValid( tm );
}

void qvTimeShiftYears( QV_TIME **tm, QV_INT years )
{
    makePrivate( tm );
    addYears( *tm, years );
    moveToExistingDay( *tm );
}

void qvTimeShiftMonths( QV_TIME **tm, QV_INT months )
{
    makePrivate( tm );
    QV_INT month = ( *tm )->month - 1 + months % 12;
    addYears( *tm, months / 12 + floorDivide( month, 12 ) );
    ( *tm )->month = floorModulo( month, 12 ) + 1;
    moveToExistingDay( *tm );
}

void qvTimeShiftDays( QV_TIME **tm, QV_INT days )
{
    makePrivate( tm );
    // Within the month, a day that doesn't exist may stay one.
    if ( days <= 0 && days > -( *tm )->day )
        ( *tm )->day += days;
    else
        setDayOfCycle( *tm, days / daysPerCycle, dayOfCycle( *tm ) + days % daysPerCycle );
}

void qvTimeShiftHours( QV_TIME **tm, QV_INT hours )
{
    shiftField( tm, &qv___Time::hour, 24, hours, qvTimeShiftDays );
}

void qvTimeShiftMinutes( QV_TIME **tm, QV_INT minutes )
{
    shiftField( tm, &qv___Time::minute, 60, minutes, qvTimeShiftHours );
}

void qvTimeShiftSeconds( QV_TIME **tm, QV_INT seconds )
{
    shiftField( tm, &qv___Time::second, 60, seconds, qvTimeShiftMinutes );
}

QV_BOOL qvTimeDeltaSeconds( QV_TIME *tmA, QV_TIME *tmB, QV_INT *delta )
{
    QV_CHECK( tmA );
    QV_CHECK( tmB );
    bool isNegative = qv___TimeCompareFunc( tmA, tmB ) > 0;
    QV_TIME *earlier = isNegative ? tmB : tmA;
    QV_TIME *later = isNegative ? tmA : tmB;
    QV_INT seconds;
    bool fits = secondsBetweenDates( earlier, later, &seconds ) &&
                !__builtin_add_overflow( seconds, secondOfDay( later ), &seconds ) &&
                !__builtin_sub_overflow( seconds, secondOfDay( earlier ), &seconds );
    if ( fits && delta )
        *delta = isNegative ? -seconds : seconds;
    return fits;
}
