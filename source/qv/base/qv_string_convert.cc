// Strings from and to bytes and wide characters.

#include <qv/base/qv_string.hh>

#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_chars.h>
#include <qv/sys/qv_mem.h>

#include <cwchar>

// Up to this many bytes a second decoding pass costs less than an array that turns out too large.
static constexpr QV_INT twoPassBytes = 4 * QV___STRING_INLINE;

static QV_INT lengthOf( const char *cstr, QV_INT length )
{
    QV_CHECK( length >= -1 );
    QV_CHECK( cstr || length == 0 );
    return length == -1 ? static_cast<QV_INT>( std::strlen( cstr ) ) : length;
}

static QV_INT lengthOf( const wchar_t *wcstr, QV_INT length )
{
    QV_CHECK( length >= -1 );
    QV_CHECK( wcstr || length == 0 );
    return length == -1 ? static_cast<QV_INT>( std::wcslen( wcstr ) ) : length;
}

static void setInlineLength( QV_STRING *fresh, QV_INT length )
{
    fresh->length = length;
    fresh->bspace = QV___STRING_INLINE - length;
}

static QV_STRING *createFromFewBytes( const char *utf8, QV_INT length )
{
    QV_STRING *qvs = qv::stringCreateUnfilled( 0 );
    QV_INT count = qvCharsConvertFromUtf8( qvs->inlineChars, QV___STRING_INLINE, utf8, length );
    if ( count <= QV___STRING_INLINE )
    {
        setInlineLength( qvs, count );
        return qvs;
    }
    QV_CHAR *gap = qv___StringMakeRoom( qvs, 0, count );
    qvCharsConvertFromUtf8( gap, count, utf8, length );
    return qvs;
}

// No byte yields more than one code point, so one pass into an array of as many slots does; what is left of it goes back.
static QV_STRING *createFromManyBytes( const char *utf8, QV_INT length )
{
    QV_INT back = qv::stringLimits.backFor( length );
    QV_CHECK( QV_INT_ADD_OK( length, QV_STRING_FSPACE + back ) );
    QV_INT slots = QV_STRING_FSPACE + length + back;
    auto *chars = static_cast<QV_CHAR *>( qvMemAllocN( slots, sizeof( QV_CHAR ) ) );
    QV_INT count = qvCharsConvertFromUtf8( chars + QV_STRING_FSPACE, length, utf8, length );
    QV_STRING *qvs = qv::stringCreateUnfilled( 0 );
    if ( count <= QV___STRING_INLINE )
    {
        qv::copyChars( qvs->inlineChars, chars + QV_STRING_FSPACE, count );
        qvMemFree( chars );
        setInlineLength( qvs, count );
        return qvs;
    }
    QV_INT neededBack = qv::stringLimits.backFor( count );
    QV_INT neededSlots = QV_STRING_FSPACE + count + neededBack;
    if ( neededSlots < slots )
        chars = static_cast<QV_CHAR *>( qvMemReallocN( chars, neededSlots, sizeof( QV_CHAR ) ) );
    qvs->chars = chars;
    qvs->length = count;
    qvs->fspace = QV_STRING_FSPACE;
    qvs->bspace = neededBack;
    qv___ObjDbgSetAllocationSizeN( qvs, neededSlots, sizeof( QV_CHAR ) );
    return qvs;
}

QV_STRING *qvStringCreateFromUtf8( const char *cstr, QV_INT length )
{
    QV_INT byteCount = lengthOf( cstr, length );
    if ( byteCount == 0 )
        return qvStringCreate();
    return byteCount <= twoPassBytes ? createFromFewBytes( cstr, byteCount )
                                     : createFromManyBytes( cstr, byteCount );
}

QV_STRING *qvStringCreateFromCstr( const char *cstr, QV_INT length )
{
    return qvStringCreateFromUtf8( cstr, length );
}

QV_STRING *qvStringCreateFromAscii( const char *cstr, QV_INT length )
{
    QV_INT count = lengthOf( cstr, length );
    if ( count == 0 )
        return qvStringCreate();
    QV_STRING *qvs = qv::stringCreateUnfilled( count );
    qvCharsConvertFromAscii( qv::stringBacking( qvs ), count, cstr, count );
    return qvs;
}

QV_STRING *qvStringCreateFromWcstr( const wchar_t *wcstr, QV_INT length )
{
    QV_INT count = lengthOf( wcstr, length );
    if ( count == 0 )
        return qvStringCreate();
    QV_STRING *qvs = qv::stringCreateUnfilled( count );
    qvCharsConvertFromWcstr( qv::stringBacking( qvs ), count, wcstr, count );
    return qvs;
}

// ---- Decoded text without a string ----

QV_CHAR *qv::DecodedChars::roomFor( QV_INT capacity )
{
    chars_ = own_;
    if ( capacity > ownSlots )
        chars_ = static_cast<QV_CHAR *>( qvMemAllocN( capacity, sizeof( QV_CHAR ) ) );
    return chars_;
}

qv::DecodedChars::DecodedChars( const char *cstr, QV_INT length )
{
    QV_INT byteCount = lengthOf( cstr, length );
    length_ = qvCharsConvertFromUtf8( roomFor( byteCount ), byteCount, cstr, byteCount );
}

qv::DecodedChars::DecodedChars( const wchar_t *wcstr, QV_INT length )
{
    QV_INT count = lengthOf( wcstr, length );
    length_ = qvCharsConvertFromWcstr( roomFor( count ), count, wcstr, count );
}

qv::DecodedChars::~DecodedChars()
{
    if ( chars_ != own_ )
        qvMemFree( chars_ );
}

// ---- From strings ----

// Measures, allocates and converts with one of the converters of code points.
template <typename UNIT>
static UNIT *convertTo( QV_INT ( *convert )( UNIT *, QV_INT, const QV_CHAR *, QV_INT, QV_BOOL ),
                        QV_STRING *qvs, QV_BOOL addNullTerminator, QV_INT *outLength )
{
    QV_CHECK( qvs );
    const QV_CHAR *chars = qv::stringBacking( qvs );
    QV_INT length = convert( nullptr, 0, chars, qvs->length, addNullTerminator );
    if ( outLength )
        *outLength = length;
    if ( length == 0 )
        return nullptr;
    auto *units = static_cast<UNIT *>( qvMemAllocN( length, sizeof( UNIT ) ) );
    convert( units, length, chars, qvs->length, addNullTerminator );
    return units;
}

char *qvStringConvertToAscii( QV_STRING *qvs, QV_BOOL addNullTerminator, QV_INT *outLength )
{
    return convertTo( qvCharsConvertToAscii, qvs, addNullTerminator, outLength );
}

char *qvStringConvertToCstr( QV_STRING *qvs, QV_BOOL addNullTerminator, QV_INT *outLength )
{
    return convertTo( qvCharsConvertToCstr, qvs, addNullTerminator, outLength );
}

char *qvStringConvertToUtf8( QV_STRING *qvs, QV_BOOL addNullTerminator, QV_INT *outLength )
{
    return convertTo( qvCharsConvertToUtf8, qvs, addNullTerminator, outLength );
}

wchar_t *qvStringConvertToWcstr( QV_STRING *qvs, QV_BOOL addNullTerminator, QV_INT *outLength )
{
    return convertTo( qvCharsConvertToWcstr, qvs, addNullTerminator, outLength );
}
