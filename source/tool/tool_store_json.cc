// JSON as the content of data files: places of faults, and what a store can't hold.

#include "tool_json.hh"
#include "tool_store.hh"

#include <qv/json/qv_json_encode.h>
#include <qv/json/qv_json_store.h>

#include <cmath>

namespace
{

using tool::Owner;
using tool::String;
using tool::Tool;

// As the library reads data files, with places.
constexpr tool::JsonReading contentReading = {
    .depth = 50, .capitalDigits = true, .loneHalves = true, .locations = true };

// A number's text without what changes nothing.
std::string bareDigits( std::string text )
{
    if ( text.find( '.' ) != std::string::npos )
        text.erase( std::max( text.find_last_not_of( '0' ), text.find_last_not_of( "0." ) ) + 1 );
    if ( text.ends_with( '.' ) )
        text.pop_back();
    return text;
}

// What becomes of a JSON value in a store. Losses are told with their places, the first ones of them each.
class Losses
{
  public:
    Losses( Tool &running, const std::string &file ) : tool( running ), name( file ) {}

    void walk( QV_JSON_VALUE *value )
    {
        if ( qvJsonValueIsNumber( value ) )
            walkNumber( value );
        for ( QV_INT idx = 0; qvJsonValueIsArray( value ) && idx < qvJsonValueArrayLength( value ); idx++ )
            walk( Owner( qvJsonValueArrayAt( value, idx ) ) );
        for ( QV_INT idx = 0; qvJsonValueIsObject( value ) && idx < qvJsonValueObjectMembersLength( value );
              idx++ )
        {
            String member( qvJsonValueObjectMemberNameAt( value, idx ) );
            Owner entry( qvJsonValueObjectMemberValueAt( value, idx ) );
            if ( qvStoreAddressOk( member ) )
                walk( entry );
            else
                leaveOut( std::move( member ), entry );
        }
    }

    // The number of members that are left out.
    long long finish()
    {
        if ( count > most )
            tool.warning( name, "and " + tool::counted( count - most, "more change" ) );
        return leftOut;
    }

  private:
    static constexpr long long most = 10;
    static constexpr size_t mostDigits = 40;

    void tell( QV_JSON_VALUE *value, const std::string &words )
    {
        if ( ++count > most )
            return;
        Owner place( qvJsonValueLocation( value ) );
        tool.report( Owner( qvMessageCreate( QV_MESSAGE_LEVEL_WARNING, place, tool::stringOf( words ) ) ) );
    }

    void leaveOut( String member, QV_JSON_VALUE *value )
    {
        leftOut++;
        tell( value,
              "\"" + tool::textOf( std::move( member ) ) + "\" is no address, the member is left out" );
    }

    void walkNumber( QV_JSON_VALUE *value )
    {
        if ( qvJsonValueIsInt( value ) )
            return;
        std::string text = tool::textOf( String( qvJsonValueNumber( value ) ) );
        std::string shown = text.size() <= mostDigits ? text : text.substr( 0, mostDigits ) + "...";
        if ( !qvJsonValueIsReal( value ) || !std::isfinite( qvJsonValueReal( value ) ) )
            return tell( value, shown + " is no number that a store can hold" );
        Owner kept( qvJsonValueCreateReal( qvJsonValueReal( value ) ) );
        std::string keptText = tool::textOf( String( qvJsonValueNumber( kept ) ) );
        if ( bareDigits( keptText ) != bareDigits( text ) )
            tell( value, shown + " becomes " + keptText );
    }

    Tool &tool;
    const std::string &name;
    long long count = 0;
    long long leftOut = 0;
};

} // namespace

namespace tool
{

Owner<QV_STORE_DECODE_RESULT> locatedJsonFailure( QV_BUFFER *bytes, QV_LOCATION *place )
{
    Owner options( qvJsonOptionsCreate() );
    qvJsonOptionsSetFlags( options.edit(), QV_JSON_FLAG_DECODE_LOCATIONS );
    Owner result( qvJsonDecodeWithOptions( bytes, options, place ) );
    Owner error( qvJsonDecodeResultError( result ) );
    if ( !error )
        return {};
    Owner wrapped( qvStoreDecodeErrorCreateWithJsonDecodeError( error ) );
    return Owner( qvStoreDecodeResultCreateError( wrapped ) );
}

bool takeJsonContent( Tool &tool, QV_BUFFER *bytes, QV_LOCATION *place, DataFile &file )
{
    String text = readCharacters( tool, bytes, place, QV_CHARSET_UTF_8 );
    Owner value = text ? readJson( tool, text, place, contentReading ) : Owner<QV_JSON_VALUE>();
    if ( !value )
        return false;
    Losses losses( tool, file.name );
    losses.walk( value );
    file.leftOut = losses.finish();
    file.store = Owner( qvJsonConvertToStore( value ) );
    return true;
}

void printJson( Output &out, QV_STORE *store )
{
    out.write( textOf( jsonText( Owner( qvJsonConvertFromStore( store ) ), {} ) ) );
}

} // namespace tool
