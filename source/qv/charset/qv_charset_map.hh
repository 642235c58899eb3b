#ifndef QV_CHARSET_QV_CHARSET_MAP_HH
#define QV_CHARSET_QV_CHARSET_MAP_HH

// The byte charsets: their tables, the coders over plain memory, and the streams.

#include <qv/charset/qv_charset.h>
#include <qv/charset/qv_charset_span.hh>
#include <qv/runtime/qv_obj.hh>
#include <qv/unicode/qv_unicode_normalizer.h>

// A charset's pair of map functions, as in gen/qv_charset_tables.hh.
typedef QV_BOOL ( *qv___CharsetMapByteToCharFunc )( unsigned char byte, QV_CHAR *charOut );
typedef QV_BOOL ( *qv___CharsetMapCharToByteFunc )( QV_CHAR ch, unsigned char *byteOut );

typedef struct qv___CharsetMapCharSourceClosure QV___CHARSET_MAP_CHAR_SOURCE_CLOSURE;
typedef struct qv___CharsetMapCharSinkClosure QV___CHARSET_MAP_CHAR_SINK_CLOSURE;

namespace qv
{

// One byte charset. Invariant of the tables: the two directions are exact inverses, and character 0 is byte
// 0.
struct ByteMap
{
    qv___CharsetMapByteToCharFunc byteToChar;
    qv___CharsetMapCharToByteFunc charToByte;
    const uint16_t *charOf;              // by byte, U+FFFD if unassigned
    const unsigned char ( *pages )[256]; // bytes by the low half of a character, 0 if there is none
    const unsigned char *bytePageOf;     // pages by the high half of a character
    const unsigned char *plainPageOf;    // the same without what composition may change or join
    bool asciiBase;                      // the bytes below 128 are ASCII
    bool complete;                       // every byte is assigned
};

inline constexpr QV_INT byteMapCount = 44;

// By charset value, 0 to 43.
extern const ByteMap byteMaps[byteMapCount];

inline QV_BOOL mapByteToChar( const ByteMap &map, unsigned char byte, QV_CHAR *charOut )
{
    if ( map.charOf[byte] == replacementChar )
        return QV_FALSE;
    *charOut = map.charOf[byte];
    return QV_TRUE;
}

inline QV_BOOL mapCharToByte( const ByteMap &map, QV_CHAR ch, unsigned char *byteOut )
{
    const unsigned char byte = ch < 0x10000 ? map.pages[map.bytePageOf[ch >> 8]][ch & 0xFF] : 0;
    if ( byte == 0 && ch != 0 )
        return QV_FALSE;
    *byteOut = byte;
    return QV_TRUE;
}

// True if the charset has the character and normal form C neither changes it nor joins it to one before it.
inline bool isPlain( const ByteMap &map, QV_CHAR ch )
{
    return ch < 0x10000 && map.pages[map.plainPageOf[ch >> 8]][ch & 0xFF] != 0;
}

// Decodes until the bytes or the room are used up; false if an invalid byte, then used up, ends the
// conversion.
bool mapDecode( const ByteMap &map, OnInvalid invalid, DecodeSpan *span );

// Encodes leading plain characters, at most count of them; bytes has room for count. Returns how many there
// were.
QV_INT mapEncodePlain( const ByteMap &map, const QV_CHAR *chars, QV_INT count, unsigned char *bytes );

// The table of a map function, null if it is none of the library's.
const ByteMap *byteMapOf( qv___CharsetMapByteToCharFunc mapFunc );
const ByteMap *byteMapOf( qv___CharsetMapCharToByteFunc mapFunc );

// Where an encoder's bytes go: memory from next to end, and what to do when it is full.
struct ByteTarget
{
    unsigned char *next;
    unsigned char *end;
    // Makes room again; false fails the conversion.
    bool ( *makeRoom )( ByteTarget *target );
};

// Encodes text in normal form C. Characters that composition can't touch skip the normalizer; what waits
// there, and what comes out of it when, is the same as if all text went through it.
class MapEncoder
{
  public:
    // invalid by the normalized flags; the normalizer, of form C, is borrowed.
    MapEncoder( qv___CharsetMapCharToByteFunc mapFunc, QV_CHARSET_FLAGS flags, QV_UNICODE_NORMALIZER *norm );

    // False if the target or an invalid character ends the conversion.
    bool write( const QV_CHAR *chars, QV_INT count, ByteTarget *target );

    // Ends the text: brings out what the normalizer holds back.
    bool flush( ByteTarget *target );

  private:
    QV_INT writePlain( const QV_CHAR *chars, QV_INT count, ByteTarget *target, bool *ok );
    QV_INT knottyLength( const QV_CHAR *chars, QV_INT count ) const;
    bool push( ByteTarget *target );
    bool put( QV_CHAR ch, ByteTarget *target );

    const ByteMap *map_; // null if the function is none of the library's
    qv___CharsetMapCharToByteFunc mapFunc_;
    OnInvalid invalid_;
    unsigned char replacement_;
    QV_UNICODE_NORMALIZER *norm_;
};

} // namespace qv

// Invariant of both: 0 <= cachePos <= cacheLen <= the cache's size.
struct qv___CharsetMapCharSourceClosure : qv___Obj
{
    QV_BYTE_SOURCE *byteSource;
    QV_CHARSET_FLAGS flags;
    qv___CharsetMapByteToCharFunc mapFunc;
    unsigned char cache[1024];
    QV_INT cacheLen;
    QV_INT cachePos;
};

struct qv___CharsetMapCharSinkClosure : qv___Obj
{
    QV_BYTE_SINK *byteSink;
    QV_CHARSET_FLAGS flags;
    qv___CharsetMapCharToByteFunc mapFunc;
    QV_UNICODE_NORMALIZER *norm;
    unsigned char cache[1024];
    QV_INT cacheLen;
};

extern "C" {
QV_SORT_FUNCTIONS_INTERNAL( QV___CHARSET_MAP_CHAR_SOURCE_CLOSURE, qv___CharsetMapCharSourceClosure )
QV_SORT_FUNCTIONS_INTERNAL( QV___CHARSET_MAP_CHAR_SINK_CLOSURE, qv___CharsetMapCharSinkClosure )
}

void qv___CharsetMapCharSourceClosureFreeFunc( qvObj thisObj );
void qv___CharsetMapCharSinkClosureFreeFunc( qvObj thisObj );

// New streams over a byte stream, which they retain. flags are normalized.
QV_CHAR_SOURCE *qv___CharsetMapCharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags,
                                                 qv___CharsetMapByteToCharFunc mapFunc );
QV_CHAR_SINK *qv___CharsetMapCharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags,
                                             qv___CharsetMapCharToByteFunc mapFunc );

#endif
