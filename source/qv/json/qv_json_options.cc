#include <qv/json/qv_json_options.hh>

#include <qv/base/qv_flagset.hh>
#include <qv/base/qv_string.h>

QV_SORT_DEFINE( QV_JSON_OPTIONS, qvJsonOptions, { .freeFunc = qv___JsonOptionsFreeFunc } )

constinit QV_FLAGSET *qv___JsonFlagsFlagset = nullptr;
constinit QV_JSON_OPTIONS *qv___JsonOptionsBuiltin = nullptr;

namespace
{

constexpr qv::EnumName flagNames[] = {
    { QV_JSON_FLAG_DECODE_NORMALIZE, "QV_JSON_FLAG_DECODE_NORMALIZE" },
    { QV_JSON_FLAG_DECODE_ACCEPT_ANY_WHITESPACE, "QV_JSON_FLAG_DECODE_ACCEPT_ANY_WHITESPACE" },
    { QV_JSON_FLAG_DECODE_ACCEPT_ANY_HEXDIG, "QV_JSON_FLAG_DECODE_ACCEPT_ANY_HEXDIG" },
    { QV_JSON_FLAG_ENCODE_SINGLE_LINE, "QV_JSON_FLAG_ENCODE_SINGLE_LINE" },
    { QV_JSON_FLAG_ENCODE_PACKED, "QV_JSON_FLAG_ENCODE_PACKED" },
};

constexpr QV_JSON_FLAGS allFlags = 63;

// The one way to a record that may be changed.
QV_JSON_OPTIONS *edit( QV_JSON_OPTIONS **opt )
{
    qv::makePrivate( opt, qvJsonOptionsCreateFrom );
    return *opt;
}

} // namespace

// ---- Flags ----

QV_JSON_FLAGS qvJsonFlagsNormalize( QV_JSON_FLAGS flags )
{
    return flags &
           ( flags & QV_JSON_FLAG_ENCODE_SINGLE_LINE ? allFlags : allFlags ^ QV_JSON_FLAG_ENCODE_PACKED );
}

QV_JSON_FLAGS qvJsonFlagsFromString( QV_STRING *qvs )
{
    return qvJsonFlagsNormalize( qvFlagsetParse( qv___JsonFlagsFlagset, qvs ) );
}

QV_STRING *qvJsonFlagsToString( QV_JSON_FLAGS flags )
{
    // A bit without a name can't be generated.
    return qvFlagsetGenerate( qv___JsonFlagsFlagset,
                              qvJsonFlagsNormalize( flags ) & ~QV_JSON_FLAG_DECODE_LOCATIONS );
}

// ---- The record ----

void qv___JsonOptionsFreeFunc( qvObj thisObj )
{
    QV_JSON_OPTIONS *opt = qvJsonOptionsFrom( thisObj );
    QV_CHECK( opt );
    qvStringRelease( opt->encodeIndent );
}

QV_JSON_OPTIONS *qvJsonOptionsCreate( void )
{
    return qv::retained( qv___JsonOptionsBuiltin );
}

QV_JSON_OPTIONS *qvJsonOptionsCreateFrom( QV_JSON_OPTIONS *source )
{
    QV_CHECK( source );
    auto *opt = qv::create<QV_JSON_OPTIONS>( qvJsonOptionsSort() );
    opt->flags = source->flags;
    opt->flagsDefault = source->flagsDefault;
    opt->decodeCharset = source->decodeCharset;
    opt->decodeCharsetDefault = source->decodeCharsetDefault;
    opt->decodeCharsetFlags = source->decodeCharsetFlags;
    opt->decodeCharsetFlagsDefault = source->decodeCharsetFlagsDefault;
    opt->decodeMaxDepth = source->decodeMaxDepth;
    opt->decodeMaxDepthDefault = source->decodeMaxDepthDefault;
    opt->decodeNlfFlags = source->decodeNlfFlags;
    opt->decodeNlfFlagsDefault = source->decodeNlfFlagsDefault;
    opt->decodeUnicodeNormalForm = source->decodeUnicodeNormalForm;
    opt->decodeUnicodeNormalFormDefault = source->decodeUnicodeNormalFormDefault;
    opt->encodeCharset = source->encodeCharset;
    opt->encodeCharsetDefault = source->encodeCharsetDefault;
    opt->encodeCharsetFlags = source->encodeCharsetFlags;
    opt->encodeCharsetFlagsDefault = source->encodeCharsetFlagsDefault;
    opt->encodeIndent = qv::retained( source->encodeIndent );
    opt->encodeIndentDefault = source->encodeIndentDefault;
    opt->encodeNlfFlags = source->encodeNlfFlags;
    opt->encodeNlfFlagsDefault = source->encodeNlfFlagsDefault;
    return opt;
}

// ---- The options ----

QV_JSON_FLAGS qvJsonOptionsFlags( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->flags;
}

void qvJsonOptionsSetFlags( QV_JSON_OPTIONS **opt, QV_JSON_FLAGS value )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->flags = qvJsonFlagsNormalize( value );
    own->flagsDefault = QV_FALSE;
}

