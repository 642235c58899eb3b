#ifndef QV_CHARSET_QV_CHARSET_UTF_HH
#define QV_CHARSET_QV_CHARSET_UTF_HH

// The streams of the Unicode forms. Everywhere: 0 <= cachePos <= cacheLen <= the cache's size.

#include <qv/charset/qv_charset.h>
#include <qv/runtime/qv_obj.hh>

typedef struct qv___CharsetUtf8CharSourceClosure QV___CHARSET_UTF8_CHAR_SOURCE_CLOSURE;
typedef struct qv___CharsetUtf8CharSinkClosure QV___CHARSET_UTF8_CHAR_SINK_CLOSURE;
typedef struct qv___CharsetUtf16CharSourceClosure QV___CHARSET_UTF16_CHAR_SOURCE_CLOSURE;
typedef struct qv___CharsetUtf16CharSinkClosure QV___CHARSET_UTF16_CHAR_SINK_CLOSURE;
typedef struct qv___CharsetUtf32CharSourceClosure QV___CHARSET_UTF32_CHAR_SOURCE_CLOSURE;
typedef struct qv___CharsetUtf32CharSinkClosure QV___CHARSET_UTF32_CHAR_SINK_CLOSURE;

struct qv___CharsetUtf8CharSourceClosure : qv___Obj
{
    QV_BYTE_SOURCE *byteSource;
    QV_CHARSET_FLAGS flags;
    QV_INT state;    // of qv::Utf8Decoder; between reads never inside a sequence
    QV_BOOL started; // a character or a byte order mark has been met
    unsigned char cache[1024];
    QV_INT cacheLen;
    QV_INT cachePos;
};

struct qv___CharsetUtf8CharSinkClosure : qv___Obj
{
    QV_BYTE_SINK *byteSink;
    QV_CHARSET_FLAGS flags;
    unsigned char cache[1024];
    QV_INT cacheLen;
};

struct qv___CharsetUtf16CharSourceClosure : qv___Obj
{
    QV_BYTE_SOURCE *byteSource;
    QV_CHARSET_FLAGS flags;
    QV_BOOL littleEndian;
    QV_BOOL bomDone; // the byte order is decided
    unsigned char cache[1024];
    QV_INT cacheLen;
    QV_INT cachePos;
};

struct qv___CharsetUtf16CharSinkClosure : qv___Obj
{
    QV_BYTE_SINK *byteSink;
    QV_CHARSET_FLAGS flags;
    QV_BOOL littleEndian;
    unsigned char cache[1024];
    QV_INT cacheLen;
};

struct qv___CharsetUtf32CharSourceClosure : qv___Obj
{
    QV_BYTE_SOURCE *byteSource;
    QV_CHARSET_FLAGS flags;
    QV_BOOL littleEndian;
    QV_BOOL bomDone; // the byte order is decided
    unsigned char cache[1024];
    QV_INT cacheLen;
    QV_INT cachePos;
};

struct qv___CharsetUtf32CharSinkClosure : qv___Obj
{
    QV_BYTE_SINK *byteSink;
    QV_CHARSET_FLAGS flags;
    QV_BOOL littleEndian;
    unsigned char cache[1024];
    QV_INT cacheLen;
};

extern "C" {
QV_SORT_FUNCTIONS_INTERNAL( QV___CHARSET_UTF8_CHAR_SOURCE_CLOSURE, qv___CharsetUtf8CharSourceClosure )
QV_SORT_FUNCTIONS_INTERNAL( QV___CHARSET_UTF8_CHAR_SINK_CLOSURE, qv___CharsetUtf8CharSinkClosure )
QV_SORT_FUNCTIONS_INTERNAL( QV___CHARSET_UTF16_CHAR_SOURCE_CLOSURE, qv___CharsetUtf16CharSourceClosure )
QV_SORT_FUNCTIONS_INTERNAL( QV___CHARSET_UTF16_CHAR_SINK_CLOSURE, qv___CharsetUtf16CharSinkClosure )
QV_SORT_FUNCTIONS_INTERNAL( QV___CHARSET_UTF32_CHAR_SOURCE_CLOSURE, qv___CharsetUtf32CharSourceClosure )
QV_SORT_FUNCTIONS_INTERNAL( QV___CHARSET_UTF32_CHAR_SINK_CLOSURE, qv___CharsetUtf32CharSinkClosure )
}

void qv___CharsetUtf8CharSourceClosureFreeFunc( qvObj thisObj );
void qv___CharsetUtf8CharSinkClosureFreeFunc( qvObj thisObj );
void qv___CharsetUtf16CharSourceClosureFreeFunc( qvObj thisObj );
void qv___CharsetUtf16CharSinkClosureFreeFunc( qvObj thisObj );
void qv___CharsetUtf32CharSourceClosureFreeFunc( qvObj thisObj );
void qv___CharsetUtf32CharSinkClosureFreeFunc( qvObj thisObj );

// New streams over a byte stream, which they retain. flags are normalized. Of each width the first form looks
// for a byte order mark and is little endian without one; the others have a fixed order and take a mark as a
// character.
QV_CHAR_SOURCE *qv___CharsetUtf8CharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags );
QV_CHAR_SINK *qv___CharsetUtf8CharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags );
QV_CHAR_SOURCE *qv___CharsetUtf16CharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags );
QV_CHAR_SOURCE *qv___CharsetUtf16BECharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags );
QV_CHAR_SOURCE *qv___CharsetUtf16LECharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags );
QV_CHAR_SINK *qv___CharsetUtf16CharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags );
QV_CHAR_SINK *qv___CharsetUtf16BECharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags );
QV_CHAR_SINK *qv___CharsetUtf16LECharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags );
QV_CHAR_SOURCE *qv___CharsetUtf32CharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags );
QV_CHAR_SOURCE *qv___CharsetUtf32BECharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags );
QV_CHAR_SOURCE *qv___CharsetUtf32LECharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags );
QV_CHAR_SINK *qv___CharsetUtf32CharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags );
QV_CHAR_SINK *qv___CharsetUtf32BECharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags );
QV_CHAR_SINK *qv___CharsetUtf32LECharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags );

#endif
