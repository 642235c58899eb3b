// Runs the kept inputs of all targets once, as an ordinary test: replay CORPUS, with a folder for each target in it. Each
// input is also run cut off at every length, which costs little and finds what stops reading too late.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include <qv/qv.h>

#include "targets.hh"

namespace
{

int leakLines = 0;

void countLine( const QV_CHAR *, QV_INT )
{
    leakLines++;
}

std::vector<unsigned char> contentOf( const std::filesystem::path &file )
{
    std::ifstream stream( file, std::ios::binary );
    return { std::istreambuf_iterator<char>( stream ), std::istreambuf_iterator<char>() };
}

} // namespace

int main( int argc, char **argv )
{
    if ( argc != 2 )
    {
        std::fprintf( stderr, "usage: replay CORPUS\n" );
        return 2;
    }
    qvRuntimeStartup( QV_RUNTIME_FLAG_OBJECT_DATABASE | QV_RUNTIME_FLAG_SNAPSHOT_SORT, -1, countLine, nullptr,
                      nullptr, nullptr );
    size_t inputs = 0;
    for ( const FuzzTarget *target = fuzzTargets; target->name; target++ )
    {
        size_t before = inputs;
        for ( const auto &entry :
              std::filesystem::directory_iterator( std::filesystem::path( argv[1] ) / target->name ) )
        {
            std::vector<unsigned char> content = contentOf( entry.path() );
            size_t step = 1 + content.size() / 500;
            for ( size_t length = 0; length < content.size(); length += step )
            {
                target->run( content.data(), length );
            }
            target->run( content.data(), content.size() );
            inputs++;
        }
        if ( inputs == before )
        {
            std::fprintf( stderr, "replay: no input for %s\n", target->name );
            return 1;
        }
    }
    qvRuntimeShutdown();
    std::printf( "%zu inputs\n", inputs );
    return leakLines == 0 ? 0 : 1;
}
