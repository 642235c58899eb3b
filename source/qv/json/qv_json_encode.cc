#include <qv/json/qv_json_encode.h>

#include <qv/base/qv_buffer.h>
#include <qv/base/qv_frame_stack.hh>
#include <qv/charset/qv_charset_span.hh>
#include <qv/io/qv_nlf_flags.hh>
#include <qv/json/qv_json_options.hh>
#include <qv/json/qv_json_text.hh>
#include <qv/json/qv_json_value.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_mem.h>

#include <algorithm>
#include <cstring>

namespace
{

// A growing array of what a text is made of: characters, or bytes of UTF-8. Its end is the writer's to know.
template <typename UNIT> class Text
{
  public:
    Text() = default;
    Text( const Text & ) = delete;
    Text &operator=( const Text & ) = delete;

    ~Text()
    {
        qvMemFree( begin_ );
    }

    // Where to go on at after making sure of room for count units behind at.
    UNIT *reserve( UNIT *at, QV_INT count )
    {
        return end_ - at >= count ? at : grow( at, count );
    }

    QV_INT lengthTo( const UNIT *at ) const
    {
        return at - begin_;
    }

    const UNIT *units() const
    {
        return begin_;
    }

    // Hands the array over, without its part behind at.
    UNIT *give( const UNIT *at )
    {
        auto *units = static_cast<UNIT *>( qvMemReallocN( begin_, lengthTo( at ), sizeof( UNIT ) ) );
        begin_ = end_ = nullptr;
        return units;
    }

  private:
    [[gnu::noinline]] UNIT *grow( UNIT *at, QV_INT count )
    {
        QV_INT used = lengthTo( at );
        QV_INT size = end_ - begin_;
        QV_CHECK( QV_INT_ADD_OK( size, count ) );
        QV_CHECK( QV_INT_MUL_OK( size + count, 2 ) );
        size = size == 0 && count < 256 ? 512 : ( size + count ) * 2;
        begin_ = static_cast<UNIT *>( qvMemReallocN( begin_, size, sizeof( UNIT ) ) );
        end_ = begin_ + size;
        return begin_ + used;
    }

    UNIT *begin_ = nullptr;
    UNIT *end_ = nullptr;
};

// Each of the following puts something at a place that has room for it, and returns the place behind it. What is put in
// words may write over the next seven units.

template <typename UNIT> UNIT *put( UNIT *at, QV_CHAR ch )
{
    *at = static_cast<UNIT>( ch );
    return at + 1;
}

template <typename UNIT, size_t SIZE> UNIT *putLiteral( UNIT *at, const char ( &literal )[SIZE] )
{
    for ( size_t idx = 0; idx + 1 < SIZE; idx++ )
    {
        at[idx] = static_cast<unsigned char>( literal[idx] );
    }
    return at + SIZE - 1;
}

// An ASCII text that may be read in words.
unsigned char *putWords( unsigned char *at, const unsigned char *bytes, QV_INT length )
{
    for ( QV_INT idx = 0; idx < length; idx += 8 )
    {
        std::memcpy( at + idx, bytes + idx, 8 );
    }
    return at + length;
}

QV_CHAR *putWords( QV_CHAR *at, const unsigned char *bytes, QV_INT length )
{
    return std::copy( bytes, bytes + length, at );
}

template <typename UNIT> UNIT *putEscape( UNIT *at, QV_CHAR ch )
{
    at = put( at, '\\' );
    switch ( ch )
    {
    case '"':
    case '\\':
        return put( at, ch );
    case '\b':
        return put( at, 'b' );
    case '\t':
        return put( at, 't' );
    case '\n':
        return put( at, 'n' );
    case '\f':
        return put( at, 'f' );
    case '\r':
        return put( at, 'r' );
    default:
        at = putLiteral( at, "u00" );
        at = put( at, static_cast<unsigned char>( "0123456789ABCDEF"[ch >> 4] ) );
        return put( at, static_cast<unsigned char>( "0123456789ABCDEF"[ch & 15] ) );
    }
}

QV_CHAR *putRun( QV_CHAR *at, const QV_CHAR *chs, QV_INT length )
{
    qv::copyChars( at, chs, length );
    return at + length;
}

unsigned char *putRun( unsigned char *at, const QV_CHAR *chs, QV_INT length )
{
    qv::EncodeSpan span = { chs, chs + length, at, at + 4 * length };
    qv::utf8Encode( &span, qv::OnInvalid::replace );
    return span.bytes;
}

// What stands between the quotes, from characters.
template <typename UNIT> UNIT *putEscaped( UNIT *at, const QV_CHAR *chs, QV_INT length )
{
    const QV_CHAR *end = chs + length;
    for ( ;; )
    {
        QV_INT run = qv::jsonPlainRun( chs, end - chs );
        at = putRun( at, chs, run );
        chs += run;
        if ( chs == end )
            return at;
        at = putEscape( at, *chs++ );
    }
}

// The same from the tail of a value, which may be read in words up to the one that its last byte is in.
unsigned char *putEscaped( unsigned char *at, const unsigned char *bytes, QV_INT length )
{
    QV_INT idx = 0;
    while ( idx < length )
    {
        // Behind an escape the rest may not stand at a whole word.
        bool isWhole = length - idx >= 8 || idx % 8 == 0;
        QV_INT room = isWhole ? std::min<QV_INT>( length - idx, 8 ) : 1;
        uint64_t marks = 0;
        if ( isWhole )
        {
            uint64_t word = qv::jsonLoadWord( bytes + idx );
            std::memcpy( at, bytes + idx, 8 );
            marks = qv::jsonSpecialBits( word );
        }
        else
        {
            *at = bytes[idx];
            marks = qv::jsonIsSpecial( bytes[idx] ) ? 0x80 : 0;
        }
        QV_INT run = marks ? std::min( qv::jsonFirstMarked( marks ), room ) : room;
        at += run;
        idx += run;
        if ( run < room )
            at = putEscape( at, bytes[idx++] );
    }
    return at;
}

QV_CHAR *putEscaped( QV_CHAR *at, const unsigned char *bytes, QV_INT length )
{
    const unsigned char *end = bytes + length;
    for ( ;; )
    {
        QV_INT run = qv::jsonPlainRun( bytes, end - bytes );
        at = qv::jsonDecodeUtf8( bytes, run, at );
        bytes += run;
        if ( bytes == end )
            return at;
        at = putEscape( at, *bytes++ );
    }
}

// A short text of ASCII without anything to escape, out of a string's own store, in words; null if it isn't that.
unsigned char *putPlainName( unsigned char *at, QV_STRING *name )
{
    constexpr QV_INT longest = QV___STRING_INLINE - 8;
    QV_INT length = qv::stringLength( name );
    if ( length > longest || name->chars != name->inlineChars || name->fspace > 0 )
        return nullptr;
    for ( QV_INT idx = 0; idx < length; idx += 8 )
    {
        const QV_CHAR *chs = name->inlineChars + idx;
        QV_CHAR wide = 0;
        unsigned char bytes[8];
        for ( QV_INT lane = 0; lane < 8; lane++ )
        {
            // What stands behind the text counts for nothing.
            QV_CHAR ch = idx + lane < length ? chs[lane] : ' ';
            wide |= ch;
            bytes[lane] = static_cast<unsigned char>( ch );
        }
        if ( wide >= 0x80 || qv::jsonSpecialBits( qv::jsonLoadWord( bytes ) ) )
            return nullptr;
        std::memcpy( at + idx, bytes, 8 );
    }
    return at + length;
}

QV_CHAR *putPlainName( QV_CHAR *, QV_STRING * )
{
    return nullptr;
}

// How a text is laid out.
struct Layout
{
    bool singleLine;
    bool packed;
    QV_STRING *indent; // borrowed
    qv::NlfChars nlf;
};

Layout layoutOf( QV_JSON_FLAGS flags, QV_JSON_OPTIONS *opt )
{
    return { ( flags & QV_JSON_FLAG_ENCODE_SINGLE_LINE ) != 0, ( flags & QV_JSON_FLAG_ENCODE_PACKED ) != 0,
             opt->encodeIndent, qv::nlfCharsOf( opt->encodeNlfFlags ) };
}

// An object or array that is being written.
struct Frame
{
    QV_JSON_VALUE *val; // borrowed
    QV_INT next;        // the entry to write
    QV_INT length;
};

// Large trees don't fit the caches, and their records stand where nothing but the tree itself tells. So what will be written
// soon is fetched ahead: the records of entries, then the containers of those that have one.
constexpr QV_INT fetchAhead = 6;
constexpr QV_INT fetchContentAhead = 2;

const QV_JSON_VALUE *entryAt( const Frame &frame, QV_INT idx )
{
    return frame.val->type == QV_JSON_TYPE_ARRAY ? qv::jsonItemAt( frame.val, idx )
                                                 : qv::jsonMemberAt( frame.val, idx );
}

void fetchEntry( const Frame &frame, QV_INT idx )
{
    if ( idx < frame.length )
        __builtin_prefetch( &entryAt( frame, idx )->type );
}

void fetchContent( const Frame &frame, QV_INT idx )
{
    if ( idx >= frame.length )
        return;
    const QV_JSON_VALUE *val = entryAt( frame, idx );
    if ( !qv::jsonIsContainer( val ) )
        return;
    auto *record = reinterpret_cast<const char *>( val->objectMembers );
    __builtin_prefetch( record + 64 );
    __builtin_prefetch( record + 128 );
}

template <typename UNIT> class Writer
{
  public:
    explicit Writer( const Layout &layout );
    Writer( const Writer & ) = delete;
    Writer &operator=( const Writer & ) = delete;

    // Writes the whole text of a value and returns its end.
    UNIT *write( QV_JSON_VALUE *root );

    Text<UNIT> text;

  private:
    // Units that all short puts of one entry take together, and then some.
    static constexpr QV_INT smallRoom = 64;
    // Units that a character may take, escaped or encoded.
    static constexpr QV_INT widest = 6;
    // Characters of a long text that are written at once.
    static constexpr QV_INT pieceLength = 4096;

    UNIT *qv___JsonEncodeNext( UNIT *at, QV_INT level );
    UNIT *qv___JsonEncodeValue( UNIT *at, QV_JSON_VALUE *val );
    UNIT *qv___JsonEncodeString( UNIT *at, QV_STRING *string );
    UNIT *putName( UNIT *at, QV_STRING *name );
    UNIT *putText( UNIT *at, QV_JSON_VALUE *val );
    UNIT *putNextEntry( UNIT *at );
    UNIT *open( UNIT *at, QV_JSON_VALUE *val );
    UNIT *close( UNIT *at );
    UNIT *extendBreak( QV_INT level );

    Layout layout_;
    // What stands between tokens on different lines: the break, and the indents of as many levels as came up.
    Text<UNIT> break_;
    UNIT *breakEnd_ = nullptr;
    QV_INT breakLevels_ = -1;
    QV_INT breakLength_ = 0;  // of the break alone, with which level 0 begins
    QV_INT indentLength_ = 0; // of one indent
    qv::FrameStack<Frame> frames_;
};

template <typename UNIT> Writer<UNIT>::Writer( const Layout &layout ) : layout_( layout )
{
    if ( layout_.packed )
        return;
    const QV_CHAR blank = ' ';
    const QV_CHAR *chs = layout_.singleLine ? &blank : layout_.nlf.chars;
    QV_INT length = layout_.singleLine ? 1 : layout_.nlf.length;
    breakEnd_ = putRun( break_.reserve( breakEnd_, smallRoom ), chs, length );
    breakLength_ = length;
    breakLevels_ = 0;
}

// Adds the indents up to a level.
template <typename UNIT> UNIT *Writer<UNIT>::extendBreak( QV_INT level )
{
    QV_INT width = qv::stringLength( layout_.indent );
    QV_CHECK( QV_INT_MUL_OK( width, widest ) );
    for ( ; breakLevels_ < level; breakLevels_++ )
    {
        UNIT *begin = break_.reserve( breakEnd_, width * widest + smallRoom );
        breakEnd_ = putRun( begin, qv::stringBacking( layout_.indent ), width );
        indentLength_ = breakEnd_ - begin;
    }
    return breakEnd_;
}

// Writes what stands between two tokens on different lines, and makes sure of room for short puts behind it.
template <typename UNIT> UNIT *Writer<UNIT>::qv___JsonEncodeNext( UNIT *at, QV_INT level )
{
    if ( layout_.packed )
        return text.reserve( at, smallRoom );
    if ( !layout_.singleLine && level > breakLevels_ )
        extendBreak( level );
    QV_INT length = breakLength_ + ( layout_.singleLine ? 0 : level * indentLength_ );
    at = text.reserve( at, length + smallRoom );
    std::memcpy( at, break_.units(), static_cast<size_t>( length ) * sizeof( UNIT ) );
    return at + length;
}

template <typename UNIT> UNIT *Writer<UNIT>::qv___JsonEncodeString( UNIT *at, QV_STRING *string )
{
    const QV_CHAR *chs = qv::stringBacking( string );
    const QV_CHAR *end = chs + qv::stringLength( string );
    at = put( text.reserve( at, smallRoom ), '"' );
    while ( chs < end )
    {
        QV_INT length = std::min<QV_INT>( end - chs, pieceLength );
        at = text.reserve( at, length * widest + smallRoom );
        at = putEscaped( at, chs, length );
        chs += length;
    }
    return put( at, '"' );
}

template <typename UNIT> UNIT *Writer<UNIT>::putName( UNIT *at, QV_STRING *name )
{
    at = text.reserve( at, smallRoom + QV___STRING_INLINE );
    if ( UNIT *behind = putPlainName( at + 1, name ) )
    {
        *at = '"';
        return put( behind, '"' );
    }
    return text.reserve( qv___JsonEncodeString( at, name ), smallRoom );
}

// The text of a number or string in a value's tail.
template <typename UNIT> UNIT *Writer<UNIT>::putText( UNIT *at, QV_JSON_VALUE *val )
{
    QV_INT length = val->tailLength;
    at = text.reserve( at, length * widest + smallRoom );
    if ( val->type == QV_JSON_TYPE_NUMBER )
        return putWords( at, qv::jsonTail( val ), length );
    at = put( at, '"' );
    at = putEscaped( at, qv::jsonTail( val ), length );
    return put( at, '"' );
}

// Writes a scalar or an empty object or array, or begins one with entries. There is room for what is short.
template <typename UNIT> UNIT *Writer<UNIT>::qv___JsonEncodeValue( UNIT *at, QV_JSON_VALUE *val )
{
    switch ( val->type )
    {
    case QV_JSON_TYPE_NULL:
        return putLiteral( at, "null" );
    case QV_JSON_TYPE_FALSE:
        return putLiteral( at, "false" );
    case QV_JSON_TYPE_TRUE:
        return putLiteral( at, "true" );
    case QV_JSON_TYPE_NUMBER:
        if ( !val->isHeld )
            return putText( at, val );
        at = text.reserve( at, qv::stringLength( val->text ) * widest + smallRoom );
        return putRun( at, qv::stringBacking( val->text ), qv::stringLength( val->text ) );
    case QV_JSON_TYPE_STRING:
        return val->isHeld ? qv___JsonEncodeString( at, val->text ) : putText( at, val );
    default:
        return open( at, val );
    }
}

template <typename UNIT> UNIT *Writer<UNIT>::open( UNIT *at, QV_JSON_VALUE *val )
{
    bool isObject = val->type == QV_JSON_TYPE_OBJECT;
    QV_INT length = qv::jsonLength( val );
    at = put( at, isObject ? '{' : '[' );
    if ( length == 0 )
        return put( at, isObject ? '}' : ']' );
    frames_.push( { val, 0, length } );
    for ( QV_INT idx = 0; idx < fetchAhead; idx++ )
    {
        fetchEntry( frames_.top(), idx );
    }
    return at;
}

// Ends the innermost object or array.
template <typename UNIT> UNIT *Writer<UNIT>::close( UNIT *at )
{
    bool isObject = frames_.pop().val->type == QV_JSON_TYPE_OBJECT;
    at = qv___JsonEncodeNext( at, frames_.depth() );
    return put( at, isObject ? '}' : ']' );
}

// Writes the next member or element of the innermost object or array.
template <typename UNIT> UNIT *Writer<UNIT>::putNextEntry( UNIT *at )
{
    Frame *frame = &frames_.top();
    QV_INT idx = frame->next++;
    fetchEntry( *frame, idx + fetchAhead );
    fetchContent( *frame, idx + fetchContentAhead );
    at = text.reserve( at, smallRoom );
    if ( idx > 0 )
        at = put( at, ',' );
    at = qv___JsonEncodeNext( at, frames_.depth() );
    if ( frame->val->type == QV_JSON_TYPE_ARRAY )
        return qv___JsonEncodeValue( at, qv::jsonItemAt( frame->val, idx ) );
    at = putName( at, qv::jsonNameAt( frame->val, idx ) );
    at = put( at, ':' );
    if ( !layout_.packed )
        at = put( at, ' ' );
    return qv___JsonEncodeValue( at, qv::jsonMemberAt( frame->val, idx ) );
}

template <typename UNIT> UNIT *Writer<UNIT>::write( QV_JSON_VALUE *root )
{
    UNIT *at = qv___JsonEncodeValue( text.reserve( nullptr, smallRoom ), root );
    while ( !frames_.isEmpty() )
    {
        const Frame &frame = frames_.top();
        at = frame.next < frame.length ? putNextEntry( at ) : close( at );
    }
    return layout_.singleLine ? at : qv___JsonEncodeNext( at, 0 );
}

QV_BUFFER *encodeToUtf8( QV_JSON_VALUE *val, const Layout &layout )
{
    Writer<unsigned char> writer( layout );
    const unsigned char *end = writer.write( val );
    QV_INT length = writer.text.lengthTo( end );
    return qvBufferCreateFromBytesUse( writer.text.give( end ), length );
}

QV_STRING *encodeToString( QV_JSON_VALUE *val, const Layout &layout )
{
    Writer<QV_CHAR> writer( layout );
    const QV_CHAR *end = writer.write( val );
    QV_INT length = writer.text.lengthTo( end );
    if ( length > QV___STRING_INLINE )
        return qvStringCreateFromCharsUse( writer.text.give( end ), length );
    return qvStringCreateFromCharsCopy( writer.text.units(), length );
}

} // namespace

