// qv store show, check and convert.

#include "tool_store.hh"

#include <qv/base/qv_name.h>

#include <unistd.h>

namespace
{

using tool::Arguments;
using tool::DataFile;
using tool::Output;
using tool::Owner;
using tool::String;
using tool::Style;
using tool::Tool;

// ---- Show ----

std::string_view firstOf( std::string_view &line, size_t count )
{
    std::string_view taken = line.substr( 0, count );
    line.remove_prefix( taken.size() );
    return taken;
}

const char *colourOf( const Style &style, std::string_view value )
{
    char first = value.empty() ? ' ' : value[0];
    if ( first == '"' )
        return style.text;
    if ( ( first >= '0' && first <= '9' ) || first == '-' )
        return style.number;
    return first == '{' || first == '[' || first == '}' || first == ']' ? style.dim : style.word;
}

// A line of standard text as the library writes it: blanks, an address unless it stands in an array, and a value.
void printLine( Output &out, const Style &style, std::string_view line, bool inArray )
{
    out.write( firstOf( line, std::min( line.find_first_not_of( ' ' ), line.size() ) ) );
    bool closing = line == "}" || line == "]";
    if ( !inArray && !closing )
    {
        size_t blank = std::min( line.find( ' ' ), line.size() );
        out.write( std::string( style.name ) + std::string( firstOf( line, blank ) ) + style.off );
        out.write( firstOf( line, std::min( line.find_first_not_of( ' ' ), line.size() ) ) );
    }
    out.write( std::string( colourOf( style, line ) ) + std::string( line ) + style.off + "\n" );
}

struct Counts
{
    long long values = 0;
    long long stores = 0;
    long long depth = 0;
};

void count( QV_STORE *store, long long depth, Counts &counts )
{
    counts.depth = std::max( counts.depth, depth );
    for ( QV_INT idx = 0; idx < qvStoreLength( store ); idx++ )
    {
        Owner sub( qvStoreStoreAt( store, idx ) );
        ( sub ? counts.stores : counts.values )++;
        if ( sub )
            count( sub, depth + 1, counts );
    }
}

class Facts
{
  public:
    explicit Facts( Output &output ) : out( output ), style( tool::styleOf( STDOUT_FILENO ) ) {}
    void print( const char *name, const std::string &text )
    {
        out.write( std::string( style.dim ) + "# " + tool::padded( name, 10 ) + style.off + " " + text +
                   "\n" );
    }
    void print( const char *name, String text )
    {
        if ( text )
            print( name, tool::textOf( std::move( text ) ) );
    }
    void print( const char *name, Owner<QV_TIME> time )
    {
        if ( time )
            print( name, String( qvTimeToString( time ) ) );
    }

