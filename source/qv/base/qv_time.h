#ifndef QV_BASE_QV_TIME_H
#define QV_BASE_QV_TIME_H

/* Calendar date and time in UTC as six numbers, in the Gregorian calendar extended to all years. A time may
 * lie outside of what the platform's clock can hold, and may even name a day that doesn't exist, which
 * qvTimeValid tells. A value with copy-on-write: setters and shifts take the address of the caller's handle
 * and put a private copy there if the record is shared.
 *
 * Times order by year, month, day, hour, minute, second. The text form is "UTC 2024-01-01 12:00:00 (Monday)",
 * without the weekday for a day that doesn't exist. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* Months count from 1 for January to 12, weekdays from 0 for Monday to 6 for Sunday, nanoseconds of a
 * duration from 0. The arguments of the first two are evaluated twice. */
#define QV_MONTH_OK( mo )       ( ( mo ) >= 1 && ( mo ) <= 12 )
#define QV_WEEKDAY_OK( wd )     ( ( wd ) >= 0 && ( wd ) <= 6 )
#define QV_NANOSECONDS_OK( ns ) ( ( ns ) >= 0 )

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_TIME, qvTime )

/* A new time: 1 January of year 0, midnight. */
QV_API QV_TIME *qvTimeCreate( void );

/* A new time with the same fields. */
QV_API QV_TIME *qvTimeCreateFrom( QV_TIME *tm );

/* A new time that holds the present, to the second. */
QV_API QV_TIME *qvTimeNow( void );

/* Sets all six fields to the present. */
QV_API void qvTimeSetNow( QV_TIME **tm );

/* A new time, or null unless month is 1 to 12, day 1 to 31, hour 0 to 23, minute and second 0 to 59. The day
 * need not exist in its month. */
QV_API QV_TIME *qvTimeTryCreateFromSystemTime( QV_INT year, QV_INT month, QV_INT day, QV_INT hour,
                                               QV_INT minute, QV_INT second );

/* A new time from seconds since the start of 1970, or null if the platform can't convert them. */
QV_API QV_TIME *qvTimeTryCreateFromTimeT( QV_INT t );

/* Sets the time from the seconds since the start of 1970 in *t; makes a new one if *tm is null. False, and
 * nothing changes, if the platform can't convert them. */
QV_API QV_BOOL qvTimeTryConvertFromTimeT( QV_TIME **tm, const QV_INT *t );

/* Seconds since the start of 1970, put into *t unless t is null. False, and nothing changes, if the platform
 * can't convert the time; also for the last second of 1969. */
QV_API QV_BOOL qvTimeTryConvertToTimeT( QV_TIME *tm, QV_INT *t );

/* Reads the text form, in which the leading "UTC", the time, the weekday, and the month and day may be
 * missing; the month may be a name. Null if the text is none, names a day that doesn't exist or a wrong
 * weekday. */
QV_API QV_TIME *qvTimeTryCreateFromString( QV_STRING *from );

/* The fields. Years may be any integer. */
QV_API QV_INT qvTimeYear( QV_TIME *tm );
QV_API QV_INT qvTimeMonth( QV_TIME *tm );
QV_API QV_INT qvTimeDay( QV_TIME *tm );
QV_API QV_INT qvTimeHour( QV_TIME *tm );
QV_API QV_INT qvTimeMinute( QV_TIME *tm );
QV_API QV_INT qvTimeSecond( QV_TIME *tm );

/* Set one field and don't look at the others. A month outside 1 to 12, a day outside 1 to 31, an hour outside
 * 0 to 23, a minute outside 0 to 59 or a second outside 0 to 61 stops the process. */
QV_API void qvTimeSetYear( QV_TIME **tm, QV_INT year );
QV_API void qvTimeSetMonth( QV_TIME **tm, QV_INT month );
QV_API void qvTimeSetDay( QV_TIME **tm, QV_INT day );
QV_API void qvTimeSetHour( QV_TIME **tm, QV_INT hour );
QV_API void qvTimeSetMinute( QV_TIME **tm, QV_INT minute );
QV_API void qvTimeSetSecond( QV_TIME **tm, QV_INT second );

/* The calendar at the time's date. The day of the year counts from 1. */
QV_API QV_BOOL qvTimeLeapYear( QV_TIME *tm );
QV_API QV_INT qvTimeDaysInMonth( QV_TIME *tm );
QV_API QV_INT qvTimeDaysInYear( QV_TIME *tm );
QV_API QV_INT qvTimeDayOfYear( QV_TIME *tm );
QV_API QV_INT qvTimeWeekday( QV_TIME *tm );

/* True if the day exists in its month. */
QV_API QV_BOOL qvTimeValid( QV_TIME *tm );

/* Move by a signed count. A shift by years or months that ends on a day that doesn't exist moves on to day 1
 * of the next month. A year beyond the integers stops the process. */
QV_API void qvTimeShiftYears( QV_TIME **tm, QV_INT years );
QV_API void qvTimeShiftMonths( QV_TIME **tm, QV_INT months );
QV_API void qvTimeShiftDays( QV_TIME **tm, QV_INT days );
QV_API void qvTimeShiftHours( QV_TIME **tm, QV_INT hours );
QV_API void qvTimeShiftMinutes( QV_TIME **tm, QV_INT minutes );
QV_API void qvTimeShiftSeconds( QV_TIME **tm, QV_INT seconds );

/* The seconds from tmA to tmB, positive if tmB is later, put into *delta unless delta is null. False, and
 * nothing changes, if they are too many for an integer. */
QV_API QV_BOOL qvTimeDeltaSeconds( QV_TIME *tmA, QV_TIME *tmB, QV_INT *delta );

/* The month of an English name, its first three letters, or a number, or -1. Case doesn't matter. */
QV_API QV_INT qvMonthFromString( QV_STRING *text );

/* The English name, owned by the caller. A bad month stops the process. */
QV_API QV_STRING *qvMonthToString( QV_INT mo );

/* The weekday of an English name, or -1. Case doesn't matter. */
QV_API QV_INT qvWeekdayFromString( QV_STRING *text );

/* The English name, owned by the caller. A bad weekday stops the process. */
QV_API QV_STRING *qvWeekdayToString( QV_INT wd );

/* Milliseconds, at least 0, as nanoseconds; too many give -1, or the largest integer. */
QV_API QV_INT qvNanosecondsTryConvertFromMilliseconds( QV_INT ms );
QV_API QV_INT qvNanosecondsConvertFromMillisecondsSaturating( QV_INT ms );

/* Nanoseconds, at least 0, as milliseconds, rounded down or up. */
QV_API QV_INT qvNanosecondsConvertToMillisecondsTruncate( QV_INT ns );
QV_API QV_INT qvNanosecondsConvertToMillisecondsExtend( QV_INT ns );

QV_END_DECLS

#endif
