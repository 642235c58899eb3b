#include <qv/deprecated/qv_store_legacy_text.hh>

#include <qv/base/qv_boxed_int.hh>
#include <qv/base/qv_format.h>
#include <qv/base/qv_store.hh>
#include <qv/base/qv_store_collector.hh>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/io/qv_buffer_byte_source.h>
#include <qv/io/qv_line_source.h>
#include <qv/io/qv_nlf_line_source.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_mem.h>

namespace
{

// Levels of stores, the root included.
constexpr QV_INT depthLimit = 100;

constexpr QV_INT escapeDigits = 6;
constexpr QV_INT none = -1;

// What is left of a line, and its place in the list of lines of one store. Reading a level cuts the names off and moves
// each line to the list of its substore, so that no line is ever copied.
struct Line
{
    const QV_CHAR *chs;
    QV_INT length;
    QV_INT next; // the next line of the list, none at its end
    QV_INT last; // of the first line of a list: the last one
};

// Position of the "." or "=" that ends the name; none for a line to drop.
QV_INT findSeparator( const Line &line )
{
    for ( QV_INT idx = 0; idx < line.length; idx++ )
    {
        QV_CHAR ch = line.chs[idx];
        if ( ch == '.' || ch == '=' )
            return idx;
        if ( ch != '\\' )
            continue;
        idx++;
        if ( idx == line.length || line.chs[idx] != '.' )
            return none;
    }
    return none;
}

// The name of so many characters at the start of a line, trimmed and without backslashes; null for no address.
QV_STRING *takeName( const Line &line, QV_INT length )
{
    qv::Local<QV_STRING> escaped( qvStringCreateFromCharsCopy( line.chs, length ) );
    qvStringTrim( escaped.edit() );
    qv::Local<QV_STRING> name( qvStringCreate() );
    for ( QV_INT idx = 0; idx < qv::stringLength( escaped ); idx++ )
    {
        QV_CHAR ch = qv::stringCharAt( escaped, idx );
        if ( ch != '\\' )
            qv::stringAppendChar( name.edit(), ch );
    }
    return qvStoreAddressOk( name ) ? name.give() : nullptr;
}

// The character of the escape whose digits these are, none if they aren't.
QV_INT escapedChar( const QV_CHAR *chs, QV_INT length )
{
    QV_INT value;
    QV_INT consumed;
    if ( length < escapeDigits || !qvFormatTryDecodeIntChars( chs, escapeDigits, 16, &value, &consumed ) )
        return none;
    return consumed == escapeDigits && value >= 0 && value <= QV_INT{ QV_CHAR_MAX } ? value : none;
}

QV_STRING *unescapedValue( const QV_CHAR *chs, QV_INT length )
{
    const QV_CHAR *end = chs + length;
    qv::Local<QV_STRING> value( qvStringCreate() );
    for ( ;; )
    {
        QV_INT run = qv::findChar( chs, end - chs, '%' );
        qv::stringAppendChars( value.edit(), chs, run == none ? end - chs : run );
        if ( run == none )
            return value.give();
        chs += run + 1;
        QV_INT ch = escapedChar( chs, end - chs );
        if ( ch != none )
            chs += escapeDigits;
        else if ( chs < end && *chs == '%' )
            chs++;
        qv::stringAppendChar( value.edit(), ch != none ? static_cast<QV_CHAR>( ch ) : '%' );
    }
}

// All lines, the entries of the stores that are being read, and, by name, the first line of the list of each substore.
struct Reader
{
    Line *lines;
    qv::EntryCollector entries;
    qv::EntryCollector lists;
};

// Adds a line to the list of a name.
void enterLine( Line *lines, QV_INT idx, qv::EntryLevel *lists, QV_STRING *name )
{
    lines[idx].next = none;
    qvObj boxed = lists->valueOf( name );
    if ( !boxed )
    {
        lines[idx].last = idx;
        lists->set( name, qvBoxedIntObj( qvBoxedIntCreate( idx ) ) );
        return;
    }
    QV_INT first = static_cast<QV_BOXED_INT *>( boxed )->value;
    lines[lines[first].last].next = idx;
    lines[first].last = idx;
}

// Reads a line into a store: a value at once, a line of a substore later.
void decodeLine( Line *lines, QV_INT idx, qv::EntryLevel *store, qv::EntryLevel *lists )
{
    Line &line = lines[idx];
    QV_INT separator = findSeparator( line );
    if ( separator == none )
        return;
    qv::Local<QV_STRING> name( takeName( line, separator ) );
    if ( !name )
        return;
    bool isValue = line.chs[separator] == '=';
    line.chs += separator + 1;
    line.length -= separator + 1;
    if ( !isValue )
    {
        // Nothing behind the "." is no line of the substore, but being empty it drops out there.
        enterLine( lines, idx, lists, name );
        return;
    }
    QV_STRING *value = unescapedValue( line.chs, line.length );
    store->set( name, qv::storeValueFromParts( value, 0, nullptr ) );
}

QV_STORE *decodeLines( Reader *reader, QV_INT first, QV_INT depth )
{
    if ( depth == depthLimit )
        return qvStoreCreate();
    qv::EntryLevel store( &reader->entries );
    qv::EntryLevel lists( &reader->lists );
    for ( QV_INT idx = first; idx != none; )
    {
        QV_INT next = reader->lines[idx].next;
        decodeLine( reader->lines, idx, &store, &lists );
        idx = next;
    }
    qv::Local<QV_DICT> subStores( lists.takeDict() );
    for ( QV_INT idx = 0; idx < qv::dictLength( subStores ); idx++ )
    {
        const qv___DictPair &list = qv::dictPairs( subStores )[idx];
        QV_INT firstOfList = static_cast<QV_BOXED_INT *>( list.val )->value;
        store.set( qvStringFrom( list.key ), decodeLines( reader, firstOfList, depth + 1 ) );
    }
    return qv::storeFromParts( 0, store.takeDict(), nullptr, nullptr );
}

} // namespace

