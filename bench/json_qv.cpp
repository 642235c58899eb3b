// The library's cases of the area json.
#include "json.hpp"
#include "qv_case.hpp"
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using Value = Held<QV_JSON_VALUE, qvJsonValueRelease>;
using Options = Held<QV_JSON_OPTIONS, qvJsonOptionsRelease>;
using JsonResult = Held<QV_JSON_DECODE_RESULT, qvJsonDecodeResultRelease>;
using StoreResult = Held<QV_STORE_DECODE_RESULT, qvStoreDecodeResultRelease>;

// Bytes of the trees, by document; they are found out before the library starts for good.
double tree_bytes_of[3];

QV_JSON_VALUE *decoded( const std::string &text )
{
    Buffer bytes( buffer_of( text ) );
    JsonResult result( qvJsonDecode( bytes, nullptr ) );
    CHECK( qvJsonDecodeResultIsSuccess( result ) );
    return qvJsonDecodeResultValue( result );
}

// What the peers write: nothing between the tokens, or lines indented by four blanks.
const Options &layout( bool pretty )
{
    static Options options[2];
    Options &opt = options[pretty];
    if ( !opt )
    {
        opt.it = qvJsonOptionsCreate();
        String indent( string_of( std::string( "    " ) ) );
        if ( pretty )
            qvJsonOptionsSetEncodeIndent( opt.edit(), indent );
        else
            qvJsonOptionsSetFlags( opt.edit(), QV_JSON_FLAG_ENCODE_SINGLE_LINE | QV_JSON_FLAG_ENCODE_PACKED );
    }
    return opt;
}

struct Library
{
    using T = Value;
    static void parse( std::optional<T> &t, const std::string &s )
    {
        t.emplace( decoded( s ) );
    }
    static std::string dump( const T &t, bool pretty )
    {
        Buffer bytes( qvJsonTryEncodeWithOptions( t, layout( pretty ) ) );
        return std::string( reinterpret_cast<const char *>( qvBufferBacking( bytes ) ),
                            size_t( qvBufferLength( bytes ) ) );
    }
    static void walk( const T &t, Totals &a )
    {
        walk( t.it, a );
    }
    static void walk( QV_JSON_VALUE *v, Totals &a )
    {
        ++a.values;
        if ( qvJsonValueIsObject( v ) )
        {
            QV_INT count = qvJsonValueObjectMembersLength( v );
            a.members += uint64_t( count );
            for ( QV_INT idx = 0; idx < count; ++idx )
                walk( Value( qvJsonValueObjectMemberValueAt( v, idx ) ), a );
        }
        else if ( qvJsonValueIsArray( v ) )
            for ( QV_INT idx = 0, count = qvJsonValueArrayLength( v ); idx < count; ++idx )
                walk( Value( qvJsonValueArrayAt( v, idx ) ), a );
        else if ( qvJsonValueIsString( v ) )
            a.text += uint64_t( qvStringLength( String( qvJsonValueString( v ) ) ) );
        else if ( qvJsonValueIsInt( v ) )
            a.ints += uint64_t( qvJsonValueInt( v ) );
    }
    static double tree_bytes( const char *doc )
    {
        for ( int i = 0; i < 3; ++i )
            if ( !strcmp( doc, json_documents[i] ) )
                return tree_bytes_of[i];
        abort();
    }
};

// In a process of its own, where all records come from the heap one by one.
void find_tree_bytes( const Bench &b )
{
    int ends[2];
    CHECK( pipe( ends ) == 0 );
    pid_t child = fork();
    CHECK( child >= 0 );
    if ( child == 0 )
    {
        qvRuntimeStartup( QV_RUNTIME_FLAG_MEMORY_DEBUG, -1, nullptr, nullptr, nullptr, nullptr );
        for ( int i = 0; i < 3; ++i )
        {
            std::string text = b.read( ( std::string( json_documents[i] ) + ".json" ).c_str() );
            size_t h0 = heap_live();
            Value value( decoded( text ) );
            tree_bytes_of[i] = double( heap_live() - h0 );
        }
        CHECK( write( ends[1], tree_bytes_of, sizeof tree_bytes_of ) == sizeof tree_bytes_of );
        _exit( 0 );
    }
    CHECK( read( ends[0], tree_bytes_of, sizeof tree_bytes_of ) == sizeof tree_bytes_of );
    close( ends[0] );
    close( ends[1] );
    int status;
    CHECK( waitpid( child, &status, 0 ) == child && status == 0 );
}

QV_STORE *config_store( const Bench &b )
{
    Buffer bytes( buffer_of( b.read( "config.store" ) ) );
    StoreResult result( qvStoreDecodeHeaderless( bytes, nullptr, QV_STORE_ENCODING_HEADERLESS_STANDARD ) );
    CHECK( qvStoreDecodeResultIsSuccess( result ) );
    return qvStoreDecodeResultStore( result );
}

void timed( Bench &b, const char *workload, std::function<void()> body )
{
    b.add( workload, "qv", [=]( Rec &r ) { per_op( r, 20000, body, "ns_per_value" ); } );
}

void store_cases( Bench &b )
{
    auto store = held<Store>( config_store( b ) );
    auto value = held<Value>( qvJsonConvertFromStore( *store ) );
    auto bytes = held<Buffer>( qvStoreLegacyBinaryEncodeToBuffer( *store ) );
    Store fromJson( qvJsonConvertToStore( *value ) );
    Value again( qvJsonConvertFromStore( fromJson ) );
    CHECK( Library::dump( *value, false ) == Library::dump( again, false ) );
    Store fromBytes( qvStoreLegacyBinaryTryDecodeFromBuffer( *bytes ) );
    CHECK( qvBufferEquals( *bytes, Buffer( qvStoreLegacyBinaryEncodeToBuffer( fromBytes ) ) ) );
    timed( b, "store_to_json", [=] { CHECK( Value( qvJsonConvertFromStore( *store ) ) ); } );
    timed( b, "json_to_store", [=] { CHECK( Store( qvJsonConvertToStore( *value ) ) ); } );
    timed( b, "legacy_write", [=] { CHECK( Buffer( qvStoreLegacyBinaryEncodeToBuffer( *store ) ) ); } );
    timed( b, "legacy_read", [=] { CHECK( Store( qvStoreLegacyBinaryTryDecodeFromBuffer( *bytes ) ) ); } );
}

} // namespace

void register_library( Bench &b )
{
    find_tree_bytes( b );
    start_library();
    json_cases<Library>( b, "qv" );
    store_cases( b );
}
