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

namespace
{

// A growing array of what a text is made of: characters, or bytes of UTF-8.
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

    // Makes sure of room for count units, which the puts below don't test for.
    void need( QV_INT count )
    {
        if ( end_ - at_ < count )
            grow( count );
    }

    void put( QV_CHAR ch )
    {
        *at_++ = static_cast<UNIT>( ch );
    }

    template <size_t SIZE> void putLiteral( const char ( &literal )[SIZE] )
    {
        for ( size_t idx = 0; idx + 1 < SIZE; idx++ )
        {
            put( static_cast<unsigned char>( literal[idx] ) );
        }
    }

    void putAscii( const unsigned char *bytes, QV_INT count )
    {
        for ( QV_INT idx = 0; idx < count; idx++ )
        {
            put( bytes[idx] );
        }
    }

    // Any characters; these make room for themselves.
    void putChars( const QV_CHAR *chs, QV_INT count );

    QV_INT length() const
    {
        return at_ - begin_;
    }

    const UNIT *units() const
    {
        return begin_;
    }

    // Hands the array over, without its unused part.
    UNIT *give()
    {
        auto *units = static_cast<UNIT *>( qvMemReallocN( begin_, length(), sizeof( UNIT ) ) );
        begin_ = at_ = end_ = nullptr;
        return units;
    }

  private:
    void grow( QV_INT count )
    {
        QV_INT used = length();
        QV_INT size = end_ - begin_;
        QV_CHECK( QV_INT_ADD_OK( size, count ) );
        QV_CHECK( QV_INT_MUL_OK( size + count, 2 ) );
        size = size == 0 && count < 256 ? 512 : ( size + count ) * 2;
        begin_ = static_cast<UNIT *>( qvMemReallocN( begin_, size, sizeof( UNIT ) ) );
        at_ = begin_ + used;
        end_ = begin_ + size;
    }

    UNIT *begin_ = nullptr;
    UNIT *at_ = nullptr;
    UNIT *end_ = nullptr;
};

template <> void Text<QV_CHAR>::putChars( const QV_CHAR *chs, QV_INT count )
{
    need( count );
    qv::copyChars( at_, chs, count );
    at_ += count;
}

// Copies ASCII as far as it goes and returns its length.
QV_INT copyAscii( unsigned char *dest, const QV_CHAR *chs, QV_INT count )
{
    QV_INT idx = 0;
    constexpr QV_INT block = 8;
    for ( ; idx + block <= count; idx += block )
    {
        QV_CHAR all = 0;
        for ( QV_INT lane = 0; lane < block; lane++ )
        {
            all |= chs[idx + lane];
        }
        if ( all >= 0x80 )
            break;
        for ( QV_INT lane = 0; lane < block; lane++ )
        {
            dest[idx + lane] = static_cast<unsigned char>( chs[idx + lane] );
        }
    }
    for ( ; idx < count && chs[idx] < 0x80; idx++ )
    {
        dest[idx] = static_cast<unsigned char>( chs[idx] );
    }
    return idx;
}

