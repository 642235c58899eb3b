// Runs the tests of one folder inside a running runtime that watches every object, and fails if one is left at the end.

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>

#include <qv/runtime/qv_runtime.h>

#include "support/child.hh"

namespace
{

int printedLines = 0;

void printLine( const QV_CHAR *chs, QV_INT chsLength )
{
    printedLines++;
    for ( QV_INT idx = 0; idx < chsLength; idx++ )
    {
        std::fputc( chs[idx] < 128 ? static_cast<int>( chs[idx] ) : '?', stderr );
    }
    std::fputc( '\n', stderr );
}

} // namespace

void test::startRuntime()
{
    qvRuntimeStartup( QV_RUNTIME_FLAG_OBJECT_DATABASE | QV_RUNTIME_FLAG_SNAPSHOT_SORT |
                          QV_RUNTIME_FLAG_SNAPSHOT_OBJECT | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_TOSTRING,
                      -1, printLine, "qv_unit", "QV unit tests", "1" );
}

int main( int argc, char **argv )
{
    testing::InitGoogleTest( &argc, argv );
    testing::GTEST_FLAG( death_test_style ) = "threadsafe";
    // The many faults that tests provoke leave no crash files.
    setenv( "JN_QV_ABORT_PATH", "/nonexistent", 0 );
    test::startRuntime();
    int result = RUN_ALL_TESTS();
    qvRuntimeShutdown();
    if ( printedLines > 0 )
    {
        std::fprintf( stderr, "objects leaked, see the report above\n" );
        return 1;
    }
    return result;
}
