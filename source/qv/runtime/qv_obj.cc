#include <qv/runtime/qv_obj.hh>

#include <qv/base/qv_dict.h>
#include <qv/base/qv_buffer.h>
#include <qv/base/qv_stack_trace.h>
#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module.h>
#include <qv/runtime/qv_runtime.h>
#include <qv/runtime/qv_sort.hh>
#include <qv/sys/qv_mem.hh>
#include <qv/sys/qv_record_pool.hh>
#include <qv/sys/qv_unique.hh>

namespace
{

// Both switches are set at startup and only read afterwards. The two locks are never held together.
constinit QV_BOOL odbEnabled = QV_FALSE;
constinit QV_BOOL objOrigin = QV_FALSE;
constinit qv___Lock odbLock = {};
constinit qv___Lock logLock = {};

// Lists of objects and of sorts, linked through fields of the members; odbLock is held.
template <typename T> void linkAtTail( T **first, T **last, T *item, T *T::*previous, T *T::*next )
{
    item->*previous = *last;
    item->*next = nullptr;
    ( *last ? ( *last )->*next : *first ) = item;
    *last = item;
}

template <typename T> void unlink( T **first, T **last, T *item, T *T::*previous, T *T::*next )
{
    ( item->*previous ? ( item->*previous )->*next : *first ) = item->*next;
    ( item->*next ? ( item->*next )->*previous : *last ) = item->*previous;
    item->*previous = nullptr;
    item->*next = nullptr;
}

void linkSort( QV_MODULE *module, QV_SORT *sort )
{
    QV_CHECK( sort->sortsNext == nullptr );
    QV_CHECK( sort->sortsPrevious == nullptr );
    linkAtTail( &module->sortsFirst, &module->sortsLast, sort, &qv___Sort::sortsPrevious,
                &qv___Sort::sortsNext );
}

void countCreated( QV_SORT *sort )
{
    if ( qv___RetainCountIncrement( &sort->objects ) == 1 && sort->module )
    {
        qv___RetainCountIncrement( &sort->module->sortsCount );
        if ( odbEnabled )
        {
            linkSort( sort->module, sort );
        }
    }
}

void countFreed( QV_SORT *sort )
{
    if ( qv___RetainCountDecrement( &sort->objects ) == 0 && sort->module )
    {
        if ( odbEnabled )
        {
            unlink( &sort->module->sortsFirst, &sort->module->sortsLast, sort, &qv___Sort::sortsPrevious,
                    &qv___Sort::sortsNext );
        }
        qv___RetainCountDecrement( &sort->module->sortsCount );
    }
}

// The values that a call stack itself is made of, and those that are too many to be worth one.
bool recordsOrigin( QV_SORT *sort )
{
    return sort != qvStringSort() && sort != qvVectorSort() && sort != qvDictSort() &&
           sort != qvBufferSort() && sort != qvStackTraceSort();
}

void freeLog( qvObj thisObj )
{
    qv___ObjLogEntry *entry = thisObj->logFirst;
    while ( entry )
    {
        qv___ObjLogEntry *next = entry->next;
        qvMemFree( entry->chars );
        qvMemFree( entry );
        entry = next;
    }
}

qv___ObjLogEntry *createLogEntry( QV_STRING *line )
{
    auto *entry = static_cast<qv___ObjLogEntry *>( qvMemAlloc( sizeof( qv___ObjLogEntry ) ) );
    entry->length = qvStringLength( line );
    entry->chars = nullptr;
    entry->next = nullptr;
    if ( entry->length > 0 )
        entry->chars =
            static_cast<QV_CHAR *>( qvMemDupN( qvStringBacking( line ), entry->length, sizeof( QV_CHAR ) ) );
    return entry;
}

void appendLogEntry( qvObj thisObj, qv___ObjLogEntry *entry )
{
    ( thisObj->logLast ? thisObj->logLast->next : thisObj->logFirst ) = entry;
    thisObj->logLast = entry;
}

} // namespace

void qv___ObjStartup()
{
    qv___LockInitialize( &logLock );
    qv___LockInitialize( &odbLock );
    odbEnabled = QV_BOOL_FROM( qvRuntimeFlags() & QV_RUNTIME_FLAG_OBJECT_DATABASE );
    objOrigin = QV_BOOL_FROM( qvRuntimeFlags() & QV_RUNTIME_FLAG_OBJECT_ORIGIN );
}

