// Decoding: tokens and escapes by tables, each error with its place, and random documents against a plain reading of the
// rules by recursion.

#include "support/test.hh"
#include "json/support.hh"
#include "support/small_stack.hh"

using namespace test;

namespace
{

constexpr QV_JSON_FLAGS locations = QV_JSON_FLAG_DECODE_LOCATIONS;

Local<QV_JSON_OPTIONS> optionsOf( QV_JSON_FLAGS flags, QV_INT maxDepth = 50 )
{
    Local<QV_JSON_OPTIONS> options( qvJsonOptionsCreate() );
    qvJsonOptionsSetFlags( options.edit(), flags );
    qvJsonOptionsSetDecodeMaxDepth( options.edit(), maxDepth );
    return options;
}

// Packed text of the value, or code and place of the error.
std::string outcome( QV_STRING *content, QV_JSON_FLAGS flags, QV_INT maxDepth = 50 )
{
    Local<QV_JSON_DECODE_RESULT> result(
        qvJsonDecodeStringWithOptions( content, optionsOf( flags, maxDepth ), nullptr ) );
    Json val( qvJsonDecodeResultValue( result ) );
    EXPECT_NE( qvJsonDecodeResultHasValue( result ), qvJsonDecodeResultHasError( result ) );
    if ( val )
        return packed( val );
    Local<QV_JSON_DECODE_ERROR> error( qvJsonDecodeResultError( result ) );
    return std::to_string( qvJsonDecodeErrorCode( error ) ) + " " +
           takePlace( qvJsonDecodeErrorLocation( error ) );
}

struct Case
{
    const char *content, *outcome;
};

void expectOutcome( const Case &row )
{
    EXPECT_EQ( outcome( text( row.content ), locations ), row.outcome ) << row.content;
    // Without the flag there is no place, and the same outcome otherwise.
    std::string expected = row.outcome;
    if ( expected.find( ':' ) != std::string::npos && std::isdigit( expected[0] ) )
        expected = expected.substr( 0, 1 ) + " none";
    EXPECT_EQ( outcome( text( row.content ), 0 ), expected ) << row.content;
}

TEST( JsonDecode, ErrorsAndTheirPlaces )
{
    const Case shortCases[] = {
        { " \t\r\n ", "2 2:2" },    { " null ", "null" },       { "\"lone\"", "\"lone\"" },
        { "{ } x", "1 1:5" },       { "nullx", "1 1:5" },       { "[nullx]", "3 1:6" },
        { "nul", "3 1:1" },         { "Null", "3 1:1" },        { "[tru]", "3 1:2" },
        { "[falsE]", "3 1:2" },     { "[1,]", "4 1:5" },        { "[,1]", "4 1:3" },
        { "]", "4 1:2" },           { " :", "4 1:3" },          { "[}", "4 1:3" },
        { "[1 2]", "4 1:4" },       { "[1:2]", "4 1:3" },       { "[1 x]", "3 1:4" },
        { "[1 \"\\q\"]", "6 1:6" }, { "[1", "2 1:3" },          { "[", "2 1:2" },
        { "[\n1,\n", "2 3:1" },     { "{", "2 1:2" },           { "{]", "4 1:2" },
        { "{1:2}", "4 1:2" },       { "{\"a\"", "2 1:5" },      { "{\"a\" 1}", "4 1:6" },
        { "{\"a\":}", "4 1:7" },    { "{\"a\":1,}", "4 1:8" },  { "{,}", "4 1:2" },
        { "1.", "1 1:2" },          { "[1.]", "3 1:3" },        { "-", "3 1:1" },
        { "[-]", "3 1:2" },         { "+1", "3 1:1" },          { ".5", "3 1:1" },
        { "01", "1 1:2" },          { "[01]", "4 1:3" },        { "~", "3 1:1" },
        { "!", "3 1:1" },           { "'a'", "3 1:1" },         { "\xC2\xA0 1", "3 1:1" },
        { "\"a\nb\"", "3 1:3" },    { "\"a", "3 1:3" },         { "\"a\\", "6 1:4" },
        { "\"\\x\"", "6 1:3" },     { "\"ab\\u12\"", "6 1:5" }, { "\"\\u123g\"", "6 1:3" },
        { "\"\\u00e9\"", "6 1:3" }, { "[1] // no", "1 1:5" },
    };
    const Case otherCases[] = {
        { "", "2 1:1" },
        { "17", "17" },
        { "{\"a\":1 \"b\":2}", "4 1:8" },
        { "{\"a\":1,\"a\":2}", "5 1:13" },
        { "{\"b\":1,\"a\":[],\"\\u0061\":{} }", "5 1:26" },
        { "{\"a\":1,\"a\":x}", "3 1:12" },
        { "{\"a\":1,\"a\" 2}", "4 1:12" },
    };
    for ( const Case &row : shortCases )
        expectOutcome( row );
    for ( const Case &row : otherCases )
        expectOutcome( row );
}

TEST( JsonDecode, Escapes )
{
    const std::pair<const char *, std::u32string> cases[] = {
        { R"("\"\\\/\b\f\n\r\t")", U"\"\\/\b\f\n\r\t" },
        { R"("\u00E9")", U"\u00E9" },
        { R"("a\u0000b")", std::u32string( U"a\0b", 3 ) },
        { R"("\uD83D\uDE00")", { 0xD83D, 0xDE00 } },
        { R"("\uDE00x")", { 0xDE00, 'x' } },
        { R"("\uFFFF\u000A")", U"\uFFFF\n" },
        { "\"\x7F\xC2\x85\"", U"\x7F\u0085" },
        { R"("a long run of text, then \" and a run behind it")",
          U"a long run of text, then \" and a run behind it" },
    };
    for ( const auto &[content, expected] : cases )
    {
        Json val = json( content );
        ASSERT_TRUE( val ) << content;
        Local<QV_STRING> string( qvJsonValueString( val ) );
        EXPECT_EQ( toU32( string ), expected ) << content;
        Json member = json( "{" + std::string( content ) + ":1}" );
        ASSERT_TRUE( member );
        Local<QV_STRING> name( qvJsonValueObjectMemberNameAt( member, 0 ) );
        EXPECT_EQ( toU32( name ), expected ) << content;
    }
}