QV_BUFFER *qvJsonEncode( QV_JSON_VALUE *val )
{
    return qvJsonEncodeWithFlags( val, 0 );
}

QV_BUFFER *qvJsonEncodeWithFlags( QV_JSON_VALUE *val, QV_JSON_FLAGS flags )
{
    QV_CHECK( val );
    return encodeToUtf8( val, layoutOf( qvJsonFlagsNormalize( flags ), qv___JsonOptionsBuiltin ) );
}

QV_BUFFER *qvJsonTryEncodeWithOptions( QV_JSON_VALUE *val, QV_JSON_OPTIONS *opt )
{
    QV_CHECK( val );
    QV_CHECK( opt );
    // UTF-8 takes all characters of a string, so that no other flag matters to it.
    if ( opt->encodeCharset == QV_CHARSET_UTF_8 &&
         !( opt->encodeCharsetFlags & QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK ) )
        return encodeToUtf8( val, layoutOf( opt->flags, opt ) );
    qv::Local<QV_STRING> text( qvJsonEncodeToStringWithOptions( val, opt ) );
    return qvCharsetTryConvertStringToBufferWithFlags( opt->encodeCharset, text, opt->encodeCharsetFlags );
}

QV_STRING *qvJsonEncodeToString( QV_JSON_VALUE *val )
{
    return qvJsonEncodeToStringWithFlags( val, 0 );
}

QV_STRING *qvJsonEncodeToStringWithFlags( QV_JSON_VALUE *val, QV_JSON_FLAGS flags )
{
    QV_CHECK( val );
    return encodeToString( val, layoutOf( qvJsonFlagsNormalize( flags ), qv___JsonOptionsBuiltin ) );
}

QV_STRING *qvJsonEncodeToStringWithOptions( QV_JSON_VALUE *val, QV_JSON_OPTIONS *opt )
{
    QV_CHECK( val );
    QV_CHECK( opt );
    return encodeToString( val, layoutOf( opt->flags, opt ) );
}
