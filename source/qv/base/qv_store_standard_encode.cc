#include <qv/base/qv_store_standard.hh>

#include <qv/base/qv_format.h>
#include <qv/base/qv_frame_stack.hh>
#include <qv/base/qv_string.hh>
#include <qv/charset/qv_charset.h>
#include <qv/io/qv_char_sink.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_fetch.hh>

#include <cstring>

namespace
{

// Gathers the text in pieces of some thousand characters, so that the sink sees bulk writes.
class Text
{
  public:
    explicit Text( QV_CHAR_SINK *sink ) : sink_( sink ) {}

    void put( QV_CHAR ch )
    {
        if ( used_ == room )
            push();
        chs_[used_++] = ch;
    }

    void put( const QV_CHAR *chs, QV_INT length )
    {
        if ( length > room - used_ )
        {
            push();
            if ( length > room )
            {
                qvCharSinkWriteChars( sink_, chs, length );
                return;
            }
        }
        qv::copyChars( chs_ + used_, chs, length );
        used_ += length;
    }

    void put( QV_STRING *text )
    {
        put( qv::stringBacking( text ), qv::stringLength( text ) );
    }

    template <size_t SIZE> void putLiteral( const char ( &literal )[SIZE] )
    {
        for ( size_t idx = 0; idx + 1 < SIZE; idx++ )
        {
            put( static_cast<unsigned char>( literal[idx] ) );
        }
    }

    void putBlanks( QV_INT count )
    {
        while ( count > 0 )
        {
            if ( used_ == room )
                push();
            QV_INT part = count < room - used_ ? count : room - used_;
            for ( QV_INT idx = 0; idx < part; idx++ )
            {
                chs_[used_ + idx] = ' ';
            }
            used_ += part;
            count -= part;
        }
    }

    void push()
    {
        if ( used_ > 0 )
            qvCharSinkWriteChars( sink_, chs_, used_ );
        used_ = 0;
    }