TEST( JsonDecode, Flags )
{
    Local<QV_STRING> spaced = text( U"\u00A0[\u20281\u3000,\v2]\u0085" );
    EXPECT_EQ( outcome( spaced, locations ), "3 1:1" );
    EXPECT_EQ( outcome( spaced, QV_JSON_FLAG_DECODE_ACCEPT_ANY_WHITESPACE ), "[1,2]" );

    Local<QV_STRING> digits = text( U"\"\\u00e9\\uFF11\uFF12fF\\u\uFF21\uFF410A\"" );
    EXPECT_EQ( outcome( digits, 0 ), "6 none" );
    EXPECT_EQ( outcome( text( U"\"\\u00e9\\u\uFF11\uFF12fF\"" ), QV_JSON_FLAG_DECODE_ACCEPT_ANY_HEXDIG ),
               "\"\xC3\xA9\xE1\x8B\xBF\"" );

    Local<QV_STRING> decomposed = text( U"{\"e\u0301\":\"o\u0302\",\"\u00E9\":2}" );
    EXPECT_EQ( outcome( decomposed, 0 ), "{\"e\xCC\x81\":\"o\xCC\x82\",\"\xC3\xA9\":2}" );
    EXPECT_EQ( outcome( decomposed, locations | QV_JSON_FLAG_DECODE_NORMALIZE ), "5 1:17" );
    Local<QV_JSON_OPTIONS> options = optionsOf( QV_JSON_FLAG_DECODE_NORMALIZE );
    qvJsonOptionsSetDecodeUnicodeNormalForm( options.edit(), QV_UNICODE_NORMAL_FORM_D );
    Local<QV_JSON_DECODE_RESULT> result(
        qvJsonDecodeStringWithOptions( text( U"[\"\u00E9\"]" ), options, nullptr ) );
    EXPECT_EQ( packed( Json( qvJsonDecodeResultValue( result ) ) ), "[\"e\xCC\x81\"]" );
}

