#ifndef QV_BASE_QV_FORMAT_HH
#define QV_BASE_QV_FORMAT_HH

// The format engine and the appending forms of the encoders, which write straight into the destination's
// storage.

#include <qv/base/qv_format.h>
#include <qv/runtime/qv_obj.hh>

// Digits by value, 36 code points each.
extern const QV_CHAR qv___FormatDigitsLower[36];
extern const QV_CHAR qv___FormatDigitsUpper[36];

// Executes a format and returns a new string. The arguments are taken from argList, which is advanced.
QV_STRING *qv___FormatArgList( QV_STRING *fmt, QV_ARG_LIST *argList );

// The same with the format as code points, so that formats given as bytes need no string object.
QV_STRING *qv___FormatCharsArgList( const QV_CHAR *fmt, QV_INT fmtLength, QV_ARG_LIST *argList );

// The flag characters of the engine as bits: the encoders' flags, and above them those that only the engine
// knows. # counts its repetitions up to 3.
#define QV___FORMAT_FMT_HASH      0x200
#define QV___FORMAT_FMT_HASH_MASK 0x600
#define QV___FORMAT_FMT_OWNED     0x800 // ~

// The workers of the engine; dest is a handle, fmtFlags are flag characters.
void qv___FormatFmtInt( QV_STRING **dest, QV_INT value, QV_INT base, QV_INT minWidth, QV_INT fmtFlags );
void qv___FormatFmtObj( QV_STRING **dest, QV_STRING *qvs, QV_INT minWidth, QV_INT precision,
                        QV_INT fmtFlags );

// Reads the digits of a width, precision or base at *position, or takes the next argument for a "*", and
// moves *position behind it; false if neither stands there, which leaves *value and *position alone.
QV_BOOL qv___FormatScanIntArg( const QV_CHAR *fmt, QV_INT fmtLength, QV_INT *position, QV_ARG_LIST *argList,
                               QV_INT *value );

// Appends code points padded with blanks.
void qv___FormatEncodeChars( QV_STRING **dest, const QV_CHAR *src, QV_INT srcLength, QV_INT minWidth,
                             QV_FORMAT_FLAGS flags );

// Appends the base prefix, if dest isn't null, and returns its length.
QV_INT qv___FormatEncodeBase( QV_STRING **dest, QV_INT base, QV_FORMAT_FLAGS flags );

void qv___FormatFlagsStartup();
void qv___FormatFlagsShutdown();
void qv___FormatStartup();
void qv___FormatShutdown();

namespace qv
{

// The encoders' appending forms, with the same checks. They write into the storage of *dest at once; a null
// *dest becomes a new string.
void formatAppendInt( QV_STRING **dest, QV_INT value, QV_INT base, QV_INT minWidth, QV_FORMAT_FLAGS flags );
void formatAppendReal( QV_STRING **dest, double value, QV_INT base, QV_INT minWidth, QV_INT precision,
                       QV_FORMAT_FLAGS flags );

} // namespace qv

#endif