QV_STORE *qvStoreLegacyTextDecodeFromStringVector( QV_VECTOR *vec )
{
    QV_CHECK( vec );
    QV_CHECK( qvVectorContainsOnly( vec, qvStringSort() ) );
    QV_INT count = qv::vectorLength( vec );
    if ( count == 0 )
        return qvStoreCreate();
    auto *lines = static_cast<Line *>( qvMemAllocN( count, sizeof( Line ) ) );
    Reader reader = { lines, {}, {} };
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        QV_STRING *text = qvStringFrom( qv::vectorAt( vec, idx ) );
        lines[idx] = { qv::stringBacking( text ), qv::stringLength( text ), idx + 1 < count ? idx + 1 : none,
                       none };
    }
    QV_STORE *store = decodeLines( &reader, 0, 0 );
    qvMemFree( lines );
    return store;
}

QV_STORE *qvStoreLegacyTextTryDecodeFromLineSource( QV_LINE_SOURCE *ls )
{
    QV_CHECK( ls );
    qv::Local<QV_VECTOR> lines( qvLineSourceReadLines( ls, -1 ) );
    return qvLineSourceError( ls ) ? nullptr : qvStoreLegacyTextDecodeFromStringVector( lines );
}

QV_STORE *qvStoreLegacyTextTryDecodeFromBuffer( QV_BUFFER *buffer, QV_CHARSET charset,
                                                QV_CHARSET_FLAGS charsetFlags, QV_NLF_FLAGS nlfFlags )
{
    QV_CHECK( buffer );
    qv::Local<QV_BUFFER_BYTE_SOURCE> bytes( qvBufferByteSourceCreate( buffer ) );
    qv::Local<QV_BYTE_SOURCE> byteSource( qvBufferByteSourceByteSource( bytes ) );
    qv::Local<QV_CHAR_SOURCE> chars( qvCharsetCreateCharSource( byteSource, charset, charsetFlags ) );
    qv::Local<QV_NLF_LINE_SOURCE> lines( qvNlfLineSourceCreate( chars, nlfFlags ) );
    qv::Local<QV_LINE_SOURCE> lineSource( qvNlfLineSourceLineSource( lines ) );
    return qvStoreLegacyTextTryDecodeFromLineSource( lineSource );
}
