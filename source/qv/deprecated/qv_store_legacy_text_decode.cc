#include <qv/deprecated/qv_store_legacy_text.hh>

#include <qv/base/qv_boxed_int.hh>
#include <qv/base/qv_dict.hh>
#include <qv/base/qv_format.h>
#include <qv/base/qv_store.h>
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

// Adds a line to the list of a name. lists has the first line of each list.
void enterLine( Line *lines, QV_INT idx, QV_DICT **lists, QV_STRING *name )
{
    lines[idx].next = none;
    qvObj boxed = qv::dictValueOf( *lists, qvStringObj( name ) );
    if ( !boxed )
    {
        lines[idx].last = idx;
        qv::Local<QV_BOXED_INT> first( qvBoxedIntCreate( idx ) );
        qvDictSetStringKey( lists, name, qvBoxedIntObj( first ) );
        return;
    }
    QV_INT first = static_cast<QV_BOXED_INT *>( boxed )->value;
    lines[lines[first].last].next = idx;
    lines[first].last = idx;
}

// Reads a line into a store: a value at once, a line of a substore later.
void decodeLine( Line *lines, QV_INT idx, QV_STORE **store, QV_DICT **lists )
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
    qv::Local<QV_STRING> value( unescapedValue( line.chs, line.length ) );
    qvStoreSetValue( store, name, value );
}

QV_STORE *decodeLines( Line *lines, QV_INT first, QV_INT depth )
{
    qv::Local<QV_STORE> store( qvStoreCreate() );
    if ( depth == depthLimit )
        return store.give();
    qv::Local<QV_DICT> lists( qvDictCreate() );
    for ( QV_INT idx = first; idx != none; )
    {
        QV_INT next = lines[idx].next;
        decodeLine( lines, idx, store.edit(), lists.edit() );
        idx = next;
    }
    for ( QV_INT idx = 0; idx < qv::dictLength( lists ); idx++ )
    {
        const qv___DictPair &list = qv::dictPairs( lists )[idx];
        QV_INT firstOfList = static_cast<QV_BOXED_INT *>( list.val )->value;
        qv::Local<QV_STORE> subStore( decodeLines( lines, firstOfList, depth + 1 ) );
        qvStoreSetStore( store.edit(), qvStringFrom( list.key ), subStore );
    }
    return store.give();
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
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        QV_STRING *text = qvStringFrom( qv::vectorAt( vec, idx ) );
        lines[idx] = { qv::stringBacking( text ), qv::stringLength( text ), idx + 1 < count ? idx + 1 : none,
                       none };
    }
    QV_STORE *store = decodeLines( lines, 0, 0 );
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
