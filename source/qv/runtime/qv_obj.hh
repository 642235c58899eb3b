#ifndef QV_RUNTIME_QV_OBJ_HH
#define QV_RUNTIME_QV_OBJ_HH

// The object layer as the library's own code sees it: inline retain and release, the atomic counts, the object log and
// the object database.

#include <qv/runtime/qv_author.h>
#include <qv/runtime/qv_obj.h>
#include <qv/sys/qv_check.hh>

// Declares the eight standard operations of a sort that stays inside the library.
#define QV_SORT_FUNCTIONS_INTERNAL( NAME, prefix ) QV___SORT_FUNCTIONS(, NAME, prefix )

// One line of an object's log.
struct qv___ObjLogEntry
{
    QV_INT length;  // characters
    QV_CHAR *chars; // own copy, null when length is 0
    qv___ObjLogEntry *next;
};

// Counts change only by atomic read-modify-write with full barriers; a plain count, no flag bits.
inline uint32_t qv___RetainCountIncrement( uint32_t *count )
{
    return __atomic_add_fetch( count, 1, __ATOMIC_SEQ_CST );
}

inline uint32_t qv___RetainCountDecrement( uint32_t *count )
{
    return __atomic_sub_fetch( count, 1, __ATOMIC_SEQ_CST );
}

inline uint32_t qv___RetainCountValue( const uint32_t *count )
{
    return __atomic_load_n( count, __ATOMIC_SEQ_CST );
}

// Destroys an object whose count has reached 0.
void qv___ObjFree( qvObj thisObj );

// The object's token, taken on first demand; -1 for sort and module records.
QV_INT qv___ObjUnique( qvObj thisObj );

QV_INT qv___ObjDbgObjectSize( qvObj thisObj );
QV_INT qv___ObjDbgAllocationSize( qvObj thisObj );

// Every sort with storage outside its record reports the bytes whenever that storage changes, 0 when it goes.
inline void qv___ObjDbgSetAllocationSize( qvObj thisObj, QV_INT size )
{
    QV_INT before = __atomic_load_n( &thisObj->dbgAllocationSize, __ATOMIC_RELAXED );
    QV_CHECK( __atomic_compare_exchange_n( &thisObj->dbgAllocationSize, &before, size, 0, __ATOMIC_SEQ_CST,
                                           __ATOMIC_RELAXED ) );
}

inline void qv___ObjDbgSetAllocationSizeN( qvObj thisObj, QV_INT count, QV_INT size )
{
    QV_CHECK( QV_INT_MUL_OK( count, size ) );
    qv___ObjDbgSetAllocationSize( thisObj, count * size );
}

// The log as a new vector of strings, oldest first; null if the log is empty.
QV_VECTOR *qv___ObjLog( qvObj thisObj );
void qv___ObjLogAppend( qvObj thisObj, QV_STRING *logMessage );
void qv___ObjLogAppendVector( qvObj thisObj, QV_VECTOR *vec );
void qv___ObjLogAppendCallStack( qvObj thisObj, QV_INT skip, QV_INT maxLength );

QV_BOOL qv___ObjOdbEnabled();
void qv___ObjOdbLock();
void qv___ObjOdbUnlock();

void qv___ObjStartup();
void qv___ObjShutdown();

namespace qv
{

inline void retain( qvObj obj )
{
    QV_CHECK( obj );
    qv___RetainCountIncrement( &obj->retainCount );
}

inline void release( qvObj obj )
{
    QV_CHECK( obj );
    if ( qv___RetainCountDecrement( &obj->retainCount ) == 0 )
        qv___ObjFree( obj );
}

// Adds a reference unless the last one is already gone; false if it is.
inline bool retainIfAlive( qvObj obj )
{
    uint32_t count = qv___RetainCountValue( &obj->retainCount );
    while ( count > 0 )
    {
        if ( __atomic_compare_exchange_n( &obj->retainCount, &count, count + 1, 0, __ATOMIC_SEQ_CST,
                                          __ATOMIC_SEQ_CST ) )
            return true;
    }
    return false;
}

// The typed handle as an untyped one, also where the record's type is incomplete.
template <typename T> inline qvObj objOf( T *handle )
{
    return reinterpret_cast<qvObj>( handle );
}

template <typename T> inline T *retained( T *handle )
{
    retain( objOf( handle ) );
    return handle;
}

// The same for a handle that may be null.
template <typename T> inline T *retainedOptional( T *handle )
{
    return handle ? retained( handle ) : nullptr;
}

// A new record of the given sort, only its header initialized.
template <typename T> inline T *create( QV_SORT *sort )
{
    return static_cast<T *>( qv___ObjCreate( sizeof( T ), sort ) );
}

template <typename T> inline bool isShared( T *handle )
{
    return QV_REF_RETAIN_COUNT( objOf( handle ) ) > 1;
}

// The one gate of copy-on-write: after it the caller's handle holds the only reference. createFrom makes a private copy.
template <typename T> inline void makePrivate( T **dest, T *( *createFrom )(T *))
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    if ( isShared( *dest ) )
    {
        T *shared = *dest;
        *dest = createFrom( shared );
        release( objOf( shared ) );
    }
}

// Replaces the reference held in a field or handle by one that the caller hands over; either may be null.
template <typename T> inline void replaceWith( T **field, T *given )
{
    T *before = *field;
    *field = given;
    if ( before )
        release( objOf( before ) );
}

// Replaces the reference held in a field by a new reference to a borrowed object; either may be null.
template <typename T> inline void assign( T **field, T *borrowed )
{
    if ( borrowed )
        retain( objOf( borrowed ) );
    replaceWith( field, borrowed );
}

template <typename T> inline void releaseOptional( T *handle )
{
    if ( handle )
        release( objOf( handle ) );
}

// Releases a process-wide object and overwrites its variable, so that a later use fails at once.
template <typename T> inline void retire( T **global )
{
    release( objOf( *global ) );
    *global = reinterpret_cast<T *>( static_cast<intptr_t>( -1 ) );
}

} // namespace qv

#endif