TEST( JsonDecode, Depth )
{
    auto nested = []( size_t levels, const char *inner ) {
        return times( levels, "[" ) + inner + times( levels, "]" );
    };
    EXPECT_TRUE( json( nested( 49, "1" ) ) );
    EXPECT_TRUE( json( nested( 49, "[]" ) ) );
    EXPECT_TRUE( json( nested( 50, "" ) ) );
    EXPECT_EQ( outcome( text( nested( 50, "1" ) ), locations ), "7 1:51" );
    EXPECT_EQ( outcome( text( nested( 51, "" ) ), locations ), "7 1:51" );

    const Case cases[] = {
        { "1", "1" },         { " []", "[]" },    { "[ 1]", "7 1:3" },         { "[ x]", "3 1:3" },
        { "[", "2 1:2" },     { "[ }", "7 1:3" }, { "{ \"a\" : 1}", "7 1:8" }, { "{ \"a\"}", "4 1:6" },
        { "{ 1 }", "4 1:3" },
    };
    for ( const Case &row : cases )
        EXPECT_EQ( outcome( text( row.content ), locations, 1 ), row.outcome ) << row.content;
    EXPECT_EQ( outcome( text( "[[],1 ,[ 2]]" ), locations, 2 ), "7 1:10" );
}

TEST( JsonDecode, DepthWithoutLimitNeedsNoStack )
{
    bool done = runOnSmallStack( [] {
        constexpr size_t levels = 100000;
        EXPECT_EQ( outcome( text( std::string( levels, '[' ) ), locations ), "7 1:51" );
        EXPECT_EQ( outcome( text( std::string( levels, '[' ) ), locations, QV_INT_MAX ), "2 1:100001" );
        std::string content = std::string( levels, '[' ) + std::string( levels, ']' );
        EXPECT_EQ( outcome( text( content ), 0, QV_INT_MAX ), content );
        EXPECT_EQ( outcome( text( times( levels, "{\"a\":" ) ), 0, QV_INT_MAX ), "2 none" );
    } );
    EXPECT_TRUE( done );
}

// The places of a value and all that it holds.
void listPlaces( QV_JSON_VALUE *val, std::string *places )
{
    *places += takePlace( qvJsonValueLocation( val ) ) + " ";
    if ( !qv::jsonIsContainer( val ) )
        return;
    for ( QV_INT idx = 0; idx < qv::jsonLength( val ); idx++ )
    {
        bool isObject = val->type == QV_JSON_TYPE_OBJECT;
        listPlaces( isObject ? qv::jsonMemberAt( val, idx ) : qv::jsonItemAt( val, idx ), places );
    }
}

TEST( JsonDecode, LocationsOfValues )
{
    Local<QV_STRING> content = text( " {\"b\":\r\n[null,true,\n\n 1],\"a\" : \"x\" }" );
    std::string places;
    Local<QV_JSON_DECODE_RESULT> plain( qvJsonDecodeString( content, nullptr ) );
    listPlaces( Json( qvJsonDecodeResultValue( plain ) ), &places );
    EXPECT_EQ( places, "none none none none none none " );

    Local<QV_LOCATION> base = location( 10, 5 );
    Local<QV_JSON_DECODE_RESULT> result(
        qvJsonDecodeStringWithOptions( content, optionsOf( locations ), base ) );
    places.clear();
    listPlaces( Json( qvJsonDecodeResultValue( result ) ), &places );
    EXPECT_EQ( places, "10:6 13:11 11:1 11:2 11:7 13:2 " );
    EXPECT_FALSE( qvJsonValueHasLocation( qv___JsonValueTrue ) );
}

TEST( JsonDecode, BytesAndCharsets )
{
    Local<QV_LOCATION> base = location( 2, 3 );
    Local<QV_JSON_DECODE_RESULT> result( qvJsonDecode( bufferOf( "\"\xFF\"" ), base ) );
    Local<QV_JSON_DECODE_ERROR> error( qvJsonDecodeResultError( result ) );
    ASSERT_TRUE( error );
    EXPECT_EQ( qvJsonDecodeErrorCode( error ), QV_JSON_DECODE_ERROR_CODE_CHARSET );
    EXPECT_EQ( takePlace( qvJsonDecodeErrorLocation( error ) ), "2:3" );
    Local<QV_MESSAGE> message( qvJsonDecodeErrorToMessage( error ) );
    EXPECT_EQ( takeUtf8( qvMessageToString( message ) ), "(2,3): error: invalid charset encoding" );

    Local<QV_JSON_OPTIONS> options( qvJsonOptionsCreate() );
    qvJsonOptionsSetDecodeCharset( options.edit(), QV_CHARSET_ISO_8859_1 );
    Local<QV_JSON_DECODE_RESULT> latin( qvJsonDecodeWithOptions( bufferOf( "\"\xE9\"" ), options, nullptr ) );
    EXPECT_EQ( packed( Json( qvJsonDecodeResultValue( latin ) ) ), "\"\xC3\xA9\"" );
    EXPECT_EQ( packed( json( "\xEF\xBB\xBF[]" ) ), "[]" );
}

