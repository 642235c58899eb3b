#include "support/child.hh"

#include <sys/wait.h>
#include <unistd.h>

#include <qv/runtime/qv_runtime.h>

namespace test
{

ChildResult runInChild( const std::function<int()> &function )
{
    int ends[2];
    if ( pipe( ends ) != 0 )
        return { -1, "no pipe" };
    qvRuntimeShutdown();
    pid_t child = fork();
    if ( child == 0 )
    {
        dup2( ends[1], STDERR_FILENO );
        close( ends[0] );
        close( ends[1] );
        _exit( function() );
    }
    startRuntime();
    close( ends[1] );
    ChildResult result = { -1, "" };
    char block[4096];
    for ( ssize_t length; ( length = read( ends[0], block, sizeof( block ) ) ) > 0; )
        result.output.append( block, static_cast<size_t>( length ) );
    close( ends[0] );
    waitpid( child, &result.status, 0 );
    return result;
}

} // namespace test
