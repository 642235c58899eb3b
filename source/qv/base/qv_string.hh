#ifndef QV_BASE_QV_STRING_HH
#define QV_BASE_QV_STRING_HH

// Strings as the library's own code sees them: the record, inline readers and appends, gaps for bulk writers,
// and the plans of making room and compacting.

#include <qv/base/qv_string.h>
#include <qv/runtime/qv_obj.hh>

#include <cstring>

#define QV___STRING_INLINE 64

// The text occupies chars[fspace] to chars[fspace + length - 1]; in front of it fspace slots are free, behind
// it bspace. Invariant: chars is inlineChars or an array from the memory layer that the string owns, with at
// least fspace + length + bspace slots; the inline store has exactly that many. A shared record is never
// written.
struct qv___String : qv___Obj
{
    QV_INT length;
    QV_INT fspace;
    QV_INT bspace;
    QV_CHAR *chars;
    QV_CHAR inlineChars[QV___STRING_INLINE];
};

// The one shared empty string, from startup to shutdown.
extern QV_STRING *qv___StringEmpty;

void qv___StringStartup();
void qv___StringShutdown();

// Opens a gap of count slots at text position atIndex of a private string and returns its address; length has
// grown by count, the gap is not filled.
QV_CHAR *qv___StringMakeRoom( QV_STRING *qvs, QV_INT atIndex, QV_INT count );

// Gives spare storage of a private string back when there is much of it.
void qv___StringCompact( QV_STRING *qvs );

extern "C" {
extern qv___Sort qv___sort_QV_STRING;
}

namespace qv
{

// ---- Readers without checks, for handles and indexes that are known to be good ----

inline QV_INT stringLength( QV_STRING *qvs )
{
    return qvs->length;
}

inline QV_CHAR *stringBacking( QV_STRING *qvs )
{
    return qvs->chars + qvs->fspace;
}

inline QV_CHAR stringCharAt( QV_STRING *qvs, QV_INT idx )
{
    return qvs->chars[qvs->fspace + idx];
}

inline bool charsEqual( const QV_CHAR *chsA, const QV_CHAR *chsB, QV_INT count )
{
    return count == 0 || std::memcmp( chsA, chsB, static_cast<size_t>( count ) * sizeof( QV_CHAR ) ) == 0;
}

inline bool stringEquals( QV_STRING *qvsA, QV_STRING *qvsB )
{
    return qvsA == qvsB || ( qvsA->length == qvsB->length &&
                             charsEqual( stringBacking( qvsA ), stringBacking( qvsB ), qvsA->length ) );
}

inline void copyChars( QV_CHAR *dest, const QV_CHAR *src, QV_INT count )
{
    if ( count > 0 )
        std::memcpy( dest, src, static_cast<size_t>( count ) * sizeof( QV_CHAR ) );
}

// The order of two arrays as qvStringCompare tells it: -1, 0 or 1.
QV_INT compareChars( const QV_CHAR *chsA, QV_INT lengthA, const QV_CHAR *chsB, QV_INT lengthB );

inline QV_INT stringCompare( QV_STRING *qvsA, QV_STRING *qvsB )
{
    return compareChars( stringBacking( qvsA ), qvsA->length, stringBacking( qvsB ), qvsB->length );
}

// ---- Bulk writers ----

// A new private string of the given length whose text the caller fills at once: stringBacking( it ) is where.
QV_STRING *stringCreateUnfilled( QV_INT length );

// Makes *dest private if it is shared and opens a gap of count slots at idx, which the caller fills at once.
// The text of the old record stays good while somebody else holds it.
QV_CHAR *stringOpenGap( QV_STRING **dest, QV_INT idx, QV_INT count );

// stringOpenGap at the end, for runs of appends.
inline QV_CHAR *stringOpenEnd( QV_STRING **dest, QV_INT count )
{
    QV_STRING *qvs = *dest;
    // An empty text without front spare takes its first characters from the back as well.
    if ( qvs->bspace >= count && ( qvs->length > 0 || qvs->fspace == 0 ) && !isShared( qvs ) )
    {
        QV_CHAR *gap = qvs->chars + qvs->fspace + qvs->length;
        qvs->length += count;
        qvs->bspace -= count;
        return gap;
    }
    return stringOpenGap( dest, qvs->length, count );
}

// The forms below in full, for what their quick paths leave.
void stringAppendCharSlowly( QV_STRING **dest, QV_CHAR ch );
void stringPrependCharSlowly( QV_STRING **dest, QV_CHAR ch );

// Appends a code point that is known to be valid.
[[gnu::always_inline]] inline void stringAppendChar( QV_STRING **dest, QV_CHAR ch )
{
    QV_STRING *qvs = *dest;
    QV_INT length = qvs->length;
    QV_INT bspace = qvs->bspace;
    if ( bspace == 0 || length == 0 || isShared( qvs ) )
    {
        stringAppendCharSlowly( dest, ch );
        return;
    }
    qvs->chars[qvs->fspace + length] = ch;
    qvs->length = length + 1;
    qvs->bspace = bspace - 1;
}

// Prepends a code point that is known to be valid.
[[gnu::always_inline]] inline void stringPrependChar( QV_STRING **dest, QV_CHAR ch )
{
    QV_STRING *qvs = *dest;
    QV_INT fspace = qvs->fspace;
    if ( fspace == 0 || isShared( qvs ) )
    {
        stringPrependCharSlowly( dest, ch );
        return;
    }
    qvs->chars[fspace - 1] = ch;
    qvs->fspace = fspace - 1;
    qvs->length++;
}

// Appends code points that are known to be valid and don't lie inside *dest.
inline void stringAppendChars( QV_STRING **dest, const QV_CHAR *chs, QV_INT chsLength )
{
    if ( chsLength > 0 )
        copyChars( stringOpenEnd( dest, chsLength ), chs, chsLength );
}

// Appends the ASCII literal's characters.
template <size_t SIZE> inline void stringAppendLiteral( QV_STRING **dest, const char ( &literal )[SIZE] )
{
    QV_CHAR *gap = stringOpenEnd( dest, static_cast<QV_INT>( SIZE - 1 ) );
    for ( size_t idx = 0; idx + 1 < SIZE; idx++ )
    {
        gap[idx] = static_cast<unsigned char>( literal[idx] );
    }
}

// ---- Byte and wide text as code points ----

// Code points of a text that a caller gives as bytes or wide characters, for the length of a block and without a string
// object. Checks what the Cstr and Wcstr forms promise to check.
class DecodedChars
{
  public:
    DecodedChars( const char *cstr, QV_INT length );
    DecodedChars( const wchar_t *wcstr, QV_INT length );
    DecodedChars( const DecodedChars & ) = delete;
    DecodedChars &operator=( const DecodedChars & ) = delete;
    ~DecodedChars();