  private:
    Output &out;
    const Style &style;
};

void printInfo( Facts &facts, QV_HEADER_INFO *info )
{
    std::string product;
    auto add = [&]( String part, const char *before, const char *after ) {
        if ( part )
            product += ( product.empty() ? "" : before ) + tool::textOf( std::move( part ) ) +
                       ( product.empty() ? "" : after );
    };
    add( String( qvHeaderInfoProductFriendlyName( info ) ), "", "" );
    add( String( qvHeaderInfoProductVersion( info ) ), " ", "" );
    add( String( qvHeaderInfoProductName( info ) ), " (", ")" );
    if ( !product.empty() )
        facts.print( "product", product );
    facts.print( "built", Owner( qvHeaderInfoProductBuildTime( info ) ) );
    facts.print( "written", Owner( qvHeaderInfoGenerateTime( info ) ) );
}

void printFacts( Tool &tool, const DataFile &file )
{
    Facts facts( tool.out );
    const Style &style = tool::styleOf( STDOUT_FILENO );
    facts.print( "file", style.bold + tool::shownName( file.name ) + style.off );
    if ( file.header )
    {
        facts.print( "type", String( qvStoreHeaderType( file.header ) ) );
        if ( Owner version( qvStoreHeaderModuleVersion( file.header ) ); version )
            facts.print( "version", String( qvModuleVersionToString( version ) ) );
        if ( Owner info( qvStoreHeaderInfo( file.header ) ); info )
            printInfo( facts, info );
    }
    facts.print( "encoding",
                 tool::encodingName( file.header ? tool::withHeader( file.encoding ) : file.encoding ) );
    Counts counts;
    count( file.store, 1, counts );
    facts.print( "content", tool::counted( counts.values, "value" ) + ", " +
                                tool::counted( counts.stores, "store" ) + ", " +
                                tool::counted( counts.depth, "level" ) );
}

void runShow( Tool &tool, const Arguments &arguments )
{
    QV_STORE_ENCODING from;
    if ( !tool::takeFrom( tool, arguments, from ) )
        return;
    bool json = arguments.has( "json" );
    if ( json && arguments.has( "header" ) )
        return tool::usageExclusive( tool, "json", "header" );
    bool first = true;
    for ( size_t idx = 0; idx < arguments.operands.size(); idx++ )
    {
        std::optional<DataFile> file = tool::loadData( tool, arguments.operand( idx ), from );
        if ( !file )
            continue;
        if ( json )
        {
            tool::printJson( tool.out, file->store );
            continue;
        }
        if ( !first )
            tool.out.write( "\n" );
        first = false;
        if ( !arguments.has( "content" ) )
            printFacts( tool, *file );
        if ( !arguments.has( "header" ) && qvStoreLength( file->store ) > 0 )
        {
            if ( !arguments.has( "content" ) )
                tool.out.write( "\n" );
            tool::printContent( tool.out, file->store );
        }
    }
}

// ---- Check ----

void runCheck( Tool &tool, const Arguments &arguments )
{
    QV_STORE_ENCODING from;
    if ( !tool::takeFrom( tool, arguments, from ) )
        return;
    tool::checkFiles( tool, arguments, "", [&]( const std::string &name ) {
        return tool::loadData( tool, name, from ).has_value();
    } );
}

// ---- Convert ----

// The header that the result gets; null for none.
Owner<QV_STORE_HEADER> headerFor( const DataFile &file, const std::optional<std::string> &type )
{
    if ( file.header )
    {
        Owner header( qvStoreHeaderCreateFrom( file.header ) );
        if ( type )
            qvStoreHeaderSetType( header.edit(), tool::stringOf( *type ) );
        return header;
    }
    Owner header( type ? qvStoreHeaderCreate( tool::stringOf( *type ) )
                       : qvStoreHeaderCreateFromSort( qvStoreSort(), QV_FALSE ) );
    qvStoreHeaderGenerateInfo( header.edit() );
    return header;
}

// True if the store comes back from the encoding as it went in. The legacy ones keep no types.
bool keepsAll( QV_STORE *store, QV_STORE_ENCODING encoding )
{
    if ( encoding == QV_STORE_ENCODING_HEADERLESS_STANDARD || encoding == QV_STORE_ENCODING_HEADERLESS_JSON )
        return true;
    Owner bytes( qvStoreEncodeHeaderless( store, encoding ) );
    Owner result( qvStoreDecodeHeaderless( bytes, nullptr, encoding ) );
    Owner back( qvStoreDecodeResultStore( result ) );
    if ( !back )
        return false;
    Owner before( qvStoreEncodeHeaderless( store, QV_STORE_ENCODING_HEADERLESS_STANDARD ) );
    Owner after( qvStoreEncodeHeaderless( back, QV_STORE_ENCODING_HEADERLESS_STANDARD ) );
    return qvBufferEquals( before, after );
}

void runConvert( Tool &tool, const Arguments &arguments )
{
    QV_STORE_ENCODING from;
    if ( !tool::takeFrom( tool, arguments, from ) )
        return;
    std::optional<std::string> type = arguments.value( "type" );
    if ( type && !qvNameOk( tool::stringOf( *type ), QV_TRUE ) )
        return tool.usage( "\"" + *type + "\" is no type: a name such as SERVER_OPTIONS" );
    std::optional<std::string> named = arguments.value( "to" );
    QV_STORE_ENCODING encoding = named ? tool::encodingOf( *named ) : -1;
    if ( named && ( encoding < 0 || !tool::isAvailable( encoding ) ) )
        return tool.usage( *named + ": no such encoding, there are: " + tool::encodingNames() );
    bool headerless = arguments.has( "headerless" ) || ( named && qvStoreEncodingIsHeaderless( encoding ) );
    if ( headerless && type )
        return tool.usage( "a type stands in a header, which a headerless file hasn't" );

    std::optional<DataFile> file = tool::loadData( tool, arguments.operand( 0 ), from );
    if ( !file )
        return;
    if ( named )
        file->encoding = qvStoreEncodingToHeaderless( encoding );
    file->header = headerless ? Owner<QV_STORE_HEADER>() : headerFor( *file, type );
    if ( file->header )
        qvStoreHeaderSetEncoding( file->header.edit(), tool::withHeader( file->encoding ) );
    std::string to = arguments.operand( 1 );
    if ( !keepsAll( file->store, file->encoding ) )
        tool.warning( to == "-" ? "<stdout>" : to,
                      "the legacy encodings keep no types: numbers, truth values and nulls become texts, and "
                      "arrays stores" );
    tool::saveData( tool, *file, to );
}

// ---- Tables ----

const tool::Option showOptions[] = {
    { 'c', "content", nullptr, "Only the content." },
    { 'H', "header", nullptr, "Only what is known about the file." },
    { 'j', "json", nullptr, "Only the content, as JSON." },
    tool::fromOption,
};
const tool::Example showExamples[] = {
    { "qv store show server.qv", "what a file says about itself, and its content" },
    { "qv store show --header *.qv", "only types, versions and sizes" },
    { "qv store show -c server.qv > plain.qv", "the content in standard text" },
    { "qv store show --json server.qv", "the content as JSON" },
};

const tool::Option checkOptions[] = {
    { 'a', "all", nullptr, "List the good files too." },
    tool::fromOption,
};
const tool::Example checkExamples[] = {
    { "qv store check /etc/server", "all files below a folder" },
    { "qv store check --all *.qv", "some files, each with its result" },
    { "generate | qv store check -", "what a program writes" },
};

const tool::Option convertOptions[] = {
    { 't', "to", "ENCODING", "Encoding to write; that of the source if not given.", tool::encodingChoices },
    { 'T', "type", "TYPE", "Type that the header names; that of the source, or QV_STORE." },
    { 'l', "headerless", nullptr, "Write the content without a header." },
    tool::fromOption,
};
const tool::Example convertExamples[] = {
    { "qv store convert --type SERVER_OPTIONS plain.qv server.qv", "put a header in front" },
    { "qv store convert --headerless server.qv -", "print the content alone" },
    { "qv store convert messy.qv messy.qv", "rewrite a file in its usual form" },
    { "qv store convert --to headerless-json server.qv server.json", "the content as a JSON file" },
    { "qv store convert --type SERVER_OPTIONS --to standard server.json server.qv", "and back" },
};

} // namespace

