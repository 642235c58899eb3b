#include <qv/charset/qv_charset.hh>

#include <qv/base/qv_boxed_int.h>
#include <qv/base/qv_dict.hh>
#include <qv/base/qv_enum.hh>
#include <qv/base/qv_flagset.hh>
#include <qv/base/qv_on_demand.hh>
#include <qv/base/qv_string.h>
#include <qv/charset/qv_charset_table.hh>
#include <qv/runtime/qv_local.hh>

#include <cstring>

QV_ENUM *qv___CharsetEnum;
QV_DICT *qv___CharsetFromIanaNameDict;
QV_DICT *qv___CharsetToIanaNameDict;
QV_DICT *qv___CharsetFromWindowsCodePageDict;
QV_DICT *qv___CharsetToWindowsCodePageDict;
QV_FLAGSET *qv___CharsetFlagsFlagset;

namespace
{

// The enumeration and the dictionaries are filled by the first lookup.
constinit qv::OnDemand registry = {};

constexpr QV_CHARSET_FLAGS knownFlags =
    QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER | QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS |
    QV_CHARSET_FLAG_IGNORE_BYTE_ORDER_MARK | QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK;

constexpr qv::EnumName flagNames[] = {
    { QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER, "QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER" },
    { QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS, "QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS" },
    { QV_CHARSET_FLAG_IGNORE_BYTE_ORDER_MARK, "QV_CHARSET_FLAG_IGNORE_BYTE_ORDER_MARK" },
    { QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK, "QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK" },
};

// Enters a name, which is folded, under the boxed charset.
void registerName( QV_STRING **name, QV_BOXED_INT *value )
{
    qvStringToCaseFold( name );
    qvDictSetStringKey( &qv___CharsetFromIanaNameDict, *name, qv::objOf( value ) );
}

void registerAlias( const char *alias, QV_INT aliasLength, QV_BOXED_INT *value )
{
    qv::Local<QV_STRING> name( qvStringCreateFromAscii( alias, aliasLength ) );
    registerName( name.edit(), value );
}

void registerAliases( QV_CHARSET cs, const char *aliases )
{
    qv::Local<QV_BOXED_INT> value( qvBoxedIntCreate( cs ) );
    while ( *aliases )
    {
        const size_t length = std::strcspn( aliases, " " );
        registerAlias( aliases, static_cast<QV_INT>( length ), value );
        aliases += length + ( aliases[length] == ' ' );
    }
}

// The integer under the key, -1 if there is none.
QV_INT boxedAt( qvObj value )
{
    qv::Local<QV_BOXED_INT> boxed( qvBoxedIntFrom( value ) );
    return boxed ? qvBoxedIntValue( boxed ) : -1;
}

} // namespace

void qv___CharsetRegisterCharset( QV_CHARSET cs, const char *enumerantName, const char *ianaName )
{
    QV_CHECK( QV_CHARSET_OK( cs ) );
    qvEnumSetEnumerantCstr( &qv___CharsetEnum, enumerantName, -1, cs );
    qv::Local<QV_STRING> name( qvStringCreateFromAscii( ianaName, -1 ) );
    qvDictSetIntKey( &qv___CharsetToIanaNameDict, cs, qv::objOf<QV_STRING>( name ) );
    qv::Local<QV_BOXED_INT> value( qvBoxedIntCreate( cs ) );
    registerName( name.edit(), value );
}

void qv___CharsetRegisterAlias( QV_CHARSET cs, const char *alias )
{
    QV_CHECK( QV_CHARSET_OK( cs ) );
    qv::Local<QV_BOXED_INT> value( qvBoxedIntCreate( cs ) );
    registerAlias( alias, -1, value );
}

void qv___CharsetRegisterWindowsCodePage( QV_CHARSET cs, QV_INT codePage )
{
    QV_CHECK( QV_CHARSET_OK( cs ) );
    QV_CHECK( codePage >= 0 );
    qv::Local<QV_BOXED_INT> charset( qvBoxedIntCreate( cs ) );
    qvDictSetIntKey( &qv___CharsetFromWindowsCodePageDict, codePage, qv::objOf<QV_BOXED_INT>( charset ) );
    qv::Local<QV_BOXED_INT> page( qvBoxedIntCreate( codePage ) );
    qvDictSetIntKey( &qv___CharsetToWindowsCodePageDict, cs, qv::objOf<QV_BOXED_INT>( page ) );
}

