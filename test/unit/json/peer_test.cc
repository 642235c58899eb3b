// Decoding against another parser, on random documents and on such with a few changes. Both must take and refuse the same
// ones and find the same content, but for these differences:
//
// - A name that stands twice in an object is an error here; there the last one counts.
// - Escapes take lower-case digits here only with QV_JSON_FLAG_DECODE_ACCEPT_ANY_HEXDIG.
// - Depth has a limit here.
// - Each escape is a character here, and strings hold any code point, so that surrogates may stand alone. There an escaped
//   pair becomes one character, and what isn't a pair is an error.
// - A number may be of any size here, as its text is kept; there it must fit into a real.

#include "support/test.hh"
#include "json/support.hh"

#include <nlohmann/json.hpp>

using namespace test;
using Peer = nlohmann::json;

namespace
{

// UTF-16 units, where a pair of escapes and the character that it means are the same.
std::u16string unitsOf( QV_STRING *string )
{
    std::u16string units;
    for ( char32_t ch : toU32( string ) )
    {
        if ( ch < 0x10000 )
        {
            units += static_cast<char16_t>( ch );
            continue;
        }
        units += static_cast<char16_t>( 0xD800 + ( ( ch - 0x10000 ) >> 10 ) );
        units += static_cast<char16_t>( 0xDC00 + ( ch & 0x3FF ) );
    }
    return units;
}

bool isSameNumber( QV_JSON_VALUE *val, const Peer &peer )
{
    std::string number = takeUtf8( qvJsonValueNumber( val ) );
    if ( qvJsonValueIsInt( val ) && qvJsonValueInt( val ) != std::strtoll( number.c_str(), nullptr, 10 ) )
        return false;
    double real = std::strtod( number.c_str(), nullptr );
    if ( qvJsonValueIsReal( val ) && std::fabs( qvJsonValueReal( val ) - real ) > std::fabs( real ) * 1e-14 )
        return false;
    return peer.is_number_float() ? peer.get<double>() == real
                                  : peer.dump() == ( number == "-0" ? "0" : number );
}

bool isSame( QV_JSON_VALUE *val, const Peer &peer );

bool isSameObject( QV_JSON_VALUE *val, const Peer &peer )
{
    std::map<std::u16string, const Peer *> members;
    for ( auto member = peer.begin(); member != peer.end(); ++member )
        members[unitsOf( text( member.key() ) )] = &*member;
    if ( qvJsonValueObjectMembersLength( val ) != lengthOf( members ) )
        return false;
    for ( QV_INT idx = 0; idx < qvJsonValueObjectMembersLength( val ); idx++ )
    {
        auto found = members.find( unitsOf( qv::jsonNameAt( val, idx ) ) );
        if ( found == members.end() || !isSame( qv::jsonMemberAt( val, idx ), *found->second ) )
            return false;
    }
    return true;
}

bool isSameArray( QV_JSON_VALUE *val, const Peer &peer )
{
    if ( qvJsonValueArrayLength( val ) != lengthOf( peer ) )
        return false;
    for ( QV_INT idx = 0; idx < qvJsonValueArrayLength( val ); idx++ )
    {
        if ( !isSame( qv::jsonItemAt( val, idx ), peer[static_cast<size_t>( idx )] ) )
            return false;
    }
    return true;
}

bool isSame( QV_JSON_VALUE *val, const Peer &peer )
{
    switch ( qvJsonValueType( val ) )
    {
    case QV_JSON_TYPE_NULL:
        return peer.is_null();
    case QV_JSON_TYPE_FALSE:
    case QV_JSON_TYPE_TRUE:
        return peer.is_boolean() && peer.get<bool>() == static_cast<bool>( qvJsonValueBool( val ) );
    case QV_JSON_TYPE_NUMBER:
        return peer.is_number() && isSameNumber( val, peer );
    case QV_JSON_TYPE_STRING:
        return peer.is_string() && unitsOf( Local<QV_STRING>( qvJsonValueString( val ) ) ) ==
                                       unitsOf( text( peer.get<std::string>() ) );
    case QV_JSON_TYPE_OBJECT:
        return peer.is_object() && isSameObject( val, peer );
    default:
        return peer.is_array() && isSameArray( val, peer );
    }
}

// Reads with the peer and notes whether a name stands twice in an object.
Peer peerOf( const std::string &content, bool *hasTwice )
{
    *hasTwice = false;
    std::vector<std::set<std::string>> open;
    auto note = [&]( int, Peer::parse_event_t event, Peer &parsed ) {
        if ( event == Peer::parse_event_t::object_start )
            open.emplace_back();
        else if ( event == Peer::parse_event_t::object_end )
            open.pop_back();
        else if ( event == Peer::parse_event_t::key &&
                  !open.back().insert( parsed.get<std::string>() ).second )
            *hasTwice = true;
        return true;
    };
    return Peer::parse( content, note, false );
}

bool hasLoneSurrogate( QV_STRING *string )
{
    std::u16string units = unitsOf( string );
    for ( size_t idx = 0; idx < units.size(); idx++ )
    {
        bool isPair = ( units[idx] & 0xFC00 ) == 0xD800 && ( units[idx + 1] & 0xFC00 ) == 0xDC00;
        if ( !isPair && ( units[idx] & 0xF800 ) == 0xD800 )
            return true;
        idx += isPair;
    }
    return false;
}

enum Difference
{
    twiceNamed,
    lowerCaseDigits,
    tooDeep,
    loneSurrogate,
    largeNumber,
    differences
};

// Which of what the peer refuses a value holds; differences for nothing.
Difference refusedByPeer( QV_JSON_VALUE *val )
{
    if ( val->type == QV_JSON_TYPE_STRING )
        return hasLoneSurrogate( Local<QV_STRING>( qvJsonValueString( val ) ) ) ? loneSurrogate : differences;
    if ( val->type == QV_JSON_TYPE_NUMBER )
        return std::isinf( std::strtod( takeUtf8( qvJsonValueNumber( val ) ).c_str(), nullptr ) )
                   ? largeNumber
                   : differences;
    for ( QV_INT idx = 0; qv::jsonIsContainer( val ) && idx < qv::jsonLength( val ); idx++ )
    {
        bool isObject = val->type == QV_JSON_TYPE_OBJECT;
        if ( isObject && hasLoneSurrogate( qv::jsonNameAt( val, idx ) ) )
            return loneSurrogate;
        Difference found =
            refusedByPeer( isObject ? qv::jsonMemberAt( val, idx ) : qv::jsonItemAt( val, idx ) );
        if ( found != differences )
            return found;
    }
    return differences;
}

Json decode( const std::string &content, QV_JSON_FLAGS flags, QV_INT maxDepth, QV_INT *code )
{
    Local<QV_JSON_OPTIONS> options( qvJsonOptionsCreate() );
    qvJsonOptionsSetFlags( options.edit(), flags );
    qvJsonOptionsSetDecodeMaxDepth( options.edit(), maxDepth );
    Local<QV_JSON_DECODE_RESULT> result( qvJsonDecodeWithOptions( bufferOf( content ), options, nullptr ) );
    Local<QV_JSON_DECODE_ERROR> error( qvJsonDecodeResultError( result ) );
    *code = error ? qvJsonDecodeErrorCode( error ) : -1;
    return Json( qvJsonDecodeResultValue( result ) );
}

// Why this decoder refuses a text that the peer takes; differences if it shouldn't.
Difference refusedHere( const std::string &content, QV_INT code, bool hasTwice )
{
    if ( code == QV_JSON_DECODE_ERROR_CODE_DUPLICATE )
        return hasTwice ? twiceNamed : differences;
    QV_INT then;
    if ( code == QV_JSON_DECODE_ERROR_CODE_ESCAPE )
    {
        decode( content, QV_JSON_FLAG_DECODE_ACCEPT_ANY_HEXDIG, QV_INT_MAX, &then );
        return then == code ? differences : lowerCaseDigits;
    }
    decode( content, 0, QV_INT_MAX, &then );
    return code == QV_JSON_DECODE_ERROR_CODE_DEPTH && then != code ? tooDeep : differences;
}

TEST( JsonPeer, DiffersAsIntended )
{
    RandomJson random( 17 );
    int agreed[2] = {};
    int differed[differences] = {};
    for ( int round = 0; round < 15000; round++ )
    {
        Local<QV_STRING> encoded( qvJsonEncodeToString( random.value( 3 ) ) );
        std::u32string characters = toU32( encoded );
        if ( characters.size() > 200 )
            continue;
        for ( char32_t &ch : characters )
            ch = ( ch & 0xFFFFF800 ) == 0xD800 && random.below( 50 ) ? U'x' : ch;
        mutate( &characters, &random );
        Local<QV_BUFFER> bytes( qvCharsetConvertStringToBuffer( QV_CHARSET_UTF_8, text( characters ) ) );
        std::string content = takeBytes( bytes.give() );
        bool hasTwice;
        QV_INT code;
        Peer peer = peerOf( content, &hasTwice );
        Json val = decode( content, 0, 3, &code );
        if ( ( val != nullptr ) == !peer.is_discarded() )
        {
            ASSERT_TRUE( !val || isSame( val, peer ) ) << content;
            agreed[val != nullptr]++;
            continue;
        }
        Difference difference = val ? refusedByPeer( val ) : refusedHere( content, code, hasTwice );
        ASSERT_NE( difference, differences ) << code << " " << content;
        differed[difference]++;
    }
    EXPECT_GT( agreed[0], 1000 );
    EXPECT_GT( agreed[1], 1000 );
    for ( int difference = 0; difference < differences; difference++ )
        EXPECT_GT( differed[difference], 1 ) << difference << " of " << agreed[1];
}

} // namespace
