// Where the product's files lie. The library works that out at a start that makes the data folders as well, but a command
// that only asks is to leave none behind. So the variables that place these folders name, at such a start, a place where
// nothing can be made, and what they really say is put into the paths afterwards.

#include "tool.hh"

#include <qv/runtime/qv_runtime.h>

#include <cstdlib>

namespace
{

struct Place
{
    std::string variable;
    std::string text;    // that the library would decode
    std::string nowhere; // below a file that is no folder
};

std::vector<Place> places;

tool::Owner<QV_PATH> folderOf( std::string_view text )
{
    tool::Owner path( qvPathUnixTryDecode( tool::stringOf( text ) ) );
    if ( path )
        qvPathSetFlags( path.edit(), qvPathFlags( path ) | QV_PATH_FLAG_DIRECTORY );
    return path;
}

void addPlace( const std::string &variable, const std::string &text )
{
    places.push_back( { variable, text, "/dev/null/" + variable + "/" } );
}

// A path by the text of one that may lie nowhere; null if what its variable says is no path.
tool::Owner<QV_PATH> realPath( const std::string &text )
{
    for ( const Place &place : places )
    {
        if ( !text.starts_with( place.nowhere ) )
            continue;
        tool::Owner path = folderOf( place.text );
        tool::Owner rest = folderOf( text.substr( place.nowhere.size() ) );
        if ( path )
            qvPathAppend( path.edit(), rest );
        return path;
    }
    return folderOf( text );
}

} // namespace

namespace tool
{

void findDataPlaces()
{
    const char *home = std::getenv( "HOME" );
    addPlace( "HOME", std::string( home ? home : "" ) + "/" );
    String variable( qvStringCreateFromFormatCstr( "JN_%~s_DATA_PATH", -1, qvRuntimeVersionProductName() ) );
    qvStringToUpper( variable.edit() );
    std::string name = textOf( std::move( variable ) );
    const char *value = std::getenv( name.c_str() );
    // Otherwise the library would pass over it.
    if ( value && Owner( qvPathUnixTryDecode( stringOf( value ) ) ) )
        addPlace( name, value );
}

void hideDataPlaces()
{
    for ( const Place &place : places )
        setenv( place.variable.c_str(), place.nowhere.c_str(), 1 );
}

Owner<QV_RUNTIME_PATHS> runtimePaths()
{
    Owner paths( qvRuntimePaths() );
    for ( QV_RUNTIME_PATH rtp = 0; QV_RUNTIME_PATH_OK( rtp ); rtp++ )
    {
        Owner given( qvRuntimePathsPath( paths, rtp ) );
        String text( given ? qvPathUnixTryEncode( given ) : nullptr );
        if ( !text )
            continue;
        if ( Owner path = realPath( textOf( std::move( text ) ) ) )
            qvRuntimePathsSetPath( paths.edit(), rtp, path );
        else
            qvRuntimePathsDelPath( paths.edit(), rtp );
    }
    return paths;
}

} // namespace tool
