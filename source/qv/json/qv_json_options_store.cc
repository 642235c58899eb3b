#include <qv/json/qv_json_options.hh>

#include <qv/base/qv_store.h>
#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>

// Options as a store and back.

namespace
{

// Sets the text of an option, which is handed over.
void setText( QV_STORE **store, const char *address, QV_STRING *given )
{
    qv::Local<QV_STRING> text( given );
    qvStoreSetValueCstr( store, address, -1, text );
}

// What a store has at an address, null for nothing or a store.
qv::Local<QV_STRING> textAt( QV_STORE *store, const char *address )
{
    return qv::Local<QV_STRING>( qvStoreValueCstr( store, address, -1 ) );
}

void storeDecoding( QV_JSON_OPTIONS *opt, QV_STORE **store, bool full )
{
    if ( full || !opt->decodeCharsetDefault )
        setText( store, "decodeCharset", qvCharsetToString( opt->decodeCharset ) );
    if ( full || !opt->decodeCharsetFlagsDefault )
        setText( store, "decodeCharsetFlags", qvCharsetFlagsToString( opt->decodeCharsetFlags ) );
    if ( full || !opt->decodeMaxDepthDefault )
        qvStoreSetValueIntCstr( store, "decodeMaxDepth", -1, opt->decodeMaxDepth );
    if ( full || !opt->decodeNlfFlagsDefault )
        setText( store, "decodeNlfFlags", qvNlfFlagsToString( opt->decodeNlfFlags ) );
    if ( full || !opt->decodeUnicodeNormalFormDefault )
        setText( store, "decodeUnicodeNormalForm",
                 qvUnicodeNormalFormToString( opt->decodeUnicodeNormalForm ) );
}

void storeEncoding( QV_JSON_OPTIONS *opt, QV_STORE **store, bool full )
{
    if ( full || !opt->encodeCharsetDefault )
        setText( store, "encodeCharset", qvCharsetToString( opt->encodeCharset ) );
    if ( full || !opt->encodeCharsetFlagsDefault )
        setText( store, "encodeCharsetFlags", qvCharsetFlagsToString( opt->encodeCharsetFlags ) );
    if ( full || !opt->encodeIndentDefault )
        qvStoreSetValueCstr( store, "encodeIndent", -1, opt->encodeIndent );
    if ( full || !opt->encodeNlfFlagsDefault )
        setText( store, "encodeNlfFlags", qvNlfFlagsToString( opt->encodeNlfFlags ) );
}

void restoreDecoding( QV_JSON_OPTIONS **opt, QV_STORE *store )
{
    if ( auto text = textAt( store, "decodeCharset" ) )
    {
        QV_CHARSET charset = qvCharsetFromString( text );
        if ( charset != -1 )
            qvJsonOptionsSetDecodeCharset( opt, charset );
    }
    if ( auto text = textAt( store, "decodeCharsetFlags" ) )
        qvJsonOptionsSetDecodeCharsetFlags( opt, qvCharsetFlagsFromString( text ) );
    QV_INT maxDepth = 0;
    if ( qvStoreValueIntCstr( store, &maxDepth, "decodeMaxDepth", -1 ) && maxDepth > 0 )
        qvJsonOptionsSetDecodeMaxDepth( opt, maxDepth );
    if ( auto text = textAt( store, "decodeNlfFlags" ) )
        qvJsonOptionsSetDecodeNlfFlags( opt, qvNlfFlagsFromString( text ) );
    if ( auto text = textAt( store, "decodeUnicodeNormalForm" ) )
    {
        QV_UNICODE_NORMAL_FORM form = qvUnicodeNormalFormFromString( text );
        if ( form != -1 )
            qvJsonOptionsSetDecodeUnicodeNormalForm( opt, form );
    }
}

void restoreEncoding( QV_JSON_OPTIONS **opt, QV_STORE *store )
{
    if ( auto text = textAt( store, "encodeCharset" ) )
    {
        QV_CHARSET charset = qvCharsetFromString( text );
        if ( charset != -1 )
            qvJsonOptionsSetEncodeCharset( opt, charset );
    }
    if ( auto text = textAt( store, "encodeCharsetFlags" ) )
        qvJsonOptionsSetEncodeCharsetFlags( opt, qvCharsetFlagsFromString( text ) );
    if ( auto text = textAt( store, "encodeIndent" ) )
        qvJsonOptionsSetEncodeIndent( opt, text );
    if ( auto text = textAt( store, "encodeNlfFlags" ) )
        qvJsonOptionsSetEncodeNlfFlags( opt, qvNlfFlagsFromString( text ) );
}

} // namespace

QV_STORE *qvJsonOptionsStore( QV_JSON_OPTIONS *opt, QV_BOOL full )
{
    QV_CHECK( opt );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    if ( full || !opt->flagsDefault )
        setText( store.edit(), "flags", qvJsonFlagsToString( opt->flags ) );
    storeDecoding( opt, store.edit(), full );
    storeEncoding( opt, store.edit(), full );
    return store.give();
}

QV_JSON_OPTIONS *qvJsonOptionsRestore( QV_STORE *store )
{
    QV_CHECK( store );
    qv::Local<QV_JSON_OPTIONS> opt( qvJsonOptionsCreate() );
    if ( auto text = textAt( store, "flags" ) )
        qvJsonOptionsSetFlags( opt.edit(), qvJsonFlagsFromString( text ) );
    restoreDecoding( opt.edit(), store );
    restoreEncoding( opt.edit(), store );
    return opt.give();
}