static void fillRegistry()
{
    for ( const qv::CharsetRow &row : qv::charsetRows )
    {
        qv___CharsetRegisterCharset( row.cs, row.enumerantName, row.ianaName );
        registerAliases( row.cs, row.aliases );
        if ( row.codePage >= 0 )
            qv___CharsetRegisterWindowsCodePage( row.cs, row.codePage );
    }
}

void qv___CharsetStartup()
{
    qv___CharsetEnum = qvEnumCreate();
    qv___CharsetFromIanaNameDict = qvDictCreate();
    qv___CharsetToIanaNameDict = qvDictCreate();
    qv___CharsetFromWindowsCodePageDict = qvDictCreate();
    qv___CharsetToWindowsCodePageDict = qvDictCreate();
    registry.startup();
}

void qv___CharsetShutdown()
{
    registry.shutdown();
    qv::retire( &qv___CharsetEnum );
    qv::retire( &qv___CharsetFromIanaNameDict );
    qv::retire( &qv___CharsetToIanaNameDict );
    qv::retire( &qv___CharsetFromWindowsCodePageDict );
    qv::retire( &qv___CharsetToWindowsCodePageDict );
}

void qv___CharsetFlagsStartup()
{
    qv___CharsetFlagsFlagset = qv::flagsetFromTable( flagNames, QV_SIZEOF_ARRAY( flagNames ) );
}

void qv___CharsetFlagsShutdown()
{
    qv::retire( &qv___CharsetFlagsFlagset );
}

QV_STRING *qvCharsetToString( QV_CHARSET cs )
{
    QV_CHECK( QV_CHARSET_OK( cs ) );
    registry.ensure( fillRegistry );
    return qvEnumGenerate( qv___CharsetEnum, cs );
}

QV_CHARSET qvCharsetFromString( QV_STRING *text )
{
    QV_CHECK( text );
    registry.ensure( fillRegistry );
    return qvEnumParse( qv___CharsetEnum, text );
}

QV_CHARSET qvCharsetFromIanaName( QV_STRING *name )
{
    QV_CHECK( name );
    qv::Local<QV_STRING> folded = qv::Local<QV_STRING>::share( name );
    qvStringToCaseFold( folded.edit() );
    registry.ensure( fillRegistry );
    return boxedAt( qvDictStringKey( qv___CharsetFromIanaNameDict, folded ) );
}

QV_STRING *qvCharsetToIanaName( QV_CHARSET cs )
{
    QV_CHECK( QV_CHARSET_OK( cs ) );
    registry.ensure( fillRegistry );
    return qvStringFrom( qvDictIntKey( qv___CharsetToIanaNameDict, cs ) );
}

QV_CHARSET qvCharsetFromWindowsCodePage( QV_INT cp )
{
    QV_CHECK( cp >= 0 );
    registry.ensure( fillRegistry );
    return boxedAt( qvDictIntKey( qv___CharsetFromWindowsCodePageDict, cp ) );
}

QV_INT qvCharsetToWindowsCodePage( QV_CHARSET cs )
{
    QV_CHECK( QV_CHARSET_OK( cs ) );
    registry.ensure( fillRegistry );
    return boxedAt( qvDictIntKey( qv___CharsetToWindowsCodePageDict, cs ) );
}

QV_CHARSET_FLAGS qvCharsetFlagsNormalize( QV_CHARSET_FLAGS flags )
{
    flags &= knownFlags;
    if ( flags & QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS )
        flags &= ~QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER;
    return flags;
}

QV_CHARSET_FLAGS qvCharsetFlagsFromString( QV_STRING *text )
{
    QV_CHECK( text );
    return qvCharsetFlagsNormalize( qvFlagsetParse( qv___CharsetFlagsFlagset, text ) );
}

QV_STRING *qvCharsetFlagsToString( QV_CHARSET_FLAGS flags )
{
    return qvFlagsetGenerate( qv___CharsetFlagsFlagset, qvCharsetFlagsNormalize( flags ) );
}
