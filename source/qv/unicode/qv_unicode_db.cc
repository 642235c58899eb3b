#include <qv/unicode/qv_unicode_db.hh>

#include <qv/base/qv_boxed_int.hh>
#include <qv/base/qv_dict.hh>
#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>

namespace qv
{

namespace
{

void addName( QV_DICT **names, QV_STRING *name, QV_BOXED_INT *value )
{
    QV_CHECK( !qvDictHasStringKey( *names, name ) );
    qvDictSetStringKey( names, name, objOf( value ) );
}

QV_INT findName( QV_DICT *names, QV_STRING *name )
{
    qvObj value = dictValueOf( names, objOf( name ) );
    return value ? qvBoxedIntValue( qvBoxedIntFrom( value ) ) : -1;
}

} // namespace

void unicodeNamesFill( UnicodeNames *names, const EnumName *rows, QV_INT count )
{
    Local<QV_DICT> exact( qvDictCreate() );
    Local<QV_DICT> folded( qvDictCreate() );
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        Local<QV_BOXED_INT> value( qvBoxedIntCreate( rows[idx].value ) );
        Local<QV_STRING> name( qvStringCreateFromCstr( rows[idx].name, -1 ) );
        addName( exact.edit(), name, value );
        qvStringToCaseFold( name.edit() );
        addName( folded.edit(), name, value );
    }
    *names = { exact.give(), folded.give() };
}

void unicodeNamesRetire( UnicodeNames *names )
{
    retire( &names->folded );
    retire( &names->exact );
}

QV_INT unicodeNamesFind( const UnicodeNames &names, QV_STRING *text )
{
    QV_CHECK( text );
    return findName( names.exact, text );
}

QV_INT unicodeNamesFindCaseFold( const UnicodeNames &names, QV_STRING *text )
{
    QV_CHECK( text );
    Local<QV_STRING> name = Local<QV_STRING>::share( text );
    qvStringToCaseFold( name.edit() );
    return findName( names.folded, name );
}

} // namespace qv