namespace tool
{

void printContent( Output &out, QV_STORE *store )
{
    const Style &style = styleOf( STDOUT_FILENO );
    Owner text( qvStoreEncodeHeaderless( store, QV_STORE_ENCODING_HEADERLESS_STANDARD ) );
    if ( !*style.off )
    {
        out.write( text );
        return;
    }
    std::string_view rest( reinterpret_cast<const char *>( qvBufferBacking( text ) ),
                           static_cast<size_t>( qvBufferLength( text ) ) );
    // A root array is a line "[" of its own, which has no address either.
    std::vector<bool> arrays = { rest.starts_with( "[\n" ) };
    while ( !rest.empty() )
    {
        std::string_view line = firstOf( rest, rest.find( '\n' ) );
        rest.remove_prefix( std::min<size_t>( 1, rest.size() ) );
        std::string_view bare = line.substr( std::min( line.find_first_not_of( ' ' ), line.size() ) );
        if ( ( bare == "}" || bare == "]" ) && arrays.size() > 1 )
            arrays.pop_back();
        printLine( out, style, line, arrays.back() );
        if ( line.ends_with( '{' ) || line.ends_with( '[' ) )
            arrays.push_back( line.ends_with( '[' ) );
    }
}

const Command storeShow = {
    "store show",
    "FILE...",
    1,
    noLimit,
    "Show data files: header and content",
    "What is told about a file stands behind \"#\", so that all that is printed is itself standard text.",
    showOptions,
    showExamples,
    runShow,
};

const Command storeCheck = {
    "store check",
    "FILE...",
    1,
    noLimit,
    "Check data files, and folders with all that is in them",
    "Each bad file is reported with line, column and reason. Exit code 1 if any is bad.",
    checkOptions,
    checkExamples,
    runCheck,
};

const Command storeConvert = {
    "store convert",
    "IN OUT",
    2,
    2,
    "Convert data files between encodings, with and without a header",
    "OUT is replaced when the result is complete, and may be IN. The encodings are standard, json, "
    "legacy-text and "
    "legacy-binary, and the same with \"headerless-\" in front. What an encoding can't keep is told.",
    convertOptions,
    convertExamples,
    runConvert,
};

} // namespace tool
