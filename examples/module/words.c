/* Counts the words of files by the module word_count and what extends it.
 *
 * usage: words [-e] COUNT FILE...    the COUNT most frequent words; -e loads no extension, and words count as they are */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <qv/qv.h>

/* Words go to standard output, errors to standard error. */
static QV_BOOL writeMessage( qvObj closure, QV_MESSAGE *message )
{
    QV_STRING *line = qvMessageToString( message );
    char *text = qvStringConvertToCstr( line, QV_TRUE, NULL );
    FILE *file = qvMessageLevel( message ) == QV_MESSAGE_LEVEL_ERROR ? stderr : stdout;
    QV_BOOL good = QV_BOOL_FROM( fprintf( file, "%s\n", text ) >= 0 );
    (void)closure;
    qvMemFree( text );
    qvStringRelease( line );
    return good;
}

static QV_BOOL flushMessages( qvObj closure )
{
    (void)closure;
    return QV_BOOL_FROM( fflush( stdout ) == 0 );
}

static QV_BOOL runWords( QV_INT maxCount, char **files )
{
    QV_STRING *name = qvStringCreateFromCstr( "word_count", -1 );
    QV_MODULE *module = qvRuntimeTryLoadModule( name ) ? qvRuntimeModule( name ) : NULL;
    QV_BOOL good = QV_FALSE;
    if ( module )
    {
        QV_VECTOR *argv = qvVectorCreate();
        QV_MESSAGE_SINK *out = qv___MessageSinkCreate( writeMessage, flushMessages, NULL );
        for ( ; *files; files++ )
        {
            QV_STRING *file = qvStringCreateFromCstr( *files, -1 );
            qvVectorAppendString( &argv, file );
            qvStringRelease( file );
        }
        good = qvModuleRunPersonality( module, argv, out, &maxCount );
        qvMessageSinkRelease( out );
        qvVectorRelease( argv );
        qvModuleRelease( module );
    }
    else
    {
        fputs( "words: no module word_count; \"qv module check word_count\" tells more\n", stderr );
    }
    qvStringRelease( name );
    return good;
}

int main( int argc, char **argv )
{
    QV_RUNTIME_FLAGS flags = QV_RUNTIME_FLAG_SYSTEM;
    QV_BOOL good;
    if ( argc > 1 && strcmp( argv[1], "-e" ) == 0 )
    {
        flags |= QV_RUNTIME_FLAG_NO_MODULE_EXTENSIONS;
        argv++;
        argc--;
    }
    if ( argc < 3 || atoi( argv[1] ) < 1 )
    {
        fputs( "usage: words [-e] COUNT FILE...\n", stderr );
        return 2;
    }
    qvRuntimeStartup( flags, -1, NULL, "words", "Words", "1.0.0" );
    good = runWords( atoi( argv[1] ), argv + 2 );
    qvRuntimeShutdown();
    return good ? 0 : 1;
}
