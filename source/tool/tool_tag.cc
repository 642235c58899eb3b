// qv tag match and rewrite: rules on tag sets.

#include "tool_store.hh"

#include <qv/tag/qv_tag_match.h>
#include <qv/tag/qv_tag_rewrite.h>
#include <qv/tag/qv_tag_set.h>

#include <algorithm>

namespace
{

using tool::Arguments;
using tool::DataFile;
using tool::Owner;
using tool::String;
using tool::Tool;

// ---- Sets ----

// The first word that is no tag, or empty; blanks separate words, as many as there are.
std::string wrongWord( std::string_view text )
{
    while ( !text.empty() )
    {
        size_t length = std::min( text.find( ' ' ), text.size() );
        std::string word( text.substr( 0, length ) );
        if ( !word.empty() && !qvTagOk( tool::stringOf( word ) ) )
            return word;
        text.remove_prefix( std::min( length + 1, text.size() ) );
    }
    return {};
}

using SetFunction = std::function<void( const std::string &text, QV_TAG_SET *tags )>;

void passSet( Tool &tool, const std::string &text, QV_LOCATION *place, const SetFunction &take )
{
    if ( std::string wrong = wrongWord( text ); !wrong.empty() )
        return tool.error( place, "\"" + wrong + "\" is no tag" );
    take( text, Owner( qvTagSetDecode( tool::stringOf( text ) ) ) );
}

void passLines( Tool &tool, const std::string &name, const SetFunction &take )
{
    Owner bytes = tool::readFile( tool, name );
    if ( !bytes )
        return;
    std::string_view rest( reinterpret_cast<const char *>( qvBufferBacking( bytes ) ),
                           static_cast<size_t>( qvBufferLength( bytes ) ) );
    Owner file = tool::locationOf( name );
    for ( QV_INT line = 1; !rest.empty(); line++ )
    {
        size_t length = std::min( rest.find( '\n' ), rest.size() );
        std::string text( rest.substr( 0, length ) );
        rest.remove_prefix( std::min( length + 1, rest.size() ) );
        if ( text.ends_with( '\r' ) )
            text.pop_back();
        Owner place( qvLocationCreateFrom( file ) );
        qvLocationSetLine( place.edit(), line );
        passSet( tool, text, place, take );
    }
}

// All sets that the command line gives or leads to, behind the rule file. A set with a fault is told and passed over.
void passSets( Tool &tool, const Arguments &arguments, const SetFunction &take )
{
    std::optional<std::string> input = arguments.value( "input" );
    for ( size_t idx = 1; idx < arguments.operands.size(); idx++ )
    {
        std::string text = arguments.operand( idx );
        Owner place( qvLocationCreateWithDescription( tool::stringOf( "\"" + text + "\"" ) ) );
        passSet( tool, text, place, take );
    }
    if ( input || arguments.operands.size() == 1 )
        passLines( tool, input.value_or( "-" ), take );
}

// ---- Rules ----

// The library takes from a rule's store what it can use. A file that a person wrote is told all that it can't.
class Rules
{
  public:
    Rules( Tool &running, const DataFile &data ) : tool( running ), file( data ) {}

    // Null after error messages.
    Owner<QV_TAG_MATCH> match()
    {
        onlyEntries( { "type", "tagSet" } );
        if ( std::optional<std::string> type = value( "type" );
             type && qvTagMatchTypeFromString( tool::stringOf( *type ) ) < 0 )
            fail( nullptr, "\"" + *type + "\" is no type of a match: " + matchTypes() );
        if ( std::optional<std::string> tags = value( "tagSet" ); tags && !wrongWord( *tags ).empty() )
            fail( nullptr, "\"" + wrongWord( *tags ) + "\" is no tag" );
        return failed ? Owner<QV_TAG_MATCH>() : Owner( qvTagMatchRestore( file.store ) );
    }

    // Null after error messages.
    Owner<QV_TAG_REWRITE> rewrite()
    {
        onlyEntries( { "clear", "operations" } );
        QV_BOOL clear;
        if ( tool::indexOf( file.store, "clear" ) >= 0 &&
             !qvStoreValueBoolCstr( file.store, &clear, "clear", -1 ) )
            fail( nullptr, "\"clear\" is neither true nor false" );
        QV_INT index = tool::indexOf( file.store, "operations" );
        if ( index >= 0 )
            checkOperations( Owner( qvStoreStoreAt( file.store, index ) ) );
        return failed ? Owner<QV_TAG_REWRITE>() : Owner( qvTagRewriteRestore( file.store ) );
    }

  private:
    void fail( QV_LOCATION *place, const std::string &text )
    {
        failed = true;
        tool.error( place ? place : tool::locationOf( file.name ), text );
    }

    void onlyEntries( std::initializer_list<const char *> names )
    {
        for ( QV_INT idx = 0; idx < qvStoreLength( file.store ); idx++ )
        {
            std::string address = tool::textOf( String( qvStoreAddressAt( file.store, idx ) ) );
            if ( std::find( names.begin(), names.end(), address ) == names.end() )
                fail( nullptr, "\"" + address + "\" is no part of such a rule, which has \"" +
                                   *names.begin() + "\" and \"" + *( names.end() - 1 ) + "\"" );
        }
    }

    // The text of an entry; null if there is none, or after an error message.
    std::optional<std::string> value( const char *address )
    {
        QV_INT index = tool::indexOf( file.store, address );
        if ( index < 0 )
            return std::nullopt;
        String text( qvStoreValueAt( file.store, index ) );
        if ( text )
            return tool::textOf( std::move( text ) );
        fail( nullptr, "\"" + std::string( address ) + "\" is a store and no text" );
        return std::nullopt;
    }

