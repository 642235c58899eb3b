#include <qv/base/qv_generation.hh>

#include <qv/base/qv_boxed_int.hh>
#include <qv/base/qv_dict.hh>
#include <qv/base/qv_format.hh>
#include <qv/base/qv_monitor.h>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>

namespace
{

// Guards the number below.
constinit QV_MONITOR *qv___GenerationMonitor = nullptr;
constinit QV_INT qv___GenerationGenerationNumber = 0;

void qv___GenerationFreeFunc( qvObj thisObj )
{
    QV_GENERATION *generation = qvGenerationFrom( thisObj );
    QV_CHECK( generation );
    qv::release( qv::objOf( generation->numbers ) );
    qv::release( qv::objOf( generation->monitor ) );
    qv::releaseOptional( generation->parentGeneration );
}

QV_INT qv___GenerationCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_GENERATION *thisGeneration = qvGenerationFrom( thisObj );
    QV_GENERATION *thatGeneration = qvGenerationFrom( thatObj );
    QV_CHECK( thisGeneration );
    QV_CHECK( thatGeneration );
    return qvObjCompare( qv::objOf( thisGeneration->numbers ), qv::objOf( thatGeneration->numbers ) );
}

QV_STRING *qv___GenerationToStringFunc( qvObj thisObj )
{
    QV_GENERATION *generation = qvGenerationFrom( thisObj );
    QV_CHECK( generation );
    qv::Local<QV_STRING> res( qvStringCreate() );
    for ( QV_INT idx = 0; idx < qv::vectorLength( generation->numbers ); idx++ )
    {
        if ( idx > 0 )
            qv::stringAppendChar( res.edit(), ':' );
        QV_BOXED_INT *number = qvBoxedIntFrom( qv::vectorAt( generation->numbers, idx ) );
        qv::formatAppendInt( res.edit(), number->value, 10, 0, 0 );
    }
    return res.give();
}

void qv___GenerationMutexFreeFunc( qvObj thisObj )
{
    QV_GENERATION_MUTEX *mutex = qvGenerationMutexFrom( thisObj );
    QV_CHECK( mutex );
    qv::release( qv::objOf( mutex->generations ) );
    qv::release( qv::objOf( mutex->monitor ) );
}

// Takes the next number of a counter that the monitor guards.
QV_INT takeNumber( QV_MONITOR *monitor, QV_INT *nextNumber )
{
    qvMonitorEnter( monitor );
    QV_CHECK( *nextNumber < QV_INT_MAX );
    QV_INT number = ( *nextNumber )++;
    qvMonitorLeave( monitor );
    return number;
}

// Takes the references over; the parent may be null.
QV_GENERATION *createWith( QV_GENERATION *parentGeneration, QV_VECTOR *numbers )
{
    auto *generation = qv::create<QV_GENERATION>( qvGenerationSort() );
    generation->parentGeneration = parentGeneration;
    generation->monitor = qvMonitorCreate();
    generation->childGenerationNumber = 0;
    generation->numbers = numbers;
    return generation;
}

// Whether the generation or one of those above it is registered.
bool lineIsRegistered( QV_GENERATION_MUTEX *mutex, QV_GENERATION *generation )
{
    for ( QV_GENERATION *current = generation; current; current = current->parentGeneration )
    {
        if ( qvDictHasObjKey( mutex->generations, qv::objOf( current ) ) )
            return true;
    }
    return false;
}

} // namespace

QV_SORT_DEFINE( QV_GENERATION, qvGeneration,
                { .freeFunc = qv___GenerationFreeFunc,
                  .compareFunc = qv___GenerationCompareFunc,
                  .toStringFunc = qv___GenerationToStringFunc } )

QV_SORT_DEFINE( QV_GENERATION_MUTEX, qvGenerationMutex, { .freeFunc = qv___GenerationMutexFreeFunc } )

// ---- Generations ----

QV_GENERATION *qvGenerationCreate( void )
{
    QV_VECTOR *numbers = qvVectorCreate();
    qvVectorAppendInt( &numbers, takeNumber( qv___GenerationMonitor, &qv___GenerationGenerationNumber ) );
    return createWith( nullptr, numbers );
}