QV_BOOL qvJsonOptionsFlagsDefault( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->flagsDefault;
}

void qvJsonOptionsSetFlagsDefault( QV_JSON_OPTIONS **opt )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->flags = qv___JsonOptionsBuiltin->flags;
    own->flagsDefault = QV_TRUE;
}

QV_CHARSET qvJsonOptionsDecodeCharset( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->decodeCharset;
}

void qvJsonOptionsSetDecodeCharset( QV_JSON_OPTIONS **opt, QV_CHARSET value )
{
    QV_CHECK( QV_CHARSET_OK( value ) );
    QV_JSON_OPTIONS *own = edit( opt );
    own->decodeCharset = value;
    own->decodeCharsetDefault = QV_FALSE;
}

QV_BOOL qvJsonOptionsDecodeCharsetDefault( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->decodeCharsetDefault;
}

void qvJsonOptionsSetDecodeCharsetDefault( QV_JSON_OPTIONS **opt )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->decodeCharset = qv___JsonOptionsBuiltin->decodeCharset;
    own->decodeCharsetDefault = QV_TRUE;
}

QV_CHARSET_FLAGS qvJsonOptionsDecodeCharsetFlags( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->decodeCharsetFlags;
}

void qvJsonOptionsSetDecodeCharsetFlags( QV_JSON_OPTIONS **opt, QV_CHARSET_FLAGS value )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->decodeCharsetFlags = qvCharsetFlagsNormalize( value );
    own->decodeCharsetFlagsDefault = QV_FALSE;
}

QV_BOOL qvJsonOptionsDecodeCharsetFlagsDefault( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->decodeCharsetFlagsDefault;
}

void qvJsonOptionsSetDecodeCharsetFlagsDefault( QV_JSON_OPTIONS **opt )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->decodeCharsetFlags = qv___JsonOptionsBuiltin->decodeCharsetFlags;
    own->decodeCharsetFlagsDefault = QV_TRUE;
}

QV_INT qvJsonOptionsDecodeMaxDepth( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->decodeMaxDepth;
}

void qvJsonOptionsSetDecodeMaxDepth( QV_JSON_OPTIONS **opt, QV_INT value )
{
    QV_CHECK( value > 0 );
    QV_JSON_OPTIONS *own = edit( opt );
    own->decodeMaxDepth = value;
    own->decodeMaxDepthDefault = QV_FALSE;
}

QV_BOOL qvJsonOptionsDecodeMaxDepthDefault( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->decodeMaxDepthDefault;
}

void qvJsonOptionsSetDecodeMaxDepthDefault( QV_JSON_OPTIONS **opt )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->decodeMaxDepth = qv___JsonOptionsBuiltin->decodeMaxDepth;
    own->decodeMaxDepthDefault = QV_TRUE;
}

QV_NLF_FLAGS qvJsonOptionsDecodeNlfFlags( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->decodeNlfFlags;
}

void qvJsonOptionsSetDecodeNlfFlags( QV_JSON_OPTIONS **opt, QV_NLF_FLAGS value )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->decodeNlfFlags = qvNlfFlagsNormalize( value );
    own->decodeNlfFlagsDefault = QV_FALSE;
}

QV_BOOL qvJsonOptionsDecodeNlfFlagsDefault( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->decodeNlfFlagsDefault;
}

void qvJsonOptionsSetDecodeNlfFlagsDefault( QV_JSON_OPTIONS **opt )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->decodeNlfFlags = qv___JsonOptionsBuiltin->decodeNlfFlags;
    own->decodeNlfFlagsDefault = QV_TRUE;
}

QV_UNICODE_NORMAL_FORM qvJsonOptionsDecodeUnicodeNormalForm( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->decodeUnicodeNormalForm;
}

void qvJsonOptionsSetDecodeUnicodeNormalForm( QV_JSON_OPTIONS **opt, QV_UNICODE_NORMAL_FORM value )
{
    QV_CHECK( QV_UNICODE_NORMAL_FORM_OK( value ) );
    QV_JSON_OPTIONS *own = edit( opt );
    own->decodeUnicodeNormalForm = value;
    own->decodeUnicodeNormalFormDefault = QV_FALSE;
}

QV_BOOL qvJsonOptionsDecodeUnicodeNormalFormDefault( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->decodeUnicodeNormalFormDefault;
}

void qvJsonOptionsSetDecodeUnicodeNormalFormDefault( QV_JSON_OPTIONS **opt )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->decodeUnicodeNormalForm = qv___JsonOptionsBuiltin->decodeUnicodeNormalForm;
    own->decodeUnicodeNormalFormDefault = QV_TRUE;
}

QV_CHARSET qvJsonOptionsEncodeCharset( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->encodeCharset;
}

void qvJsonOptionsSetEncodeCharset( QV_JSON_OPTIONS **opt, QV_CHARSET value )
{
    QV_CHECK( QV_CHARSET_OK( value ) );
    QV_JSON_OPTIONS *own = edit( opt );
    own->encodeCharset = value;
    own->encodeCharsetDefault = QV_FALSE;
}

