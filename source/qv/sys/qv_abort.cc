#include <qv/sys/qv_abort.h>

#include <stdio.h>
#include <stdlib.h>

void qv___Abort( const char *message, const char *file, int line, const char *expression )
{
    // Nothing here may rely on the library's own state, which may be what is broken.
    fprintf( stderr, "  ABORT\n" );
    if ( message )
    {
        fprintf( stderr, "    Message   : %s\n", message );
    }
    if ( file )
    {
        fprintf( stderr, "    File      : %s\n    Line      : %d\n", file, line );
    }
    if ( expression )
    {
        fprintf( stderr, "    Expression: %s\n", expression );
    }
    fflush( stderr );
    abort();
}