void qv___ObjShutdown()
{
    qv___LockFinalize( &odbLock );
    qv___LockFinalize( &logLock );
    odbEnabled = QV_FALSE;
    objOrigin = QV_FALSE;
}

QV_BOOL qv___ObjOdbEnabled()
{
    return odbEnabled;
}

void qv___ObjOdbLock()
{
    QV_CHECK( odbEnabled );
    qv___LockAcquire( &odbLock );
}

void qv___ObjOdbUnlock()
{
    QV_CHECK( odbEnabled );
    qv___LockRelease( &odbLock );
}

qvObj qv___ObjCreate( QV_INT size, QV_SORT *sort )
{
    QV_CHECK( sort );
    qvObj obj = static_cast<qvObj>( qv::recordAlloc( size ) );
    *obj = {
        QV___OBJ_TYPE_OBJECT, sort, QV___UNIQUE_INVALID, 1, size, 0, nullptr, nullptr, nullptr, nullptr };
    if ( __builtin_expect( odbEnabled, QV_FALSE ) )
    {
        qv::Locked locked( &odbLock );
        countCreated( sort );
        linkAtTail( &sort->objsFirst, &sort->objsLast, obj, &qv___Obj::objsPrevious, &qv___Obj::objsNext );
    }
    else
    {
        countCreated( sort );
    }
    if ( __builtin_expect( objOrigin, QV_FALSE ) && recordsOrigin( sort ) )
    {
        qv___ObjLogAppendCallStack( obj, 1, QV_INT_MAX );
    }
    return obj;
}

void qv___ObjFree( qvObj thisObj )
{
    // Sort and module records are never freed, whatever their count reads.
    if ( thisObj->type != QV___OBJ_TYPE_OBJECT )
        return;
    QV_SORT *sort = thisObj->sort;
    QV_CHECK( QV_REF_RETAIN_COUNT( thisObj ) == 0 );
    QV_CHECK( sort );
    bool listed = odbEnabled;
    if ( __builtin_expect( listed, false ) )
    {
        qv::Locked locked( &odbLock );
        unlink( &sort->objsFirst, &sort->objsLast, thisObj, &qv___Obj::objsPrevious, &qv___Obj::objsNext );
    }
    if ( sort->functions.freeFunc )
        sort->functions.freeFunc( thisObj );
    if ( thisObj->logFirst )
    {
        freeLog( thisObj );
    }
    QV_INT unique = __atomic_load_n( &thisObj->unique, __ATOMIC_ACQUIRE );
    if ( unique != QV___UNIQUE_INVALID )
    {
        qv___UniquePut( unique );
    }
    // Only now does the object stop to count: a module's sort stays in use until its last object is gone completely.
    if ( __builtin_expect( listed, false ) )
    {
        qv::Locked locked( &odbLock );
        countFreed( sort );
    }
    else
    {
        countFreed( sort );
    }
    qv::recordFree( thisObj, thisObj->dbgObjectSize );
}

void qvObjRetain( qvObj obj )
{
    qv::retain( obj );
}

void qvObjRelease( qvObj obj )
{
    qv::release( obj );
}

QV_SORT *qvObjSort( qvObj thisObj )
{
    QV_CHECK( thisObj );
    if ( thisObj->sort )
        return thisObj->sort;
    if ( thisObj->type == QV___OBJ_TYPE_SORT )
        return qvSortSort();
    QV_CHECK( thisObj->type == QV___OBJ_TYPE_MODULE );
    return qvModuleSort();
}

QV_INT qvObjCompare( qvObj objA, qvObj objB )
{
    QV_CHECK( objA );
    QV_CHECK( objB );
    if ( objA == objB )
        return 0;
    QV_SORT *sortA = qvObjSort( objA );
    if ( sortA != qvObjSort( objB ) || !sortA->functions.compareFunc )
        return qvObjDefaultCompareFunc( objA, objB );
    return sortA->functions.compareFunc( objA, objB );
}

QV_INT qvObjDefaultCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_INT order = qvSortCompare( qvObjSort( thisObj ), qvObjSort( thatObj ) );
    if ( order != 0 )
        return order;
    QV_INT thisUnique = qv___ObjUnique( thisObj );
    QV_INT thatUnique = qv___ObjUnique( thatObj );
    return ( thisUnique > thatUnique ) - ( thisUnique < thatUnique );
}

