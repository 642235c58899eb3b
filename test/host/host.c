/* A C99 host of the installed library: starts it, uses a value of each kind, and ends it. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <qv/qv.h>

static int lines = 0;
static int origins = 0;

static void print( const QV_CHAR *chs, QV_INT chsLength )
{
    (void)chs;
    (void)chsLength;
    lines++;
}

/* Counts the call stacks, each behind the line of a sort, that begin in the function which made the object. */
static void printOrigin( const QV_CHAR *chs, QV_INT chsLength )
{
    static int isFirst = 0;
    char line[1024] = "";
    const char *address;
    QV_INT idx;

    for ( idx = 0; idx < chsLength && idx < (QV_INT)sizeof( line ) - 1; idx++ )
    {
        line[idx] = (char)chs[idx];
    }
    address = strstr( line, "[0x" );
    origins += isFirst && address && strtoull( address + 1, NULL, 16 ) - (uintptr_t)qvSignalCreate < 4096;
    isFirst = strncmp( line, "QV_SIGNAL", 9 ) == 0;
}

static int fails( int condition, const char *what )
{
    if ( !condition )
    {
        fprintf( stderr, "host: %s\n", what );
    }
    return !condition;
}

int main( void )
{
    int failures = 0;
    QV_STRING *text;
    QV_STORE *store;
    QV_TIME *time;
    char *bytes;

    qvRuntimeStartup( QV_RUNTIME_FLAG_OBJECT_DATABASE | QV_RUNTIME_FLAG_SNAPSHOT_SORT, -1, print, "host", NULL, NULL );
    text = qvStringCreateFromFormatCstr( "%i %^!16i", -1, (QV_INT)42, (QV_INT)255 );
    bytes = qvStringConvertToCstr( text, QV_TRUE, NULL );
    failures += fails( strcmp( bytes, "42 FF" ) == 0, "format" );
    qvMemFree( bytes );
    store = qvStoreCreate();
    failures += fails( qvStoreObj( store ) != NULL && qvStoreFrom( qvStoreObj( store ) ) == store, "store" );
    qvStoreRelease( store );
    time = qvTimeTryCreateFromString( text );
    failures += fails( time == NULL, "time" );
    qvStringRelease( text );
    qvRuntimeShutdown();
    failures += fails( lines == 0, "objects leaked" );

    qvRuntimeStartup( QV_RUNTIME_FLAG_OBJECT_DATABASE | QV_RUNTIME_FLAG_OBJECT_ORIGIN |
                          QV_RUNTIME_FLAG_SNAPSHOT_OBJECT | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_LOG,
                      -1, printOrigin, NULL, NULL, NULL );
    qvSignalCreate();
    qvRuntimeShutdown();
    failures += fails( origins == 1, "origin of a leaked object" );
    return failures;
}