    static std::string matchTypes()
    {
        std::string names;
        for ( QV_TAG_MATCH_TYPE type = 0; QV_TAG_MATCH_TYPE_OK( type ); type++ )
            names += ( type ? ", " : "" ) + tool::textOf( String( qvTagMatchTypeToString( type ) ) );
        return names;
    }

    static std::string operationTypes()
    {
        std::string names;
        for ( QV_TAG_REWRITE_OPERATION_TYPE type = 0; QV_TAG_REWRITE_OPERATION_TYPE_OK( type ); type++ )
            names +=
                ( type ? ", " : "" ) + tool::textOf( String( qvTagRewriteOperationTypeToString( type ) ) );
        return names;
    }

    void checkOperations( QV_STORE *operations )
    {
        if ( !operations )
            return fail( nullptr, "\"operations\" is no array" );
        Owner seen( qvTagRewriteCreate() );
        for ( QV_INT idx = 0; idx < qvStoreLength( operations ); idx++ )
        {
            Owner store( qvStoreStoreAt( operations, idx ) );
            Owner place( store ? qvStoreLocation( store ) : qvStoreLocation( operations ) );
            Owner operation( store ? qvTagRewriteOperationTryRestore( store ) : nullptr );
            if ( !operation )
            {
                fail( place, "operation " + std::to_string( idx ) +
                                 " is no store with a tag and a type: " + operationTypes() );
                continue;
            }
            String tag( qvTagRewriteOperationTag( operation ) );
            if ( qvTagRewriteHasOperation( seen, tag ) )
                fail( place, "a second operation on \"" + tool::textOf( std::move( tag ) ) + "\"" );
            qvTagRewriteSetOperation( seen.edit(), operation );
        }
    }

    Tool &tool;
    const DataFile &file;
    bool failed = false;
};

// ---- Match ----

void runMatch( Tool &tool, const Arguments &arguments )
{
    QV_STORE_ENCODING from;
    if ( !tool::takeFrom( tool, arguments, from ) )
        return;
    std::optional<DataFile> file = tool::loadData( tool, arguments.operand( 0 ), from );
    Owner match = file ? Rules( tool, *file ).match() : Owner<QV_TAG_MATCH>();
    if ( !match )
        return;
    bool invert = arguments.has( "invert" );
    bool count = arguments.has( "count" );
    long long found = 0;
    passSets( tool, arguments, [&]( const std::string &text, QV_TAG_SET *tags ) {
        if ( static_cast<bool>( qvTagMatchTryMatch( match, tags ) ) == invert )
            return;
        found++;
        if ( !count )
            tool.out.write( text + "\n" );
    } );
    if ( count )
        tool.out.write( std::to_string( found ) + "\n" );
}

// ---- Rewrite ----

void runRewrite( Tool &tool, const Arguments &arguments )
{
    QV_STORE_ENCODING from;
    if ( !tool::takeFrom( tool, arguments, from ) )
        return;
    std::optional<DataFile> file = tool::loadData( tool, arguments.operand( 0 ), from );
    Owner rewrite = file ? Rules( tool, *file ).rewrite() : Owner<QV_TAG_REWRITE>();
    if ( !rewrite )
        return;
    passSets( tool, arguments, [&]( const std::string &, QV_TAG_SET *tags ) {
        Owner result( qvTagRewriteApply( rewrite, tags ) );
        tool.out.write( tool::textOf( String( qvTagSetEncode( result ) ) ) + "\n" );
    } );
}

// ---- Tables ----

constexpr tool::Option inputOption = { 'i', "input", "FILE",
                                       "Read tag sets from this file too, one a line." };

const tool::Option matchOptions[] = {
    inputOption,
    { 'v', "invert", nullptr, "Print the sets that don't satisfy the rule." },
    { 'c', "count", nullptr, "Print only how many there are." },
    tool::fromOption,
};
const tool::Example matchExamples[] = {
    { "qv tag match match.qv 'nightly report' 'nightly backup urgent'", "which of two sets satisfy a rule" },
    { "qv tag match match.qv --input jobs.txt --count", "how many lines of a file do" },
    { "qv tag match night.qv --invert < jobs.txt", "as a filter" },
};

const tool::Option rewriteOptions[] = { inputOption, tool::fromOption };
const tool::Example rewriteExamples[] = {
    { "qv tag rewrite rewrite.qv 'draft urgent'", "the set that a rule makes of another" },
    { "qv tag rewrite rewrite.qv < jobs.txt", "each line of a text" },
};

} // namespace

namespace tool
{

const Command tagMatch = {
    "tag match",
    "RULE [TAGS...]",
    1,
    noLimit,
    "Print the tag sets that satisfy a rule",
    "RULE is a data file with the entries type, one of QV_TAG_MATCH_TYPE_OR, _XOR, _AND and _NOT, and "
    "tagSet: a set "
    "must have at least one of these tags, exactly one, all, or none. TAGS are tags separated by blanks, "
    "each of "
    "letters and digits with a small letter in front; without any, each line of standard input is a set.",
    matchOptions,
    matchExamples,
    runMatch,
};

const Command tagRewrite = {
    "tag rewrite",
    "RULE [TAGS...]",
    1,
    noLimit,
    "Print what a rule makes of tag sets",
    "RULE is a data file with the entries clear, which empties a set first, and operations, an array of "
    "stores with "
    "a tag and a type: QV_TAG_REWRITE_OPERATION_TYPE_SET adds the tag, _DELETE removes it, _PASSTHROUGH "
    "keeps it as it "
    "was. TAGS are tags separated by blanks; without any, each line of standard input is a set.",
    rewriteOptions,
    rewriteExamples,
    runRewrite,
};

} // namespace tool