// Packed text of the value, or the code of the error.
std::string codeOrText( QV_JSON_DECODE_RESULT *result )
{
    Json val( qvJsonDecodeResultValue( result ) );
    if ( val )
        return packed( val );
    return std::to_string(
        qvJsonDecodeErrorCode( Local<QV_JSON_DECODE_ERROR>( qvJsonDecodeResultError( result ) ) ) );
}

// The same by way of a string, whatever the bytes are.
std::string decodedByString( QV_BUFFER *content, QV_JSON_OPTIONS *options )
{
    Local<QV_STRING> chars( qvCharsetTryConvertBufferToStringWithFlags(
        QV_CHARSET_UTF_8, content, QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER ) );
    if ( !chars )
        return std::to_string( QV_JSON_DECODE_ERROR_CODE_CHARSET );
    return codeOrText(
        Local<QV_JSON_DECODE_RESULT>( qvJsonDecodeStringWithOptions( chars, options, nullptr ) ) );
}

TEST( JsonDecode, BytesReadAsTheirCharacters )
{
    std::string longText( 380, 'x' );
    const std::string contents[] = {
        "[\"\xC0\xA2,\"]", // a quote in a form that is too long
        "\"\xE0\x80\xA2\"",
        "\"\xED\xA0\x80\\uDC00\"",
        "\"\xF4\x90\x80\x80\"",
        "\"\xF0\x80\x80\xA2\"",
        "\"\xC3\"",
        "\xEF\xBB\xBF[]",
        "[\xEF\xBB\xBF]",
        "\xC3\xA9",
        "{\"\xC3\xA9\":1,\"\\u00E9\":2}",
        "{\"a\":1,\"\\u0061\":2}",
        "{\"" + longText + "\\n\":\"" + longText + "\xF0\x9F\x98\x80\"}",
        "{\"" + longText + "\\u20AC\":\"" + longText + "12345\"}",
        "[\"\\u0000\\u001F\\uFFFF 1234567\\\"89\"," + std::string( 300, '7' ) + ",-" +
            std::string( 500, '7' ) + ".25]",
        "[12345678\"]",
        "[\"1234567\n\"]",
    };
    for ( const std::string &content : contents )
    {
        Local<QV_BUFFER> buffer = bufferOf( content );
        Local<QV_JSON_DECODE_RESULT> result( qvJsonDecode( buffer, nullptr ) );
        EXPECT_EQ( codeOrText( result ), decodedByString( buffer, optionsOf( 0 ) ) ) << content;
    }
}

TEST( JsonDecode, CodesHaveTexts )
{
    for ( QV_JSON_DECODE_ERROR_CODE code = 0; QV_JSON_DECODE_ERROR_CODE_OK( code ); code++ )
        EXPECT_FALSE( takeUtf8( qvJsonDecodeErrorCodeMessageText( code ) ).empty() );
    EXPECT_EQ( takeUtf8( qvJsonDecodeErrorCodeMessageText( 7 ) ), "maximum nesting depth exceeded" );
}

TEST( JsonDecode, ManyNames )
{
    // Ascending, descending and mixed names, with one of them twice at the end.
    for ( int step : { 1, 999, 389 } )
        for ( int count : { 3, 24, 25, 26, 70, 1000 } )
        {
            std::string content;
            std::set<std::string> names;
            for ( int idx = 0; idx < count; idx++ )
            {
                std::string name =
                    "n" + std::to_string( 1000 + ( step == 999 ? 999 - idx : idx * step % 1000 ) );
                names.insert( name );
                content += ( idx ? ",\"" : "{\"" ) + name + "\":" + std::to_string( idx );
            }
            Json val = json( content + "}" );
            ASSERT_TRUE( val );
            ASSERT_EQ( qvJsonValueObjectMembersLength( val ), lengthOf( names ) );
            QV_INT idx = 0;
            for ( const std::string &name : names )
                EXPECT_EQ( takeUtf8( qvJsonValueObjectMemberNameAt( val, idx++ ) ), name );
            EXPECT_EQ( outcome( text( content + ",\"" + *names.begin() + "\":0}" ), 0 ), "5 none" );
        }
}

