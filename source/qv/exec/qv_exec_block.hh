#ifndef QV_EXEC_QV_EXEC_BLOCK_HH
#define QV_EXEC_QV_EXEC_BLOCK_HH

// The exec block, a small thread-local record that says whether a thread runs inside an encapsulation and, for a process
// thread, where its scheduler stands; and the intrusive list that all run queues are made of.

#include <stdint.h>

#include <qv/runtime/qv_handles.h>
#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_unique.hh>

// Invariant: a free item points at itself both ways; in a list the ends point at null.
struct qv___ExecListItem
{
    QV_PROCESS *owner;
    qv___ExecListItem *prev;
    qv___ExecListItem *next;
};

// Invariant: first and last are both null or both set.
struct qv___ExecList
{
    qv___ExecListItem *first;
    qv___ExecListItem *last;
};

struct qv___ExecBlock
{
    uint64_t magicNumber;      // proof that the block is the block
    QV_BOOL encapsulated;      // the thread runs inside an encapsulation
    QV_INT processDomainToken; // the domain whose process thread this is
    qv___ExecList processQueue;
    QV_INT processTimestamp; // the time fixed for the running process, 0 when none runs
};

constexpr uint64_t qv___EXEC_MAGIC = 0xDEADBEEF;

extern constinit thread_local qv___ExecBlock qv___exec_block __attribute__( ( tls_model( "initial-exec" ) ) );

inline void qv___ExecListInitialize( qv___ExecList *list )
{
    QV_CHECK( list );
    list->first = nullptr;
    list->last = nullptr;
}

// The list must be empty.
inline void qv___ExecListFinalize( qv___ExecList *list )
{
    QV_CHECK( list );
    QV_CHECK( !list->first );
    QV_CHECK( !list->last );
}

inline void qv___ExecListItemInitialize( qv___ExecListItem *item, QV_PROCESS *owner )
{
    QV_CHECK( item );
    QV_CHECK( owner );
    item->owner = owner;
    item->prev = item;
    item->next = item;
}

// The item must be free.
inline void qv___ExecListItemFinalize( qv___ExecListItem *item )
{
    QV_CHECK( item );
    QV_CHECK( item->prev == item );
    QV_CHECK( item->next == item );
    item->owner = nullptr;
}

// Takes the first item out of a list that has one.
inline qv___ExecListItem *qv___ExecListRemoveFirstItem( qv___ExecList *list )
{
    QV_CHECK( list );
    qv___ExecListItem *item = list->first;
    QV_CHECK( item );
    QV_CHECK( !item->prev );
    list->first = item->next;
    if ( item->next )
    {
        QV_CHECK( item->next->prev == item );
        item->next->prev = nullptr;
    }
    else
    {
        QV_CHECK( list->last == item );
        list->last = nullptr;
    }
    item->prev = item;
    item->next = item;
    return item;
}

// Puts a free item behind all others.
inline void qv___ExecListAppendItem( qv___ExecList *list, qv___ExecListItem *item )
{
    QV_CHECK( list );
    QV_CHECK( item );
    QV_CHECK( item->prev == item );
    QV_CHECK( item->next == item );
    item->prev = list->last;
    item->next = nullptr;
    if ( list->last )
        list->last->next = item;
    else
        list->first = item;
    list->last = item;
}

// Moves all items of source behind those of list, in constant time.
inline void qv___ExecListAppendList( qv___ExecList *list, qv___ExecList *source )
{
    QV_CHECK( list );
    QV_CHECK( source );
    QV_CHECK( list != source );
    if ( !source->first )
        return;
    source->first->prev = list->last;
    if ( list->last )
        list->last->next = source->first;
    else
        list->first = source->first;
    list->last = source->last;
    source->first = nullptr;
    source->last = nullptr;
}

typedef void ( *qv___ExecEncapsulateFunc )( void *argument );

// Runs a function inside an encapsulation. Encapsulations nest.
void qv___ExecEncapsulate( qv___ExecEncapsulateFunc func, void *argument );

// The same in two halves: eb is the caller's memory for the thread's block as it was before.
void qv___ExecEncapsulateBegin( qv___ExecBlock *eb );
void qv___ExecEncapsulateEnd( qv___ExecBlock *eb );

QV_BOOL qv___ExecEncapsulated();

// Stops the process on a thread that isn't encapsulated.
void qv___ExecCheckEncapsulated();

// Encapsulate the thread that starts the runtime, and end that on the same thread.
void qv___ExecEncapsulateStartup();
void qv___ExecEncapsulateShutdown();

#endif
