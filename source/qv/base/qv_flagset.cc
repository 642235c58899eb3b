#include <qv/base/qv_flagset.hh>

#include <qv/base/qv_boxed_int.hh>
#include <qv/base/qv_dict.hh>
#include <qv/base/qv_name.h>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>

#include <bit>

namespace
{

void qv___FlagsetFreeFunc( qvObj thisObj )
{
    QV_FLAGSET *fs = qvFlagsetFrom( thisObj );
    QV_CHECK( fs );
    qv::release( qv::objOf( fs->namesToValues ) );
    for ( QV_STRING *name : fs->names )
    {
        qv::releaseOptional( name );
    }
}

QV_FLAGSET *createWith( QV_DICT *namesToValues )
{
    auto *fs = qv::create<QV_FLAGSET>( qvFlagsetSort() );
    fs->namesToValues = namesToValues;
    for ( QV_STRING *&name : fs->names )
    {
        name = nullptr;
    }
    return fs;
}

int bitOf( QV_INT value )
{
    return std::countr_zero( static_cast<uint64_t>( value ) );
}

bool isSingleBit( QV_INT value )
{
    uint64_t bits = static_cast<uint64_t>( value );
    return bits != 0 && ( bits & ( bits - 1 ) ) == 0;
}

// Enters a name into a private flag set.
void enter( QV_FLAGSET *fs, QV_STRING *name, QV_INT value )
{
    qv::Local<QV_BOXED_INT> boxed( qvBoxedIntCreate( value ) );
    qvDictSetStringKey( &fs->namesToValues, name, qv::objOf<QV_BOXED_INT>( boxed ) );
    qv::assign( &fs->names[bitOf( value )], name );
}

QV_INT namedBits( QV_FLAGSET *fs )
{
    uint64_t bits = 0;
    for ( int bit = 0; bit < QV_INT_BITS; bit++ )
    {
        if ( fs->names[bit] )
            bits |= uint64_t( 1 ) << bit;
    }
    return static_cast<QV_INT>( bits );
}

// The word that one part of a text stands for.
QV_INT parsePart( QV_FLAGSET *fs, QV_STRING *part )
{
    QV_INT value = qvFlagsetFlag( fs, part );
    if ( value != 0 )
        return value;
    QV_INT consumed = 0;
    if ( !qvStringScanInt( part, 0, -1, -1, &value, &consumed ) )
        return 0;
    return consumed == qv::stringLength( part ) ? value & namedBits( fs ) : value;
}

} // namespace

QV_SORT_DEFINE( QV_FLAGSET, qvFlagset, { .freeFunc = qv___FlagsetFreeFunc } )

QV_FLAGSET *qvFlagsetCreate( void )
{
    return createWith( qvDictCreate() );
}

QV_FLAGSET *qvFlagsetCreateFrom( QV_FLAGSET *source )
{
    QV_CHECK( source );
    QV_FLAGSET *fs = createWith( qv::retained( source->namesToValues ) );
    for ( int bit = 0; bit < QV_INT_BITS; bit++ )
    {
        qv::assign( &fs->names[bit], source->names[bit] );
    }
    return fs;
}

QV_FLAGSET *qv::flagsetFromTable( const EnumName *names, QV_INT count )
{
    QV_CHECK( names || count == 0 );
    QV_FLAGSET *fs = createWith( qv::dictCreateFresh() );
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        Local<QV_STRING> name( qvStringCreateFromCstr( names[idx].name, -1 ) );
        QV_CHECK( qvNameUpperCaseOk( name, QV_TRUE ) );
        QV_CHECK( isSingleBit( names[idx].value ) );
        QV_CHECK( !qvFlagsetHasFlag( fs, name ) );
        enter( fs, name, names[idx].value );
    }
    return fs;
}

QV_VECTOR *qvFlagsetFlagsVector( QV_FLAGSET *fs )
{
    QV_CHECK( fs );
    return qvDictKeysVector( fs->namesToValues );
}

QV_INT qvFlagsetFlag( QV_FLAGSET *fs, QV_STRING *name )
{
    QV_CHECK( fs );
    QV_CHECK( name );
    qvObj value = qv::dictValueOf( fs->namesToValues, qv::objOf( name ) );
    return value ? static_cast<QV_BOXED_INT *>( value )->value : 0;
}

