#include <qv/exec/qv_process_statistics_result.hh>

#include <qv/base/qv_dict.h>
#include <qv/base/qv_store.h>
#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/exec/qv_process_statistics_family.hh>
#include <qv/runtime/qv_local.hh>

namespace
{

using Result = QV_PROCESS_STATISTICS_RESULT;
using Family = QV_PROCESS_STATISTICS_FAMILY;

void qv___ProcessStatisticsResultFreeFunc( qvObj thisObj )
{
    Result *thisResult = qvProcessStatisticsResultFrom( thisObj );
    QV_CHECK( thisResult );
    qv::release( qv::objOf( thisResult->families ) );
}

// Takes the reference to the dictionary.
Result *createWith( QV_DICT *families )
{
    auto *result = qv::create<Result>( qvProcessStatisticsResultSort() );
    result->families = families;
    return result;
}

void makePrivate( Result **result )
{
    qv::makePrivate( result, qvProcessStatisticsResultCreateFrom );
}

void setFamily( QV_DICT **families, Family *family )
{
    qvDictSetStringKey( families, family->name, qvProcessStatisticsFamilyObj( family ) );
}

} // namespace

QV_SORT_DEFINE( QV_PROCESS_STATISTICS_RESULT, qvProcessStatisticsResult,
                { .freeFunc = qv___ProcessStatisticsResultFreeFunc } )

QV_PROCESS_STATISTICS_RESULT *qvProcessStatisticsResultCreate( void )
{
    return createWith( qvDictCreate() );
}

QV_PROCESS_STATISTICS_RESULT *qvProcessStatisticsResultCreateFrom( QV_PROCESS_STATISTICS_RESULT *source )
{
    QV_CHECK( source );
    return createWith( qv::retained( source->families ) );
}

QV_INT qvProcessStatisticsResultFamiliesLength( QV_PROCESS_STATISTICS_RESULT *result )
{
    QV_CHECK( result );
    return qvDictLength( result->families );
}

QV_VECTOR *qvProcessStatisticsResultFamiliesVector( QV_PROCESS_STATISTICS_RESULT *result )
{
    QV_CHECK( result );
    return qvDictValuesVector( result->families );
}

QV_STRING *qvProcessStatisticsResultFamilyNameAt( QV_PROCESS_STATISTICS_RESULT *result, QV_INT idx )
{
    QV_CHECK( result );
    return qvStringFrom( qvDictKeyAt( result->families, idx ) );
}

QV_PROCESS_STATISTICS_FAMILY *qvProcessStatisticsResultFamilyAt( QV_PROCESS_STATISTICS_RESULT *result,
                                                                 QV_INT idx )
{
    QV_CHECK( result );
    return qvProcessStatisticsFamilyFrom( qvDictValueAt( result->families, idx ) );
}

QV_PROCESS_STATISTICS_FAMILY *qvProcessStatisticsResultFamily( QV_PROCESS_STATISTICS_RESULT *result,
                                                               QV_STRING *name )
{
    QV_CHECK( result );
    QV_CHECK( name );
    return qvProcessStatisticsFamilyFrom( qvDictStringKey( result->families, name ) );
}

QV_BOOL qvProcessStatisticsResultHasFamily( QV_PROCESS_STATISTICS_RESULT *result, QV_STRING *name )
{
    QV_CHECK( result );
    QV_CHECK( name );
    return qvDictHasStringKey( result->families, name );
}

void qvProcessStatisticsResultSetFamily( QV_PROCESS_STATISTICS_RESULT **result,
                                         QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    makePrivate( result );
    setFamily( &( *result )->families, family );
}

void qvProcessStatisticsResultDelFamily( QV_PROCESS_STATISTICS_RESULT **result, QV_STRING *name )
{
    QV_CHECK( name );
    makePrivate( result );
    qvDictDelStringKey( &( *result )->families, name );
}

void qvProcessStatisticsResultClearFamilies( QV_PROCESS_STATISTICS_RESULT **result )
{
    makePrivate( result );
    qvDictClear( &( *result )->families );
}

void qvProcessStatisticsResultSetFamiliesVector( QV_PROCESS_STATISTICS_RESULT **result, QV_VECTOR *vec )
{
    QV_CHECK( vec );
    qv::Local<QV_DICT> families( qvDictCreate() );
    for ( QV_INT idx = 0; idx < qvVectorLength( vec ); idx++ )
    {
        qv::Local<Family> family( qvProcessStatisticsFamilyFrom( qvVectorObjAt( vec, idx ) ) );
        QV_CHECK( family );
        setFamily( families.edit(), family );
    }
    makePrivate( result );
    qv::replaceWith( &( *result )->families, families.give() );
}

QV_STORE *qvProcessStatisticsResultStore( QV_PROCESS_STATISTICS_RESULT *result )
{
    QV_CHECK( result );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    if ( qvDictLength( result->families ) == 0 )
        return store.give();
    qv::Local<QV_STORE> array( qvStoreCreateArray() );
    for ( QV_INT idx = 0; idx < qvDictLength( result->families ); idx++ )
    {
        qv::Local<Family> family( qvProcessStatisticsResultFamilyAt( result, idx ) );
        qv::Local<QV_STORE> entry( qvProcessStatisticsFamilyStore( family ) );
        qvStoreAppendStore( array.edit(), entry );
    }
    qvStoreSetStoreCstr( store.edit(), "families", -1, array );
    return store.give();
}

QV_PROCESS_STATISTICS_RESULT *qvProcessStatisticsResultRestore( QV_STORE *store )
{
    QV_CHECK( store );
    Result *result = qvProcessStatisticsResultCreate();
    qv::Local<QV_STORE> array( qvStoreStoreCstr( store, "families", -1 ) );
    for ( QV_INT idx = 0; array && idx < qvStoreLength( array ); idx++ )
    {
        qv::Local<QV_STORE> entry( qvStoreStoreAt( array, idx ) );
        qv::Local<Family> family( entry ? qvProcessStatisticsFamilyTryRestore( entry ) : nullptr );
        if ( family )
        {
            setFamily( &result->families, family );
        }
    }
    return result;
}
