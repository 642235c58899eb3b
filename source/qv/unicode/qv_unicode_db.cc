#include <qv/unicode/qv_unicode_db.hh>

#include <qv/base/qv_boxed_int.hh>
#include <qv/base/qv_dict.hh>
#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>

namespace qv
{

namespace
{

// Adds a name; names in ascending order are appended without a search.
void addName( QV_DICT **names, QV_STRING *name, QV_BOXED_INT *value )
{
    QV_DICT *dict = *names;
    QV_INT length = dictLength( dict );
    bool isLast =
        length == 0 || qvStringCompare( qvStringFrom( dictPairs( dict )[length - 1].key ), name ) < 0;
    if ( isLast )
    {
        qv___DictMakeRoom( dict, length, 1 );
        dict->items[length] = { objOf( retained( name ) ), objOf( retained( value ) ) };
        return;
    }
    QV_CHECK( !qvDictHasStringKey( dict, name ) );
    qvDictSetStringKey( names, name, objOf( value ) );
}

QV_INT findName( QV_DICT *names, QV_STRING *name )
{
    qvObj value = dictValueOf( names, objOf( name ) );
    return value ? qvBoxedIntValue( qvBoxedIntFrom( value ) ) : -1;
}

void fill( UnicodeNames *names )
{
    Local<QV_DICT> exact( dictCreateFresh() );
    Local<QV_DICT> folded( dictCreateFresh() );
    for ( const EnumName &row : names->rows )
    {
        Local<QV_BOXED_INT> value( qvBoxedIntCreate( row.value ) );
        Local<QV_STRING> name( qvStringCreateFromCstr( row.name, -1 ) );
        addName( exact.edit(), name, value );
        qvStringToCaseFold( name.edit() );
        addName( folded.edit(), name, value );
    }
    replaceWith( &names->exact, exact.give() );
    replaceWith( &names->folded, folded.give() );
}

} // namespace

void unicodeNamesStartup( UnicodeNames *names, std::span<const EnumName> rows )
{
    names->rows = rows;
    names->filled.startup();
    names->exact = qvDictCreate();
    names->folded = qvDictCreate();
}

void unicodeNamesShutdown( UnicodeNames *names )
{
    retire( &names->folded );
    retire( &names->exact );
    names->filled.shutdown();
}

QV_INT unicodeNamesFind( UnicodeNames *names, QV_STRING *text )
{
    QV_CHECK( text );
    names->filled.ensure( [names] { fill( names ); } );
    return findName( names->exact, text );
}

QV_INT unicodeNamesFindCaseFold( UnicodeNames *names, QV_STRING *text )
{
    QV_CHECK( text );
    names->filled.ensure( [names] { fill( names ); } );
    Local<QV_STRING> name = Local<QV_STRING>::share( text );
    qvStringToCaseFold( name.edit() );
    return findName( names->folded, name );
}

} // namespace qv
