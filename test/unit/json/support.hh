#ifndef QV_TEST_JSON_SUPPORT_HH
#define QV_TEST_JSON_SUPPORT_HH

// JSON values for tests: from literal text, as text, and random ones.

#include "support/test.hh"

#include <qv/json/qv_json_value.hh>

namespace test
{

using Json = Local<QV_JSON_VALUE>;

// Line and column of a location that the caller hands over, "none" for null.
inline std::string takePlace( QV_LOCATION *given )
{
    Local<QV_LOCATION> location( given );
    if ( !location )
        return "none";
    return std::to_string( qvLocationLine( location ) ) + ":" +
           std::to_string( qvLocationColumn( location ) );
}

inline Local<QV_LOCATION> location( QV_INT line, QV_INT column )
{
    Local<QV_LOCATION> loc( qvLocationCreate() );
    qvLocationSetLine( loc.edit(), line );
    qvLocationSetColumn( loc.edit(), column );
    return loc;
}

// The value of a text, null if it is none.
inline Json json( std::string_view content )
{
    Local<QV_JSON_DECODE_RESULT> result( qvJsonDecode( bufferOf( content ), nullptr ) );
    return Json( qvJsonDecodeResultValue( result ) );
}

inline std::string packed( QV_JSON_VALUE *val )
{
    return takeBytes(
        qvJsonEncodeWithFlags( val, QV_JSON_FLAG_ENCODE_SINGLE_LINE | QV_JSON_FLAG_ENCODE_PACKED ) );
}

// Whether two values have the same content, locations aside.
inline bool sameContent( QV_JSON_VALUE *valA, QV_JSON_VALUE *valB )
{
    return packed( valA ) == packed( valB );
}

// Random values of all types with names, texts and numbers of all kinds.
class RandomJson
{
  public:
    explicit RandomJson( unsigned seed ) : random_( seed ) {}

    // exact: only what also a store keeps.
    Json value( int depth, bool exact = false )
    {
        switch ( below( depth > 0 ? 8 : 5 ) )
        {
        case 0:
            return Json( qvJsonValueCreateNull() );
        case 1:
            return Json( qvJsonValueCreateBool( static_cast<QV_BOOL>( below( 2 ) ) ) );
        case 2:
            return Json( qvJsonValueCreateInt( integer() ) );
        case 3:
            return exact ? Json( qvJsonValueCreateReal( static_cast<double>( integer() % 1000 ) / 4 ) )
                         : Json( qvJsonValueCreateNumber( test::text( number() ) ) );
        case 4:
            return Json( qvJsonValueCreateString( string() ) );
        case 5:
        case 6:
            return object( depth, exact );
        default:
            return array( depth, exact );
        }
    }

    Json object( int depth, bool exact = false )
    {
        Json val( qvJsonValueCreateObject() );
        int members = below( 4 ) == 0 ? below( 60 ) : below( 6 );
        for ( int idx = 0; idx < members; idx++ )
        {
            Json member = value( depth - 1, exact );
            qvJsonValueObjectSetMember( val.edit(), exact ? address() : string(), member );
        }
        return val;
    }

    Json array( int depth, bool exact = false )
    {
        Json val( qvJsonValueCreateArray() );
        int items = below( 8 ) == 0 ? below( 90 ) : below( 6 );
        for ( int idx = 0; idx < items; idx++ )
            qvJsonValueArrayAppend( val.edit(), value( depth - 1, exact ) );
        return val;
    }

    int below( int limit )
    {
        return static_cast<int>( random_() % static_cast<unsigned>( limit ) );
    }

    std::string number()
    {
        std::string text = below( 2 ) ? "-" : "";
        text += below( 3 ) ? std::to_string( 1 + below( 999999 ) ) : "0";
        for ( int more = below( 4 ) == 0 && text.back() != '0' ? below( 40 ) : 0; more > 0; more-- )
            text += static_cast<char>( '0' + below( 10 ) );
        if ( below( 2 ) )
            text += "." + std::to_string( below( 99999 ) );
        if ( below( 3 ) == 0 )
            text += std::string( below( 2 ) ? "e" : "E" ) +
                    ( below( 2 )   ? "-"
                      : below( 2 ) ? "+"
                                   : "" ) +
                    std::to_string( below( 400 ) );
        return text;
    }

    Local<QV_STRING> string()
    {
        static constexpr char32_t chars[] = { 0,    1,      8,      9,      10,     12,      13,
                                              0x1F, ' ',    '"',    '/',    '\\',   0x7F,    0x80,
                                              0xE9, 0x2028, 0xD800, 0xDFFF, 0xFFFF, 0x1F600, 0x10FFFF };
        std::u32string text;
        for ( int length = below( 5 ) == 0 ? below( 100 ) : below( 9 ); length > 0; length-- )
            text += below( 4 ) == 0 ? chars[below( static_cast<int>( std::size( chars ) ) )]
                                    : static_cast<char32_t>( 'a' + below( 26 ) );
        return test::text( text );
    }

    Local<QV_STRING> address()
    {
        static constexpr char chars[] = "-.0123456789AZ_abz";
        std::string text;
        for ( int length = 1 + below( 7 ); length > 0; length-- )
            text += chars[below( static_cast<int>( sizeof( chars ) ) - 1 )];
        return test::text( text );
    }

    QV_INT integer()
    {
        auto value = static_cast<QV_INT>( random_() );
        return below( 2 ) ? value >> below( 63 ) : value;
    }

  private:
    std::mt19937_64 random_;
};

// Changes a text in a few places, so that it mostly isn't quite a document any more.
inline void mutate( std::u32string *content, RandomJson *random )
{
    static constexpr std::u32string_view pieces[] = {
        U"\"",      U"\\",     U"{",       U"}",    U"[",
        U"]",       U",",      U":",       U"1",    U"-",
        U"e",       U".",      U" ",       U"\n",   U"u",
        U"0",       U"\\u",    U"\\u00e9", U"x",    U"null",
        U"\t",      U"\u00A0", U"\"a\"",   U"\x01", U"{\"a\":0,\"a\":{}}",
        U"{}",      U"\\n ",   U"E5",      U"true", U"\\uD83D\\uDE00",
        U"\\uDC00", U"1e999",
    };
    for ( int edits = random->below( 4 ); edits > 0; edits-- )
    {
        size_t at = static_cast<size_t>( random->below( static_cast<int>( content->size() ) + 1 ) );
        size_t gone = random->below( 2 ) ? 0 : static_cast<size_t>( random->below( 4 ) );
        std::u32string_view piece = random->below( 3 ) ? pieces[random->below( std::size( pieces ) )] : U"";
        content->replace( at, std::min( gone, content->size() - at ), piece );
    }
    if ( random->below( 10 ) == 0 )
        content->resize( static_cast<size_t>( random->below( static_cast<int>( content->size() ) + 1 ) ) );
}

// Arrays inside one another, made by calls alone, around a number.
inline Json nest( QV_INT depth, bool objects )
{
    Json val( qvJsonValueCreateInt( 1 ) );
    Local<QV_STRING> name = test::text( "a" );
    for ( QV_INT level = 0; level < depth; level++ )
    {
        Json outer( objects ? qvJsonValueCreateObject() : qvJsonValueCreateArray() );
        if ( objects )
            qvJsonValueObjectSetMember( outer.edit(), name, val );
        else
            qvJsonValueArrayAppend( outer.edit(), val );
        val.take( outer.give() );
    }
    return val;
}

} // namespace test

#endif
