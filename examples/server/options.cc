#include "options.hh"

#include "files.hh"

namespace server
{

namespace
{

// Takes values out of a store, and tells which ones are missing or wrong.
class Reader
{
  public:
    Reader( const std::string &name, QV_STORE *options ) : file( name ), store( options ) {}

    std::string text( const char *address )
    {
        String value( qvStoreValueCstr( store, address, -1 ) );
        if ( value && qvStringLength( value ) > 0 )
            return textOf( value );
        fail( address, "a text" );
        return {};
    }

    QV_INT number( const char *address, QV_INT least, QV_INT most )
    {
        QV_INT value;
        if ( qvStoreValueIntCstr( store, &value, address, -1 ) && value >= least && value <= most )
            return value;
        fail( address, "an integer from " + std::to_string( least ) + " to " + std::to_string( most ) );
        return least;
    }

    // Members that are absent take the fallbacks of the domain.
    Owner<QV_PROCESS_DOMAIN_OPTIONS> domain( const char *address )
    {
        Owner options( qvStoreStoreCstr( store, address, -1 ) );
        if ( options )
            return Owner( qvProcessDomainOptionsRestore( options ) );
        fail( address, "a store with the options of a process domain" );
        return {};
    }

    bool isGood() const
    {
        return good;
    }

  private:
    void fail( const char *address, const std::string &expected )
    {
        printError( file, "\"" + std::string( address ) + "\" is missing or wrong, expected " + expected );
        good = false;
    }

    const std::string &file;
    QV_STORE *store;
    bool good = true;
};

} // namespace

std::optional<Options> readOptions( const std::string &file )
{
    Owner store = readStore( file, "EXAMPLE_SERVER_OPTIONS" );
    if ( !store )
        return std::nullopt;
    Reader reader( file, store );
    Options options{
        .input = reader.text( "input" ),
        .result = reader.text( "result" ),
        .statistics = reader.text( "statistics" ),
        .groupField = reader.text( "groupField" ),
        .sumField = reader.text( "sumField" ),
        .interval = reader.number( "interval", 1, 60'000 ),
        .batch = reader.number( "batch", 1, 100'000 ),
        .backlog = reader.number( "backlog", 1, 1'000'000 ),
        .workers = reader.number( "workers", 1, 1'000 ),
        .flowDomain = reader.domain( "flowDomain" ),
        .workDomain = reader.domain( "workDomain" ),
    };
    if ( !reader.isGood() )
        return std::nullopt;
    return options;
}

} // namespace server
