#include "files.hh"

#include <cstdio>

namespace server
{

static Owner<QV_LOCATION> locationOf( const std::string &file )
{
    return Owner( qvLocationCreateWithDescription( stringOf( file ) ) );
}

static void print( QV_MESSAGE *message )
{
    std::fprintf( stderr, "%s\n", textOf( String( qvMessageToString( message ) ) ).c_str() );
}

void printError( const std::string &file, std::string_view text )
{
    print( Owner( qvMessageCreate( QV_MESSAGE_LEVEL_ERROR, locationOf( file ), stringOf( text ) ) ) );
}

Owner<QV_STORE> readStore( const std::string &file, const char *type )
{
    Owner path( qvPathPlatformTryDecode( stringOf( file ) ) );
    Owner bytes( path ? qvPathFileReadBuffer( path, -1 ) : nullptr );
    if ( !bytes )
    {
        printError( file, "can't read" );
        return {};
    }
    Owner result( qvStoreDecode( bytes, locationOf( file ) ) );
    if ( Owner error( qvStoreDecodeResultError( result ) ); error )
    {
        print( Owner( qvStoreDecodeErrorToMessage( error ) ) );
        return {};
    }
    Owner header( qvStoreDecodeResultHeader( result ) );
    if ( !header || !qvStoreHeaderIsType( header, stringOf( type ) ) )
    {
        printError( file, std::string( "no data file of the type " ) + type );
        return {};
    }
    return Owner( qvStoreDecodeResultStore( result ) );
}

bool writeStore( const std::string &file, QV_STORE *store, QV_STORE_HEADER *header )
{
    Owner path( qvPathPlatformTryDecode( stringOf( file ) ) );
    Owner beside( qvPathPlatformTryDecode( stringOf( file + ".new" ) ) );
    Owner complete( qvStoreHeaderCreateFrom( header ) );
    qvStoreHeaderGenerateInfo( complete.edit() );
    qvStoreHeaderSetEncoding( complete.edit(), QV_STORE_ENCODING_STANDARD );
    if ( path && beside && qvPathFileWriteStore( beside, store, complete ) &&
         qvPathFileRename( beside, path ) )
        return true;
    if ( beside )
        qvPathFileDelete( beside );
    printError( file, "can't write" );
    return false;
}

} // namespace server