  private:
    static constexpr QV_INT room = 2048;
    QV_CHAR_SINK *sink_;
    QV_INT used_ = 0;
    QV_CHAR chs_[room];
};

// A store whose entries are being written.
struct Frame
{
    QV_STORE *store; // borrowed
    QV_INT next;     // the entry to write
    QV_INT length;
    QV_INT width; // of the longest address, for members
};

struct Writer
{
    Text text;
    QV_INT rootLevel; // of the root's entries
    qv::FrameStack<Frame> frames;
};

bool isArray( const QV_STORE *store )
{
    return ( store->hints & QV_STORE_HINT_ARRAY ) != 0;
}

QV_STRING *addressAt( const QV_STORE *store, QV_INT idx )
{
    return static_cast<QV_STRING *>( qv::dictPairs( store->dict )[idx].key );
}

QV_INT longestAddress( const QV_STORE *store )
{
    QV_INT width = 0;
    for ( QV_INT idx = 0; idx < qv::dictLength( store->dict ); idx++ )
    {
        QV_INT length = qv::stringLength( addressAt( store, idx ) );
        width = length > width ? length : width;
    }
    return width;
}

void open( Writer *writer, QV_STORE *store )
{
    QV_INT width = isArray( store ) ? 0 : longestAddress( store );
    writer->frames.push( { store, 0, qv::storeLength( store ), width } );
}

// Blanks in front of a line whose level is that of the entries of the frame at a depth, which counts from 1.
void indent( Writer *writer, QV_INT depth )
{
    QV_INT level = depth - 1 + writer->rootLevel;
    writer->text.putBlanks( QV_INT_MUL_OK( level, 4 ) ? level * 4 : QV_INT_MAX );
}

void putQuoted( Text *text, QV_STRING *value )
{
    const QV_CHAR *chs = qv::stringBacking( value );
    const QV_CHAR *end = chs + qv::stringLength( value );
    text->put( '"' );
    for ( ;; )
    {
        QV_INT run = qv::plainRun<false>( chs, end - chs );
        text->put( chs, run );
        chs += run;
        if ( chs == end )
            break;
        QV_CHAR ch = *chs++;
        text->put( '\\' );
        if ( !qv::isControlChar( ch ) )
        {
            text->put( ch );
            continue;
        }
        for ( int shift = 20; shift >= 0; shift -= 4 )
        {
            text->put( static_cast<unsigned char>( "0123456789ABCDEF"[( ch >> shift ) & 15] ) );
        }
    }
    text->put( '"' );
}

// Writes a value as its hint says, or in quotes when its text doesn't read so.
void qv___StoreEncodeStandardValue( Text *text, QV___STORE_VALUE *value )
{
    QV_BOOL truth;
    QV_INT integer;
    double real;
    switch ( value->hints )
    {
    case 0:
        break;
    case QV___STORE_VALUE_HINT_INT:
        if ( qv::isPlainInt( qv::stringBacking( value->value ), qv::stringLength( value->value ) ) )
        {
            text->put( value->value );
            return;
        }
        [[fallthrough]];
    default:
        if ( value->hints & QV___STORE_VALUE_HINT_NULL )
        {
            text->putLiteral( "null" );
            return;
        }
        if ( ( value->hints & QV___STORE_VALUE_HINT_BOOL ) && qv___StoreValueValueBool( value, &truth ) )
        {
            if ( truth )
                text->putLiteral( "true" );
            else
                text->putLiteral( "false" );
            return;
        }
        if ( ( value->hints & QV___STORE_VALUE_HINT_INT ) && qv___StoreValueValueInt( value, &integer ) )
        {
            text->put( qv::Local<QV_STRING>( qvFormatEncodeInt( integer, 10, 0, 0 ) ) );
            return;
        }
        if ( ( value->hints & QV___STORE_VALUE_HINT_REAL ) && qv___StoreValueValueReal( value, &real ) )
        {
            text->put( qv::Local<QV_STRING>( qvFormatEncodeReal( real, 10, 0, -1, 0 ) ) );
            return;
        }
    }
    putQuoted( text, value->value );
}

// Writes a value or an empty store and ends the line, or begins the lines of a store with entries.
void putEntry( Writer *writer, qvObj entry )
{
    Text *text = &writer->text;
    if ( !qv::isStore( entry ) )
    {
        qv___StoreEncodeStandardValue( text, static_cast<QV___STORE_VALUE *>( entry ) );
        text->put( '\n' );
        return;
    }
    auto *store = static_cast<QV_STORE *>( entry );
    text->put( isArray( store ) ? '[' : '{' );
    if ( qv::storeLength( store ) == 0 )
        text->put( isArray( store ) ? ']' : '}' );
    else
        open( writer, store );
    text->put( '\n' );
}

// Records lie apart in memory, so a tree that isn't in the caches is read at the speed of its misses. What the members
// some places ahead will be asked for is fetched early: first their records, and closer by the text of their values.
void fetchAhead( const Frame *frame )
{
    constexpr QV_INT far = 8;
    constexpr QV_INT near = 4;
    const qv___DictPair *pairs = qv::dictPairs( frame->store->dict );
    if ( frame->length - frame->next > far )
    {
        auto *address = static_cast<QV_STRING *>( pairs[frame->next + far].key );
        qv::fetch( &address->chars );
        qv::fetch( address->inlineChars + 4 );
        qv::fetch( pairs[frame->next + far].val );
        qv::fetch( reinterpret_cast<char *>( pairs[frame->next + far].val ) + 64 );
    }
    if ( frame->length - frame->next > near && !qv::isStore( pairs[frame->next + near].val ) )
    {
        QV_STRING *text = static_cast<QV___STORE_VALUE *>( pairs[frame->next + near].val )->value;
        qv::fetch( &text->chars );
        qv::fetch( text->inlineChars + 4 );
        qv::fetch( text->inlineChars + 20 );
        qv::fetch( text->inlineChars + 36 );
    }
}

// Writes the next member of the innermost store.
void qv___StoreEncodeStandardStore( Writer *writer )
{
    Frame *frame = &writer->frames.top();
    QV_STRING *address = addressAt( frame->store, frame->next );
    qvObj entry = qv::storeEntryBacking( frame->store, frame->next );
    fetchAhead( frame );
    frame->next++;
    indent( writer, writer->frames.depth() );
    writer->text.put( address );
    bool aligned = !qv::isStore( entry ) || qv::storeLength( static_cast<QV_STORE *>( entry ) ) == 0;
    writer->text.putBlanks( aligned ? frame->width - qv::stringLength( address ) + 1 : 1 );
    putEntry( writer, entry );
}

// Writes the next item of the innermost array.
void qv___StoreEncodeStandardArray( Writer *writer )
{
    Frame *frame = &writer->frames.top();
    qvObj entry = qv::storeEntryBacking( frame->store, frame->next );
    frame->next++;
    indent( writer, writer->frames.depth() );
    putEntry( writer, entry );
}

// Writes all that is open, up to the closing bracket of the innermost store at each end.
void putOpen( Writer *writer )
{
    while ( !writer->frames.isEmpty() )
    {
        const Frame &frame = writer->frames.top();
        if ( frame.next < frame.length )
        {
            if ( isArray( frame.store ) )
                qv___StoreEncodeStandardArray( writer );
            else
                qv___StoreEncodeStandardStore( writer );
            continue;
        }
        bool wasArray = isArray( writer->frames.pop().store );
        bool bare = writer->frames.isEmpty() && writer->rootLevel == 0;
        if ( bare )
            return;
        indent( writer, writer->frames.depth() );
        writer->text.put( wasArray ? ']' : '}' );
        writer->text.put( '\n' );
    }
}

} // namespace

void qv___StoreEncodeStandard( QV_STORE *store, QV_BYTE_SINK *sink )
{
    qv::Local<QV_CHAR_SINK> charSink( qvCharsetCreateCharSink( sink, QV_CHARSET_UTF_8, 0 ) );
    // The entries of a plain root stand without braces at level 0.
    Writer writer = { Text( charSink ), isArray( store ) ? 1 : 0, {} };
    if ( isArray( store ) )
        writer.text.putLiteral( "[\n" );
    open( &writer, store );
    putOpen( &writer );
    writer.text.push();
    qvCharSinkFlush( charSink );
}
