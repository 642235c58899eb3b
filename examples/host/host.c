/* Reads a data file, counts how often it was opened, and writes it back. */

#include <stdio.h>

#include <qv/qv.h>

/* A UTF-8 copy of a string's text; free it with qvMemFree. */
static char *text( QV_STRING *string )
{
    return qvStringConvertToCstr( string, QV_TRUE, NULL );
}

int main( void )
{
    QV_PATH *path;
    QV_STORE_HEADER *header = NULL;
    QV_STORE *store;
    QV_STRING *name;
    QV_INT count;
    char *shown;

    qvRuntimeStartup( QV_RUNTIME_FLAG_MINIMAL, -1, NULL, "counter", "Counter", "1.0.0" );

    path = qvPathTryDecodeCstr( "counter.qv", -1 );
    store = qvPathFileReadStore( path, &header );
    if ( !store )
    {
        store = qvStoreCreate();
    }
    if ( !header )
    {
        QV_STRING *type = qvStringCreateFromCstr( "COUNTER", -1 );
        header = qvStoreHeaderCreate( type );
        qvStringRelease( type );
    }

    /* Reading can't fail: what is missing or isn't a number gives -1. Editing takes the handle's address. */
    if ( !qvStoreValueIntCstr( store, &count, "opened", -1 ) )
    {
        count = 0;
    }
    qvStoreSetValueIntCstr( &store, "opened", -1, count + 1 );

    name = qvStringCreateFromFormatCstr( "opened %i times", -1, count + 1 );
    shown = text( name );
    puts( shown );
    qvMemFree( shown );
    qvStringRelease( name );

    if ( !qvPathFileWriteStore( path, store, header ) )
    {
        fputs( "counter.qv: can't be written\n", stderr );
    }
    qvStoreHeaderRelease( header );
    qvStoreRelease( store );
    qvPathRelease( path );
    qvRuntimeShutdown();
    return 0;
}