QV_GENERATION *qvGenerationCreateWithParent( QV_GENERATION *parentGeneration )
{
    QV_CHECK( parentGeneration );
    QV_VECTOR *numbers = qv::retained( parentGeneration->numbers );
    qvVectorAppendInt( &numbers,
                       takeNumber( parentGeneration->monitor, &parentGeneration->childGenerationNumber ) );
    return createWith( qv::retained( parentGeneration ), numbers );
}

QV_GENERATION *qvGenerationParent( QV_GENERATION *generation )
{
    QV_CHECK( generation );
    return generation->parentGeneration ? qv::retained( generation->parentGeneration ) : nullptr;
}

QV_BOOL qvGenerationHasParent( QV_GENERATION *generation )
{
    QV_CHECK( generation );
    return QV_BOOL_FROM( generation->parentGeneration );
}

QV_BOOL qvGenerationIsParent( QV_GENERATION *generation, QV_GENERATION *otherGeneration )
{
    QV_CHECK( generation );
    QV_CHECK( otherGeneration );
    return QV_BOOL_FROM( otherGeneration->parentGeneration == generation );
}

QV_BOOL qvGenerationIsChild( QV_GENERATION *generation, QV_GENERATION *otherGeneration )
{
    return qvGenerationIsParent( otherGeneration, generation );
}

QV_BOOL qvGenerationIsAncestor( QV_GENERATION *generation, QV_GENERATION *otherGeneration )
{
    QV_CHECK( generation );
    QV_CHECK( otherGeneration );
    QV_GENERATION *current = otherGeneration->parentGeneration;
    while ( current && current != generation )
    {
        current = current->parentGeneration;
    }
    return QV_BOOL_FROM( current );
}

QV_BOOL qvGenerationIsDescendant( QV_GENERATION *generation, QV_GENERATION *otherGeneration )
{
    return qvGenerationIsAncestor( otherGeneration, generation );
}

QV_BOOL qvGenerationIsYounger( QV_GENERATION *generation, QV_GENERATION *otherGeneration )
{
    return QV_BOOL_FROM( qvGenerationCompare( generation, otherGeneration ) > 0 );
}

QV_BOOL qvGenerationIsOlder( QV_GENERATION *generation, QV_GENERATION *otherGeneration )
{
    return QV_BOOL_FROM( qvGenerationCompare( generation, otherGeneration ) < 0 );
}

void qv___GenerationStartup()
{
    qv___GenerationMonitor = qvMonitorCreate();
    qv___GenerationGenerationNumber = 0;
}

void qv___GenerationShutdown()
{
    qv::retire( &qv___GenerationMonitor );
}

// ---- The registry ----

QV_GENERATION_MUTEX *qvGenerationMutexCreate( void )
{
    auto *mutex = qv::create<QV_GENERATION_MUTEX>( qvGenerationMutexSort() );
    mutex->monitor = qvMonitorCreate();
    mutex->generations = qvDictCreate();
    return mutex;
}

QV_BOOL qvGenerationMutexTryRegister( QV_GENERATION_MUTEX *mutex, QV_GENERATION *generation )
{
    QV_CHECK( mutex );
    QV_CHECK( generation );
    qvMonitorEnter( mutex->monitor );
    bool isFree = !lineIsRegistered( mutex, generation );
    if ( isFree )
        qvDictSetObjKey( &mutex->generations, qv::objOf( generation ), qv::objOf( generation ) );
    qvMonitorLeave( mutex->monitor );
    return QV_BOOL_FROM( isFree );
}

void qvGenerationMutexUnregister( QV_GENERATION_MUTEX *mutex, QV_GENERATION *generation )
{
    QV_CHECK( mutex );
    QV_CHECK( generation );
    qvMonitorEnter( mutex->monitor );
    qvDictDelObjKey( &mutex->generations, qv::objOf( generation ) );
    qvMonitorLeave( mutex->monitor );
}