template <> void Text<unsigned char>::putChars( const QV_CHAR *chs, QV_INT count )
{
    need( count );
    QV_INT ascii = copyAscii( at_, chs, count );
    at_ += ascii;
    if ( ascii == count )
        return;
    QV_INT rest = count - ascii;
    QV_CHECK( QV_INT_MUL_OK( rest, 4 ) );
    need( rest * 4 );
    qv::EncodeSpan span = { chs + ascii, chs + count, at_, end_ };
    qv::utf8Encode( &span, qv::OnInvalid::replace );
    at_ = span.bytes;
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

template <typename UNIT> class Writer
{
  public:
    explicit Writer( const Layout &layout ) : layout_( layout ) {}
    Writer( const Writer & ) = delete;
    Writer &operator=( const Writer & ) = delete;

    // Writes the whole text of a value.
    void write( QV_JSON_VALUE *root );

    Text<UNIT> text;

  private:
    // Units that all short puts of one entry take together, and then some.
    static constexpr QV_INT smallRoom = 64;

    void qv___JsonEncodeNext( QV_INT level );
    void qv___JsonEncodeValue( QV_JSON_VALUE *val );
    void qv___JsonEncodeString( QV_STRING *string );
    void putEscape( QV_CHAR ch );
    void putNumber( QV_JSON_VALUE *val );
    void putNextEntry();
    void open( QV_JSON_VALUE *val );
    void close();

    Layout layout_;
    qv::FrameStack<Frame> frames_;
};

// Writes what stands between two tokens on different lines.
template <typename UNIT> void Writer<UNIT>::qv___JsonEncodeNext( QV_INT level )
{
    if ( layout_.packed )
        return;
    if ( layout_.singleLine )
    {
        text.put( ' ' );
        return;
    }
    text.putChars( layout_.nlf.chars, layout_.nlf.length );
    const QV_CHAR *indent = qv::stringBacking( layout_.indent );
    QV_INT width = qv::stringLength( layout_.indent );
    if ( width == 1 && *indent < 0x80 )
    {
        text.need( level + smallRoom );
        for ( QV_INT count = 0; count < level; count++ )
        {
            text.put( *indent );
        }
        return;
    }
    for ( QV_INT count = 0; width > 0 && count < level; count++ )
    {
        text.putChars( indent, width );
    }
    text.need( smallRoom );
}

template <typename UNIT> void Writer<UNIT>::putEscape( QV_CHAR ch )
{
    text.put( '\\' );
    switch ( ch )
    {
    case '"':
    case '\\':
        text.put( ch );
        return;
    case '\b':
        text.put( 'b' );
        return;
    case '\t':
        text.put( 't' );
        return;
    case '\n':
        text.put( 'n' );
        return;
    case '\f':
        text.put( 'f' );
        return;
    case '\r':
        text.put( 'r' );
        return;
    default:
        text.putLiteral( "u00" );
        text.put( static_cast<unsigned char>( "0123456789ABCDEF"[ch >> 4] ) );
        text.put( static_cast<unsigned char>( "0123456789ABCDEF"[ch & 15] ) );
    }
}

template <typename UNIT> void Writer<UNIT>::qv___JsonEncodeString( QV_STRING *string )
{
    const QV_CHAR *chs = qv::stringBacking( string );
    const QV_CHAR *end = chs + qv::stringLength( string );
    text.need( smallRoom );
    text.put( '"' );
    for ( ;; )
    {
        QV_INT run = qv::jsonPlainRun( chs, end - chs );
        text.putChars( chs, run );
        text.need( smallRoom );
        chs += run;
        if ( chs == end )
            break;
        putEscape( *chs++ );
    }
    text.put( '"' );
}

template <typename UNIT> void Writer<UNIT>::putNumber( QV_JSON_VALUE *val )
{
    if ( val->number )
        text.putChars( qv::stringBacking( val->number ), qv::stringLength( val->number ) );
    else
        text.putAscii( val->numberChars, val->numberLength );
    text.need( smallRoom );
}

// Writes a scalar or an empty object or array, or begins one with entries.
template <typename UNIT> void Writer<UNIT>::qv___JsonEncodeValue( QV_JSON_VALUE *val )
{
    text.need( smallRoom );
    switch ( val->type )
    {
    case QV_JSON_TYPE_NULL:
        text.putLiteral( "null" );
        return;
    case QV_JSON_TYPE_FALSE:
        text.putLiteral( "false" );
        return;
    case QV_JSON_TYPE_TRUE:
        text.putLiteral( "true" );
        return;
    case QV_JSON_TYPE_NUMBER:
        putNumber( val );
        return;
    case QV_JSON_TYPE_STRING:
        qv___JsonEncodeString( val->string );
        return;
    default:
        open( val );
    }
}

template <typename UNIT> void Writer<UNIT>::open( QV_JSON_VALUE *val )
{
    bool isObject = val->type == QV_JSON_TYPE_OBJECT;
    QV_INT length = qv::jsonLength( val );
    text.put( isObject ? '{' : '[' );
    if ( length == 0 )
    {
        text.put( isObject ? '}' : ']' );
        return;
    }
    frames_.push( { val, 0, length } );
}

// Ends the innermost object or array.
template <typename UNIT> void Writer<UNIT>::close()
{
    bool isObject = frames_.pop().val->type == QV_JSON_TYPE_OBJECT;
    text.need( smallRoom );
    qv___JsonEncodeNext( frames_.depth() );
    text.put( isObject ? '}' : ']' );
}

// Writes the next member or element of the innermost object or array.
template <typename UNIT> void Writer<UNIT>::putNextEntry()
{
    Frame *frame = &frames_.top();
    QV_INT idx = frame->next++;
    text.need( smallRoom );
    if ( idx > 0 )
        text.put( ',' );
    qv___JsonEncodeNext( frames_.depth() );
    if ( frame->val->type == QV_JSON_TYPE_ARRAY )
    {
        qv___JsonEncodeValue( qv::jsonItemAt( frame->val, idx ) );
        return;
    }
    qv___JsonEncodeString( qv::jsonNameAt( frame->val, idx ) );
    text.put( ':' );
    if ( !layout_.packed )
        text.put( ' ' );
    qv___JsonEncodeValue( qv::jsonMemberAt( frame->val, idx ) );
}

template <typename UNIT> void Writer<UNIT>::write( QV_JSON_VALUE *root )
{
    qv___JsonEncodeValue( root );
    while ( !frames_.isEmpty() )
    {
        const Frame &frame = frames_.top();
        if ( frame.next < frame.length )
            putNextEntry();
        else
            close();
    }
    if ( !layout_.singleLine )
        text.putChars( layout_.nlf.chars, layout_.nlf.length );
}

QV_BUFFER *encodeToUtf8( QV_JSON_VALUE *val, const Layout &layout )
{
    Writer<unsigned char> writer( layout );
    writer.write( val );
    QV_INT length = writer.text.length();
    return qvBufferCreateFromBytesUse( writer.text.give(), length );
}

QV_STRING *encodeToString( QV_JSON_VALUE *val, const Layout &layout )
{
    Writer<QV_CHAR> writer( layout );
    writer.write( val );
    QV_INT length = writer.text.length();
    if ( length > QV___STRING_INLINE )
        return qvStringCreateFromCharsUse( writer.text.give(), length );
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
