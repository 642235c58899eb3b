// What the tools that check files have in common: operands, folders, and the count at the end.

#include "tool.hh"

#include <qv/io/qv_path_directory.h>

#include <unistd.h>

namespace
{

using tool::Arguments;
using tool::Owner;
using tool::String;
using tool::Tool;

struct Check
{
    Tool &tool;
    std::string_view suffix;
    const std::function<bool( const std::string & )> &isGood;
    bool all; // the good ones are listed too
    long long good = 0;
    long long bad = 0;

    void file( const std::string &name )
    {
        bool fine = isGood( name );
        ( fine ? good : bad )++;
        if ( fine && all )
            tool.out.write( tool::shownName( name ) + ": good\n" );
    }

    void folder( const std::string &name, QV_PATH *path )
    {
        Owner files( qvPathDirectoryList( path, QV_PATH_DIRECTORY_LIST_FLAG_RECURSIVE |
                                                    QV_PATH_DIRECTORY_LIST_FLAG_SORT |
                                                    QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_DIRECTORIES |
                                                    QV_PATH_DIRECTORY_LIST_FLAG_RELATIVE ) );
        if ( !files )
        {
            tool.error( name, "can't list the folder" );
            bad++;
            return;
        }
        std::string base = name.ends_with( '/' ) ? name : name + "/";
        tool::Progress progress( "Checking " + name, qvVectorLength( files ), "files" );
        for ( QV_INT idx = 0; idx < qvVectorLength( files ); idx++ )
        {
            Owner item( qvVectorObjAt( files, idx ) );
            String relative( qvPathPlatformTryEncode( qvPathFrom( item ) ) );
            if ( relative && tool::textOf( static_cast<QV_STRING *>( relative ) ).ends_with( suffix ) )
                file( base + tool::textOf( std::move( relative ) ) );
            progress.advance( idx + 1 );
        }
    }
};

} // namespace

namespace tool
{

void checkFiles( Tool &tool, const Arguments &arguments, std::string_view suffix,
                 const std::function<bool( const std::string &name )> &isGood )
{
    Check check = { tool, suffix, isGood, arguments.has( "all" ) };
    for ( size_t idx = 0; idx < arguments.operands.size(); idx++ )
    {
        std::string name = arguments.operand( idx );
        Owner path = pathOf( name );
        if ( name != "-" && path && qvPathDirectoryExists( path ) )
            check.folder( name, path );
        else
            check.file( name );
    }
    const Style &style = styleOf( STDOUT_FILENO );
    tool.out.write( counted( check.good + check.bad, "file" ) + " checked: " + style.good +
                    grouped( check.good ) + " good" + style.off + ", " + ( check.bad ? style.bad : "" ) +
                    grouped( check.bad ) + " bad" + style.off + "\n" );
}

} // namespace tool
