#include <qv/json/qv_json_encode.h>

#include <qv/base/qv_buffer.h>
#include <qv/base/qv_frame_stack.hh>
#include <qv/charset/qv_charset_span.hh>
#include <qv/io/qv_nlf_flags.hh>
#include <qv/json/qv_json_options.hh>
#include <qv/json/qv_json_text.hh>
#include <qv/json/qv_json_value.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_fetch.hh>
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

// Each of the following puts something at a place that has room for it, and returns the place behind it.

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

// Units that are copied at once where nothing tells how many there are. That many may be written, and read, behind a run.
constexpr QV_INT stride = 16;

template <typename UNIT> UNIT *putStrides( UNIT *at, const UNIT *units, QV_INT length )
{
    for ( QV_INT idx = 0; idx < length; idx += stride )
    {
        std::memcpy( at + idx, units + idx, stride * sizeof( UNIT ) );
    }
    return at + length;
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

// The same from the tail of a value, which may be read in words.
unsigned char *putEscaped( unsigned char *at, const unsigned char *bytes, QV_INT length )
{
    for ( QV_INT begin = 0; begin < length; begin += 8 )
    {
        QV_INT count = std::min<QV_INT>( length - begin, 8 );
        std::memcpy( at, bytes + begin, 8 );
        if ( !qv::jsonSpecialBits( qv::jsonLoadWord( bytes + begin ) ) )
        {
            at += count;
            continue;
        }
        for ( QV_INT idx = begin; idx < begin + count; idx++ )
        {
            at = qv::jsonIsSpecial( bytes[idx] ) ? putEscape( at, bytes[idx] ) : put( at, bytes[idx] );
        }
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

// The shortest tail in full, unless something in it can't be taken as it is.
template <typename UNIT> bool putShortTail( UNIT *at, const unsigned char *bytes )
{
    static_assert( QV___JSON_TAIL_MIN == 24 );
    uint64_t words[] = { qv::jsonLoadWord( bytes ), qv::jsonLoadWord( bytes + 8 ),
                         qv::jsonLoadWord( bytes + 16 ) };
    uint64_t marks =
        qv::jsonSpecialBits( words[0] ) | qv::jsonSpecialBits( words[1] ) | qv::jsonSpecialBits( words[2] );
    if constexpr ( sizeof( UNIT ) > 1 )
        marks |= ( words[0] | words[1] | words[2] ) & qv::jsonTopBits;
    std::copy( bytes, bytes + QV___JSON_TAIL_MIN, at );
    return marks == 0;
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

// An object or array that is being written. Its entries are one pointer each, or two with the name in front of the value.
struct Frame
{
    const qvObj *entries; // borrowed
    QV_INT width;         // 1 for an array, 2 for an object
    QV_INT next;          // the entry to write
    QV_INT length;

    QV_JSON_VALUE *valueAt( QV_INT idx ) const
    {
        return qv::jsonFrom( entries[idx * width + width - 1] );
    }

    QV_STRING *nameAt( QV_INT idx ) const
    {
        return static_cast<QV_STRING *>( entries[idx * width] );
    }
};

Frame frameOf( const QV_JSON_VALUE *val )
{
    static_assert( sizeof( qv___DictPair ) == 2 * sizeof( qvObj ) );
    if ( val->type == QV_JSON_TYPE_ARRAY )
        return { qv::vectorBacking( val->array ), 1, 0, qv::vectorLength( val->array ) };
    auto *pairs = qv::dictPairs( val->objectMembers );
    return { &pairs->key, 2, 0, qv::dictLength( val->objectMembers ) };
}

// Large trees don't fit the caches. So what will be written soon is fetched ahead: the records of entries, then the
// containers of those that have one, then the first entries of these.
constexpr QV_INT fetchAhead = 8;
constexpr QV_INT fetchContentAhead = 2;
constexpr QV_INT fetchEntriesAhead = 1;
constexpr QV_INT fetchEntriesCount = 4;

void fetchValue( const Frame &frame, QV_INT idx )
{
    if ( idx < frame.length )
        qv::fetch( &frame.valueAt( idx )->type );
}

void fetchContent( const Frame &frame, QV_INT idx )
{
    if ( idx >= frame.length )
        return;
    const QV_JSON_VALUE *val = frame.valueAt( idx );
    if ( !qv::jsonIsContainer( val ) )
        return;
    auto *record = reinterpret_cast<const char *>( val->objectMembers );
    qv::fetch( record + 64 );
    qv::fetch( record + 128 );
    qv::fetch( record + 192 );
    if ( val->type == QV_JSON_TYPE_OBJECT )
        qv::fetch( record + 256 );
}

void fetchEntries( const Frame &frame, QV_INT idx )
{
    if ( idx >= frame.length || !qv::jsonIsContainer( frame.valueAt( idx ) ) )
        return;
    Frame inner = frameOf( frame.valueAt( idx ) );
    for ( QV_INT entry = 0; entry < fetchEntriesCount; entry++ )
    {
        fetchValue( inner, entry );
    }
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
    // Units of a name that is kept as it is written, and names that are.
    static constexpr QV_INT longestName = 48;
    static constexpr uintptr_t nameCount = 32;
    // Units that all short puts of one entry take together, and then some.
    static constexpr QV_INT smallRoom = 160;
    // Units that a character may take, escaped or encoded.
    static constexpr QV_INT widest = 6;
    // Characters of a long text that are written at once.
    static constexpr QV_INT pieceLength = 4096;

    // A name with all up to the value behind it. Documents repeat theirs, and share the strings.
    struct Name
    {
        Name() : string( nullptr ) {}

        QV_STRING *string; // borrowed, null for none
        QV_INT length;     // this and the following are valid when there is a string
        UNIT units[longestName];
    };

    UNIT *qv___JsonEncodeNext( UNIT *at, QV_INT level );
    UNIT *qv___JsonEncodeValue( UNIT *at, QV_JSON_VALUE *val );
    UNIT *qv___JsonEncodeString( UNIT *at, QV_STRING *string );
    UNIT *putName( UNIT *at, QV_STRING *string );
    UNIT *putNewName( UNIT *at, Name *name, QV_STRING *string );
    UNIT *putTail( UNIT *at, QV_JSON_VALUE *val );
    UNIT *putConstant( UNIT *at, QV_JSON_TYPE type );
    UNIT *putHeld( UNIT *at, QV_JSON_VALUE *val );
    UNIT *putNextEntry( UNIT *at );
    UNIT *open( UNIT *at, QV_JSON_VALUE *val );
    UNIT *close( UNIT *at );
    void extendBreak( QV_INT level );

    Layout layout_;
    // What stands between tokens on different lines: the break, and the indents of as many levels as came up.
    Text<UNIT> break_;
    UNIT *breakEnd_ = nullptr;
    QV_INT breakLevels_ = 0;
    QV_INT breakLength_ = 0;  // of the break alone, with which level 0 begins
    QV_INT indentLength_ = 0; // of one indent
    Name names_[nameCount];
    qv::FrameStack<Frame> frames_;
};

template <typename UNIT> Writer<UNIT>::Writer( const Layout &layout ) : layout_( layout )
{
    const QV_CHAR blank = ' ';
    const QV_CHAR *chs = layout_.singleLine ? &blank : layout_.nlf.chars;
    if ( layout_.singleLine )
        breakLevels_ = QV_INT_MAX;
    if ( !layout_.packed )
        breakLength_ = layout_.singleLine ? 1 : layout_.nlf.length;
    breakEnd_ = putRun( break_.reserve( breakEnd_, smallRoom ), chs, breakLength_ );
}

// Adds the indents up to a level.
template <typename UNIT> [[gnu::noinline]] void Writer<UNIT>::extendBreak( QV_INT level )
{
    QV_INT width = qv::stringLength( layout_.indent );
    QV_CHECK( QV_INT_MUL_OK( width, widest ) );
    for ( ; breakLevels_ < level; breakLevels_++ )
    {
        UNIT *begin = break_.reserve( breakEnd_, width * widest + smallRoom );
        breakEnd_ = putRun( begin, qv::stringBacking( layout_.indent ), width );
        indentLength_ = breakEnd_ - begin;
    }
}

// Writes what stands between two tokens on different lines. There is room for short puts in front of it, and is behind it.
template <typename UNIT> UNIT *Writer<UNIT>::qv___JsonEncodeNext( UNIT *at, QV_INT level )
{
    if ( level > breakLevels_ )
        extendBreak( level );
    QV_INT length = breakLength_ + level * indentLength_;
    at = text.reserve( at, length + smallRoom );
    return putStrides( at, break_.units(), length );
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

template <typename UNIT>
[[gnu::noinline]] UNIT *Writer<UNIT>::putNewName( UNIT *at, Name *name, QV_STRING *string )
{
    at = text.reserve( at, smallRoom + QV___STRING_INLINE );
    UNIT *behind = putPlainName( at + 1, string );
    if ( behind )
    {
        *at = '"';
        behind = put( behind, '"' );
    }
    else
    {
        QV_INT begin = text.lengthTo( at );
        behind = text.reserve( qv___JsonEncodeString( at, string ), smallRoom );
        at = behind - ( text.lengthTo( behind ) - begin );
    }
    behind = put( behind, ':' );
    if ( !layout_.packed )
        behind = put( behind, ' ' );
    QV_INT length = behind - at;
    if ( length <= longestName )
    {
        name->string = string;
        name->length = length;
        std::memcpy( name->units, at, static_cast<size_t>( length ) * sizeof( UNIT ) );
    }
    return text.reserve( behind, smallRoom );
}

template <typename UNIT> UNIT *Writer<UNIT>::putName( UNIT *at, QV_STRING *string )
{
    Name *name = &names_[reinterpret_cast<uintptr_t>( string ) / 128 % nameCount];
    return name->string == string ? putStrides( at, name->units, name->length )
                                  : putNewName( at, name, string );
}

// The text of a number or string in a value's tail.
template <typename UNIT> UNIT *Writer<UNIT>::putTail( UNIT *at, QV_JSON_VALUE *val )
{
    QV_INT length = val->tailLength;
    bool isString = val->type == QV_JSON_TYPE_STRING;
    *at = '"';
    at += isString;
    if ( length <= QV___JSON_TAIL_MIN && putShortTail( at, qv::jsonTail( val ) ) )
        at += length;
    else
        at = putEscaped( text.reserve( at, length * widest + smallRoom ), qv::jsonTail( val ), length );
    *at = '"';
    return at + isString;
}

template <typename UNIT> UNIT *Writer<UNIT>::putConstant( UNIT *at, QV_JSON_TYPE type )
{
    switch ( type )
    {
    case QV_JSON_TYPE_NULL:
        return putLiteral( at, "null" );
    case QV_JSON_TYPE_FALSE:
        return putLiteral( at, "false" );
    default:
        return putLiteral( at, "true" );
    }
}

// The text of a number or string that a value holds as an object.
template <typename UNIT> UNIT *Writer<UNIT>::putHeld( UNIT *at, QV_JSON_VALUE *val )
{
    if ( val->type == QV_JSON_TYPE_STRING )
        return qv___JsonEncodeString( at, val->text );
    at = text.reserve( at, qv::stringLength( val->text ) * widest + smallRoom );
    return putRun( at, qv::stringBacking( val->text ), qv::stringLength( val->text ) );
}

// Writes a scalar or an empty object or array, or begins one with entries. There is room for what is short.
template <typename UNIT> UNIT *Writer<UNIT>::qv___JsonEncodeValue( UNIT *at, QV_JSON_VALUE *val )
{
    if ( qv::jsonIsContainer( val ) )
        return open( at, val );
    if ( val->type < QV_JSON_TYPE_NUMBER )
        return putConstant( at, val->type );
    return val->isHeld ? putHeld( at, val ) : putTail( at, val );
}

template <typename UNIT> UNIT *Writer<UNIT>::open( UNIT *at, QV_JSON_VALUE *val )
{
    bool isObject = val->type == QV_JSON_TYPE_OBJECT;
    Frame frame = frameOf( val );
    at = put( at, isObject ? '{' : '[' );
    if ( frame.length == 0 )
        return put( at, isObject ? '}' : ']' );
    frames_.push( frame );
    for ( QV_INT idx = 0; idx < fetchAhead; idx++ )
    {
        fetchValue( frame, idx );
    }
    return at;
}

// Ends the innermost object or array.
template <typename UNIT> UNIT *Writer<UNIT>::close( UNIT *at )
{
    bool isObject = frames_.pop().width == 2;
    at = qv___JsonEncodeNext( at, frames_.depth() );
    return put( at, isObject ? '}' : ']' );
}

// Writes the next member or element of the innermost object or array.
template <typename UNIT> UNIT *Writer<UNIT>::putNextEntry( UNIT *at )
{
    Frame &frame = frames_.top();
    QV_INT idx = frame.next++;
    fetchValue( frame, idx + fetchAhead );
    fetchContent( frame, idx + fetchContentAhead );
    fetchEntries( frame, idx + fetchEntriesAhead );
    at = text.reserve( at, smallRoom );
    *at = ',';
    at = qv___JsonEncodeNext( at + ( idx > 0 ), frames_.depth() );
    if ( frame.width == 2 )
        at = putName( at, frame.nameAt( idx ) );
    return qv___JsonEncodeValue( at, frame.valueAt( idx ) );
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