QV_STRING *qvObjToString( qvObj thisObj )
{
    QV_SORT *sort = qvObjSort( thisObj );
    QV_CHECK( sort );
    qvSortRetain( sort );
    QV_STRING *text = sort->functions.toStringFunc ? sort->functions.toStringFunc( thisObj )
                                                   : qvObjDefaultToStringFunc( thisObj );
    QV_CHECK( text );
    qvSortRelease( sort );
    return text;
}

QV_STRING *qvObjDefaultToStringFunc( qvObj thisObj )
{
    qv::Local<QV_STRING> name( qvSortName( qvObjSort( thisObj ) ) );
    return qvStringCreateFromFormatCstr( "%s(%^!16i)", -1, static_cast<QV_STRING *>( name ),
                                         qv___ObjUnique( thisObj ) );
}

QV_INT qv___ObjUnique( qvObj thisObj )
{
    QV_CHECK( thisObj );
    if ( thisObj->type != QV___OBJ_TYPE_OBJECT )
        return QV___UNIQUE_INVALID;
    QV_INT unique = __atomic_load_n( &thisObj->unique, __ATOMIC_SEQ_CST );
    if ( unique != QV___UNIQUE_INVALID )
        return unique;
    QV_INT fresh = qv___UniqueGet();
    QV_INT winner = QV___UNIQUE_INVALID;
    if ( __atomic_compare_exchange_n( &thisObj->unique, &winner, fresh, 0, __ATOMIC_SEQ_CST,
                                      __ATOMIC_SEQ_CST ) )
        return fresh;
    qv___UniquePut( fresh ); // another thread was first
    return winner;
}

QV_INT qv___ObjDbgObjectSize( qvObj thisObj )
{
    QV_CHECK( thisObj );
    return thisObj->dbgObjectSize;
}

QV_INT qv___ObjDbgAllocationSize( qvObj thisObj )
{
    QV_CHECK( thisObj );
    return __atomic_load_n( &thisObj->dbgAllocationSize, __ATOMIC_SEQ_CST );
}

QV_VECTOR *qv___ObjLog( qvObj thisObj )
{
    QV_CHECK( thisObj );
    // Entries never change and never go while the object lives; only the step to the next one needs the lock.
    qv___LockAcquire( &logLock );
    qv___ObjLogEntry *entry = thisObj->logFirst;
    qv___LockRelease( &logLock );
    if ( !entry )
        return nullptr;
    QV_VECTOR *lines = qvVectorCreate();
    while ( entry )
    {
        qv::Local<QV_STRING> line( qvStringCreateFromCharsCopy( entry->chars, entry->length ) );
        qvVectorAppendObj( &lines, qvStringObj( line ) );
        qv___LockAcquire( &logLock );
        entry = entry->next;
        qv___LockRelease( &logLock );
    }
    return lines;
}

void qv___ObjLogAppend( qvObj thisObj, QV_STRING *logMessage )
{
    QV_CHECK( logMessage );
    qv::Local<QV_VECTOR> lines( qvVectorCreate() );
    qvVectorAppendObj( lines.edit(), qvStringObj( logMessage ) );
    qv___ObjLogAppendVector( thisObj, lines );
}

void qv___ObjLogAppendVector( qvObj thisObj, QV_VECTOR *vec )
{
    QV_CHECK( thisObj );
    QV_CHECK( vec );
    // The lock is held throughout, so that the lines of one call stay together.
    qv::Locked locked( &logLock );
    for ( QV_INT idx = 0; idx < qvVectorLength( vec ); idx++ )
    {
        qv::Local<qv___Obj> item( qvVectorObjAt( vec, idx ) );
        qv::Local<QV_STRING> line( qvObjToString( item ) );
        appendLogEntry( thisObj, createLogEntry( line ) );
    }
}

// Its own frame is left out, so it must have one.
[[gnu::noinline]] void qv___ObjLogAppendCallStack( qvObj thisObj, QV_INT skip, QV_INT maxLength )
{
    QV_CHECK( QV_INT_ADD_OK( skip, 1 ) );
    qv::Local<QV_STACK_TRACE> trace( qvStackTraceCreate( skip + 1, maxLength ) );
    qv::Local<QV_VECTOR> lines( qvStackTraceVector( trace ) );
    qv::Local<QV_STRING> closingLine( qvStringCreate() );
    qvVectorAppendObj( lines.edit(), qvStringObj( closingLine ) );
    qv___ObjLogAppendVector( thisObj, lines );
}