    const QV_CHAR *chars() const
    {
        return chars_;
    }

    QV_INT length() const
    {
        return length_;
    }

  private:
    QV_CHAR *roomFor( QV_INT capacity );

    static constexpr QV_INT ownSlots = 256;

    QV_CHAR *chars_;
    QV_INT length_;
    QV_CHAR own_[ownSlots];
};

// ---- Search in arrays: the index of the first or last hit, or -1 ----

QV_INT findChar( const QV_CHAR *chs, QV_INT chsLength, QV_CHAR ch );
QV_INT findCharFromRight( const QV_CHAR *chs, QV_INT chsLength, QV_CHAR ch );
// subLength is above 0.
QV_INT findChars( const QV_CHAR *chs, QV_INT chsLength, const QV_CHAR *sub, QV_INT subLength );
QV_INT findCharsFromRight( const QV_CHAR *chs, QV_INT chsLength, const QV_CHAR *sub, QV_INT subLength );

// ---- Decisions about storage ----

// The fixed sizes behind the decisions; tests use tiny ones.
struct StringLimits
{
    QV_INT front;       // front spare of a grown array
    QV_INT shortBack;   // back spare of a grown array
    QV_INT longBack;    // the same for long texts
    QV_INT longLength;  // length at which a text counts as long
    QV_INT inlineSlots; // slots of the inline store

    constexpr QV_INT backFor( QV_INT length ) const
    {
        return length < longLength ? shortBack : longBack;
    }
};

inline constexpr StringLimits stringLimits = { QV_STRING_FSPACE, 32, 0x20000, 0x10000, QV___STRING_INLINE };

// Where the text lies in its storage.
struct StringShape
{
    QV_INT length;
    QV_INT fspace;
    QV_INT bspace;
    bool isInline;
};

// What making room does. The text in front of the gap starts at slot fspace, the gap behind it, the rest
// behind the gap. slots is the size of the new array, 0 if the storage stays.
struct StringRoomPlan
{
    QV_INT fspace;
    QV_INT bspace;
    QV_INT slots;
};

StringRoomPlan planStringRoom( const StringShape &shape, QV_INT atIndex, QV_INT count,
                               const StringLimits &limits );

enum class StringCompaction
{
    none,
    empty,    // free the array, nothing to keep
    toInline, // free the array, keep the text in the inline store
    toArray   // move the text to a smaller array
};

StringCompaction planStringCompaction( const StringShape &shape, const StringLimits &limits );

} // namespace qv

#endif