QV_INT qvFlagsetFlagCstr( QV_FLAGSET *fs, const char *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromCstr( name, nameLength ) );
    return qvFlagsetFlag( fs, qvs );
}

QV_INT qvFlagsetFlagWcstr( QV_FLAGSET *fs, const wchar_t *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromWcstr( name, nameLength ) );
    return qvFlagsetFlag( fs, qvs );
}

QV_BOOL qvFlagsetHasFlag( QV_FLAGSET *fs, QV_STRING *name )
{
    return QV_BOOL_FROM( qvFlagsetFlag( fs, name ) != 0 );
}

QV_BOOL qvFlagsetHasFlagCstr( QV_FLAGSET *fs, const char *name, QV_INT nameLength )
{
    return QV_BOOL_FROM( qvFlagsetFlagCstr( fs, name, nameLength ) != 0 );
}

QV_BOOL qvFlagsetHasFlagWcstr( QV_FLAGSET *fs, const wchar_t *name, QV_INT nameLength )
{
    return QV_BOOL_FROM( qvFlagsetFlagWcstr( fs, name, nameLength ) != 0 );
}

void qvFlagsetSetFlag( QV_FLAGSET **fs, QV_STRING *name, QV_INT value )
{
    QV_CHECK( fs );
    QV_CHECK( *fs );
    QV_CHECK( name );
    QV_CHECK( qvNameUpperCaseOk( name, QV_TRUE ) );
    QV_CHECK( isSingleBit( value ) );
    qv::makePrivate( fs, qvFlagsetCreateFrom );
    enter( *fs, name, value );
}

void qvFlagsetSetFlagCstr( QV_FLAGSET **fs, const char *name, QV_INT nameLength, QV_INT value )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromCstr( name, nameLength ) );
    qvFlagsetSetFlag( fs, qvs, value );
}

void qvFlagsetSetFlagWcstr( QV_FLAGSET **fs, const wchar_t *name, QV_INT nameLength, QV_INT value )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromWcstr( name, nameLength ) );
    qvFlagsetSetFlag( fs, qvs, value );
}

void qvFlagsetDelFlag( QV_FLAGSET **fs, QV_STRING *name )
{
    QV_CHECK( fs );
    QV_CHECK( *fs );
    QV_CHECK( name );
    QV_CHECK( qvNameUpperCaseOk( name, QV_TRUE ) );
    QV_INT value = qvFlagsetFlag( *fs, name );
    if ( value == 0 )
        return;
    qv::makePrivate( fs, qvFlagsetCreateFrom );
    // The name may be the very key that goes.
    qv::Local<QV_STRING> held = qv::Local<QV_STRING>::share( name );
    qvDictDelStringKey( &( *fs )->namesToValues, held );
    qv::assign( &( *fs )->names[bitOf( value )], static_cast<QV_STRING *>( nullptr ) );
}

void qvFlagsetDelFlagCstr( QV_FLAGSET **fs, const char *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromCstr( name, nameLength ) );
    qvFlagsetDelFlag( fs, qvs );
}

void qvFlagsetDelFlagWcstr( QV_FLAGSET **fs, const wchar_t *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromWcstr( name, nameLength ) );
    qvFlagsetDelFlag( fs, qvs );
}

QV_STRING *qvFlagsetGenerate( QV_FLAGSET *fs, QV_INT flags )
{
    QV_CHECK( fs );
    qv::Local<QV_STRING> res( qvStringCreate() );
    uint64_t left = static_cast<uint64_t>( flags );
    while ( left != 0 )
    {
        QV_STRING *name = fs->names[std::countr_zero( left )];
        QV_CHECK( name );
        qvStringDelimitedAppendCharDelimiter( res.edit(), name, '|' );
        left &= left - 1;
    }
    return res.give();
}

QV_INT qvFlagsetParse( QV_FLAGSET *fs, QV_STRING *flags )
{
    QV_CHECK( fs );
    QV_CHECK( flags );
    qv::Local<QV_VECTOR> parts( qvStringSplitChar( flags, '|', -1 ) );
    QV_INT res = 0;
    for ( QV_INT idx = 0; idx < qv::vectorLength( parts ); idx++ )
    {
        qv::Local<QV_STRING> part( qvStringFrom( qvVectorObjAt( parts, idx ) ) );
        qvStringTrim( part.edit() );
        res |= parsePart( fs, part );
    }
    return res;
}