QV_BOOL qvJsonOptionsEncodeCharsetDefault( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->encodeCharsetDefault;
}

void qvJsonOptionsSetEncodeCharsetDefault( QV_JSON_OPTIONS **opt )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->encodeCharset = qv___JsonOptionsBuiltin->encodeCharset;
    own->encodeCharsetDefault = QV_TRUE;
}

QV_CHARSET_FLAGS qvJsonOptionsEncodeCharsetFlags( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->encodeCharsetFlags;
}

void qvJsonOptionsSetEncodeCharsetFlags( QV_JSON_OPTIONS **opt, QV_CHARSET_FLAGS value )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->encodeCharsetFlags = qvCharsetFlagsNormalize( value );
    own->encodeCharsetFlagsDefault = QV_FALSE;
}

QV_BOOL qvJsonOptionsEncodeCharsetFlagsDefault( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->encodeCharsetFlagsDefault;
}

void qvJsonOptionsSetEncodeCharsetFlagsDefault( QV_JSON_OPTIONS **opt )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->encodeCharsetFlags = qv___JsonOptionsBuiltin->encodeCharsetFlags;
    own->encodeCharsetFlagsDefault = QV_TRUE;
}

QV_STRING *qvJsonOptionsEncodeIndent( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return qv::retained( opt->encodeIndent );
}

void qvJsonOptionsSetEncodeIndent( QV_JSON_OPTIONS **opt, QV_STRING *value )
{
    QV_CHECK( value );
    QV_JSON_OPTIONS *own = edit( opt );
    qv::assign( &own->encodeIndent, value );
    own->encodeIndentDefault = QV_FALSE;
}

QV_BOOL qvJsonOptionsEncodeIndentDefault( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->encodeIndentDefault;
}

void qvJsonOptionsSetEncodeIndentDefault( QV_JSON_OPTIONS **opt )
{
    QV_JSON_OPTIONS *own = edit( opt );
    qv::assign( &own->encodeIndent, qv___JsonOptionsBuiltin->encodeIndent );
    own->encodeIndentDefault = QV_TRUE;
}

QV_NLF_FLAGS qvJsonOptionsEncodeNlfFlags( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->encodeNlfFlags;
}

void qvJsonOptionsSetEncodeNlfFlags( QV_JSON_OPTIONS **opt, QV_NLF_FLAGS value )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->encodeNlfFlags = qvNlfFlagsNormalize( value );
    own->encodeNlfFlagsDefault = QV_FALSE;
}

QV_BOOL qvJsonOptionsEncodeNlfFlagsDefault( QV_JSON_OPTIONS *opt )
{
    QV_CHECK( opt );
    return opt->encodeNlfFlagsDefault;
}

void qvJsonOptionsSetEncodeNlfFlagsDefault( QV_JSON_OPTIONS **opt )
{
    QV_JSON_OPTIONS *own = edit( opt );
    own->encodeNlfFlags = qv___JsonOptionsBuiltin->encodeNlfFlags;
    own->encodeNlfFlagsDefault = QV_TRUE;
}

// ---- Components ----

void qv___JsonFlagsStartup()
{
    qv___JsonFlagsFlagset = qv::flagsetFromTable( flagNames, QV_SIZEOF_ARRAY( flagNames ) );
}

void qv___JsonFlagsShutdown()
{
    qv::retire( &qv___JsonFlagsFlagset );
}

void qv___JsonOptionsStartup()
{
    auto *opt = qv::create<QV_JSON_OPTIONS>( qvJsonOptionsSort() );
    opt->flags = 0;
    opt->flagsDefault = QV_TRUE;
    opt->decodeCharset = QV_CHARSET_UTF_8;
    opt->decodeCharsetDefault = QV_TRUE;
    opt->decodeCharsetFlags = QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER;
    opt->decodeCharsetFlagsDefault = QV_TRUE;
    opt->decodeMaxDepth = 50;
    opt->decodeMaxDepthDefault = QV_TRUE;
    opt->decodeNlfFlags = 255;
    opt->decodeNlfFlagsDefault = QV_TRUE;
    opt->decodeUnicodeNormalForm = QV_UNICODE_NORMAL_FORM_C;
    opt->decodeUnicodeNormalFormDefault = QV_TRUE;
    opt->encodeCharset = QV_CHARSET_UTF_8;
    opt->encodeCharsetDefault = QV_TRUE;
    opt->encodeCharsetFlags = 0;
    opt->encodeCharsetFlagsDefault = QV_TRUE;
    opt->encodeIndent = qvStringCreateFromAscii( "\t", 1 );
    opt->encodeIndentDefault = QV_TRUE;
    opt->encodeNlfFlags = QV_NLF_FLAG_LF;
    opt->encodeNlfFlagsDefault = QV_TRUE;
    qv___JsonOptionsBuiltin = opt;
}

void qv___JsonOptionsShutdown()
{
    qv::retire( &qv___JsonOptionsBuiltin );
}