// ---- A plain reading of the rules ----

struct Failure
{
    int code;
    size_t at;
};

class PlainReader
{
  public:
    PlainReader( std::u32string_view content, QV_JSON_FLAGS flags ) : text_( content ), flags_( flags ) {}

    // True for a document; otherwise failure() says why.
    bool document( int maxDepth )
    {
        if ( !value( maxDepth ) )
            return false;
        skip();
        return at_ == text_.size() || fail( 1, at_ );
    }

    Failure failure() const
    {
        return failure_;
    }

  private:
    bool fail( int code, size_t at )
    {
        failure_ = { code, at };
        return false;
    }

    void skip()
    {
        while ( at_ < text_.size() &&
                ( std::u32string_view( U" \t\r\n" ).find( text_[at_] ) != std::u32string_view::npos ||
                  ( ( flags_ & QV_JSON_FLAG_DECODE_ACCEPT_ANY_WHITESPACE ) &&
                    qvUnicodeIsWhiteSpace( text_[at_] ) ) ) )
            at_++;
    }

    bool digits()
    {
        size_t before = at_;
        while ( at_ < text_.size() && text_[at_] >= '0' && text_[at_] <= '9' )
            at_++;
        return at_ > before;
    }

    char32_t peek() const
    {
        return at_ < text_.size() ? text_[at_] : U'\0';
    }

    bool number()
    {
        size_t begin = at_;
        at_ += peek() == '-';
        if ( peek() == '0' )
            at_++;
        else if ( !digits() )
            return fail( 3, begin );
        size_t whole = at_;
        if ( peek() == '.' )
        {
            at_++;
            if ( !digits() )
            {
                at_ = whole;
                return true;
            }
        }
        size_t fraction = at_;
        if ( peek() == 'e' || peek() == 'E' )
        {
            at_++;
            at_ += peek() == '+' || peek() == '-';
            if ( !digits() )
                at_ = fraction;
        }
        return true;
    }

    bool string( std::u32string *result )
    {
        for ( at_++;; )
        {
            if ( at_ == text_.size() || text_[at_] < 0x20 )
                return fail( 3, at_ );
            char32_t ch = text_[at_++];
            if ( ch == '"' )
                return true;
            if ( ch != '\\' )
            {
                *result += ch;
                continue;
            }
            constexpr std::u32string_view from = U"\"\\/bfnrt";
            constexpr std::u32string_view to = U"\"\\/\b\f\n\r\t";
            size_t escape = peek() == 0 ? from.npos : from.find( peek() );
            if ( escape != from.npos )
            {
                *result += to[escape];
                at_++;
                continue;
            }
            if ( peek() != 'u' || text_.size() - at_ < 5 )
                return fail( 6, at_ );
            QV_INT unit = 0;
            for ( size_t idx = 1; idx <= 4; idx++ )
            {
                char32_t digit = text_[at_ + idx];
                bool plain = ( digit >= '0' && digit <= '9' ) || ( digit >= 'A' && digit <= 'F' );
                QV_INT value = qvUnicodeHexadecimalDigitValue( digit );
                if ( value < 0 || ( !plain && !( flags_ & QV_JSON_FLAG_DECODE_ACCEPT_ANY_HEXDIG ) ) )
                    return fail( 6, at_ );
                unit = unit * 16 + value;
            }
            *result += static_cast<char32_t>( unit );
            at_ += 5;
        }
    }

    // The first character stands for the token's kind, 0 after a failure.
    char32_t token( std::u32string *string = nullptr )
    {
        std::u32string ignored;
        if ( at_ == text_.size() )
            return fail( 2, at_ );
        char32_t first = text_[at_];
        if ( std::u32string_view( U"[]{}:," ).find( first ) != std::u32string_view::npos )
        {
            at_++;
            return first;
        }
        for ( std::u32string_view word : { U"null", U"true", U"false" } )
        {
            if ( text_.substr( at_, word.size() ) == word )
            {
                at_ += word.size();
                return first;
            }
        }
        if ( first == '"' )
            return this->string( string ? string : &ignored ) ? first : 0;
        if ( first == '-' || ( first >= '0' && first <= '9' ) )
            return number() ? '0' : 0;
        return fail( 3, at_ );
    }

