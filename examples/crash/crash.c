/* Crashes on request and leaves a report, for a look at it with "qv crash".
 *
 * usage: crash check|fault|stack    a failed check of the library, a null pointer on a thread, a recursion without end
 *
 * The report goes to standard error and to a file in the folder that the environment variable JN_QV_ABORT_PATH names, or
 * else below .opt in the home folder. */

#include <stdio.h>
#include <string.h>

#include <qv/qv.h>

/* One too far: the index of the last name is the length less 1. */
static QV_STRING *lastOf( QV_VECTOR *names )
{
    return qvStringFrom( qvVectorObjAt( names, qvVectorLength( names ) ) );
}

static void failCheck( void )
{
    QV_VECTOR *names = qvVectorCreate();
    QV_STRING *name = qvStringCreateFromCstr( "one", -1 );
    qvVectorAppendObj( &names, qvStringObj( name ) );
    qvStringRelease( lastOf( names ) );
    qvStringRelease( name );
    qvVectorRelease( names );
}

struct Item
{
    struct Item *volatile next;
    int value;
};

static int sumOf( const struct Item *item, int count )
{
    return count == 0 ? 0 : item->value + sumOf( item->next, count - 1 );
}

/* Counts an item more than there is. */
static void runThread( void )
{
    struct Item last = { NULL, 2 };
    struct Item first = { NULL, 1 };
    first.next = &last;
    printf( "%d\n", sumOf( &first, 3 ) );
}

static void fault( void )
{
    QV_STRING *name = qvStringCreateFromCstr( "ADDER", -1 );
    QV_THREAD *thread = qvThreadTrySpawn( name, QV_THREAD_PRIORITY_NORMAL, runThread, NULL );
    qvStringRelease( name );
    if ( thread )
    {
        qvThreadJoin( thread );
        qvThreadRelease( thread );
    }
}

static void fillStack( void )
{
    struct Item ring = { NULL, 1 };
    ring.next = &ring;
    printf( "%d\n", sumOf( &ring, -1 ) );
}

int main( int argc, char **argv )
{
    const char *what = argc == 2 ? argv[1] : "";
    qvRuntimeStartup( 0, -1, NULL, "crash", "Crash example", "1.0.0" );
    if ( strcmp( what, "check" ) == 0 )
    {
        failCheck();
    }
    else if ( strcmp( what, "fault" ) == 0 )
    {
        fault();
    }
    else if ( strcmp( what, "stack" ) == 0 )
    {
        fillStack();
    }
    else
    {
        fputs( "usage: crash check|fault|stack\n", stderr );
    }
    qvRuntimeShutdown();
    return 2;
}
