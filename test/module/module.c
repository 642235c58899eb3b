/* One source for all modules of the tests. A build defines MODULE, the module's name; and where they aren't the usual
 * ones, the record's NAME, DEPS, EXTS, VERSION_MAJOR (of a product that the module is bound to) and what START gives. Every
 * hook writes a line to standard error. */

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <qv/runtime/qv_author.h>

#define TEXT_OF( x )   TEXT_OF_2( x )
#define TEXT_OF_2( x ) #x
#define JOIN( a, b )   JOIN_2( a, b )
#define JOIN_2( a, b ) a##b

#ifndef NAME
#define NAME TEXT_OF( MODULE )
#endif
#ifndef DEPS
#define DEPS ""
#endif
#ifndef EXTS
#define EXTS ""
#endif
#ifndef START
#define START QV_TRUE
#endif
#ifdef VERSION_MAJOR
#define PRODUCT_NAME "qv"
#else
#define PRODUCT_NAME  NULL
#define VERSION_MAJOR -1
#endif

static const QV_MODULE_RECORD record = {
    2,    PRODUCT_NAME, NULL, VERSION_MAJOR,       -1,    -1,   NULL, NULL,
    NULL, NAME,         "A module of the tests", "1.0", DEPS, EXTS,
};

static QV_BOOL startModule( void )
{
    fputs( "start " NAME "\n", stderr );
    return START;
}

static void prepareShutdown( void )
{
    fputs( "prepare " NAME "\n", stderr );
}

static void shutdownModule( void )
{
    fputs( "shutdown " NAME "\n", stderr );
}

static void finalizeModule( void )
{
    fputs( "finalize " NAME "\n", stderr );
}

extern QV_API QV_MODULE JOIN( MODULE, ___module );

QV_MODULE JOIN( MODULE, ___module ) = {
    QV___STATIC_HEADER( QV___OBJ_TYPE_MODULE ),
    &record,
    startModule,
    prepareShutdown,
    shutdownModule,
    finalizeModule,
    NULL,
    0,
    NULL,
    NULL,
};