    bool value( int maxDepth )
    {
        if ( maxDepth == 0 )
            return fail( 7, at_ );
        skip();
        char32_t kind = token();
        if ( kind == ']' || kind == '}' || kind == ':' || kind == ',' )
            return fail( 4, at_ );
        if ( kind == '[' )
            return array( maxDepth );
        if ( kind == '{' )
            return object( maxDepth );
        return kind != 0;
    }

    bool array( int maxDepth )
    {
        for ( bool isFirst = true;; isFirst = false )
        {
            skip();
            size_t begin = at_;
            char32_t kind = token();
            if ( kind == 0 || kind == ']' )
                return kind != 0;
            if ( !isFirst && kind != ',' )
                return fail( 4, begin );
            if ( isFirst )
                at_ = begin;
            if ( !value( maxDepth - 1 ) )
                return false;
        }
    }

    bool object( int maxDepth )
    {
        std::set<std::u32string> names;
        for ( ;; )
        {
            skip();
            size_t begin = at_;
            char32_t kind = token();
            if ( kind == 0 || kind == '}' )
                return kind != 0;
            if ( !names.empty() && kind != ',' )
                return fail( 4, begin );
            if ( names.empty() )
                at_ = begin;
            skip();
            begin = at_;
            std::u32string name;
            kind = token( &name );
            if ( kind != '"' )
                return kind != 0 && fail( 4, begin );
            skip();
            begin = at_;
            kind = token();
            if ( kind != ':' )
                return kind != 0 && fail( 4, begin );
            if ( !value( maxDepth - 1 ) )
                return false;
            if ( !names.insert( name ).second )
                return fail( 5, at_ );
        }
    }

    std::u32string_view text_;
    QV_JSON_FLAGS flags_;
    size_t at_ = 0;
    Failure failure_ = {};
};

TEST( JsonDecode, MutatedDocumentsAgainstThePlainReading )
{
    RandomJson random( 42 );
    int failures[8] = {};
    for ( int round = 0; round < 30000; round++ )
    {
        Json val = random.value( 3 );
        QV_JSON_FLAGS layout = random.below( 2 ) ? QV_JSON_FLAG_ENCODE_SINGLE_LINE : 0;
        Local<QV_STRING> encoded( qvJsonEncodeToStringWithFlags( val, layout ) );
        if ( qvStringLength( encoded ) > 2000 )
            continue;
        std::u32string content = toU32( encoded );
        mutate( &content, &random );
        QV_JSON_FLAGS flags = random.below( 4 ) * QV_JSON_FLAG_DECODE_ACCEPT_ANY_WHITESPACE;
        int maxDepth = 1 + random.below( 5 );

        PlainReader plain( content, flags );
        bool expected = plain.document( maxDepth );
        Local<QV_JSON_OPTIONS> options = optionsOf( flags | locations, maxDepth );
        // All characters on one line, so that the column tells the place.
        qvJsonOptionsSetDecodeNlfFlags( options.edit(), 0 );
        Local<QV_JSON_DECODE_RESULT> result(
            qvJsonDecodeStringWithOptions( text( content ), options, nullptr ) );
        std::string shown =
            takeUtf8( qvStringCreateFromCharsCopy( charsOf( content ), lengthOf( content ) ) );
        ASSERT_EQ( qvJsonDecodeResultIsSuccess( result ), expected ) << shown;
        Local<QV_BUFFER> buffer = bufferOf( shown );
        Local<QV_JSON_OPTIONS> unlocated = optionsOf( flags, maxDepth );
        Local<QV_JSON_DECODE_RESULT> fromBytes( qvJsonDecodeWithOptions( buffer, unlocated, nullptr ) );
        ASSERT_EQ( codeOrText( fromBytes ), decodedByString( buffer, unlocated ) ) << shown;
        if ( expected )
            continue;
        Local<QV_JSON_DECODE_ERROR> error( qvJsonDecodeResultError( result ) );
        Local<QV_LOCATION> location( qvJsonDecodeErrorLocation( error ) );
        failures[plain.failure().code]++;
        ASSERT_EQ( qvJsonDecodeErrorCode( error ), plain.failure().code ) << shown;
        ASSERT_EQ( qvLocationColumn( location ), static_cast<QV_INT>( plain.failure().at ) + 1 ) << shown;
    }
    for ( int code = 1; code < 8; code++ )
        EXPECT_GT( failures[code], 10 ) << code;
}

} // namespace
