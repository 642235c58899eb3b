// qv text info and charsets.

#include "tool.hh"

#include <qv/charset/qv_charset.h>
#include <qv/unicode/qv_unicode_genc.h>
#include <qv/unicode/qv_unicode_normalizer.h>
#include <qv/unicode/qv_unicode_script.h>

#include <algorithm>
#include <array>
#include <map>
#include <unistd.h>

namespace
{

using tool::Arguments;
using tool::Owner;
using tool::String;
using tool::Style;
using tool::Tool;

// ---- Charset ----

struct Guess
{
    QV_CHARSET charset;
    std::string reason;
};

struct Mark
{
    std::string_view bytes;
    QV_CHARSET charset; // one that takes the mark for what it is
    const char *order;
};

// The longer marks first: that of UTF-32 begins with that of UTF-16.
constexpr Mark marks[] = {
    { { "\xFF\xFE\0\0", 4 }, QV_CHARSET_UTF_32, ", little-endian" },
    { { "\0\0\xFE\xFF", 4 }, QV_CHARSET_UTF_32, ", big-endian" },
    { { "\xEF\xBB\xBF", 3 }, QV_CHARSET_UTF_8, "" },
    { { "\xFF\xFE", 2 }, QV_CHARSET_UTF_16, ", little-endian" },
    { { "\xFE\xFF", 2 }, QV_CHARSET_UTF_16, ", big-endian" },
};

bool isValid( QV_BUFFER *bytes, QV_CHARSET charset )
{
    return String( qvCharsetTryConvertBufferToStringWithFlags( charset, bytes,
                                                               QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER ) );
}

// Text in wide units without a mark shows by the zero bytes of its Latin letters and blanks.
std::optional<QV_CHARSET> wideCharset( std::string_view bytes )
{
    std::array<long long, 4> zeros = {};
    size_t length = std::min<size_t>( bytes.size() & ~size_t( 3 ), 1 << 16 );
    for ( size_t idx = 0; idx < length; idx++ )
        zeros[idx % 4] += bytes[idx] == 0;
    long long quarter = static_cast<long long>( length / 4 );
    auto most = [&]( size_t place ) { return quarter > 0 && zeros[place] * 10 > quarter * 7; };
    if ( most( 1 ) && most( 2 ) && most( 3 ) )
        return QV_CHARSET_UTF_32_LE;
    if ( most( 0 ) && most( 1 ) && most( 2 ) )
        return QV_CHARSET_UTF_32_BE;
    if ( most( 1 ) && most( 3 ) )
        return QV_CHARSET_UTF_16_LE;
    if ( most( 0 ) && most( 2 ) )
        return QV_CHARSET_UTF_16_BE;
    return std::nullopt;
}

Guess guessCharset( QV_BUFFER *buffer )
{
    std::string_view bytes( reinterpret_cast<const char *>( qvBufferBacking( buffer ) ),
                            static_cast<size_t>( qvBufferLength( buffer ) ) );
    for ( const Mark &mark : marks )
    {
        if ( bytes.starts_with( mark.bytes ) )
            return { mark.charset, std::string( "by its byte order mark" ) + mark.order };
    }
    if ( std::optional<QV_CHARSET> wide = wideCharset( bytes ); wide && isValid( buffer, *wide ) )
        return { *wide, "by its zero bytes" };
    if ( isValid( buffer, QV_CHARSET_ASCII ) )
        return { QV_CHARSET_ASCII, "by its bytes, all below 128" };
    if ( isValid( buffer, QV_CHARSET_UTF_8 ) )
        return { QV_CHARSET_UTF_8, "by its sequences" };
    bool controls =
        std::any_of( bytes.begin(), bytes.end(), []( char ch ) { return ( ch & 0xE0 ) == 0x80; } );
    if ( controls && isValid( buffer, QV_CHARSET_MSFT_CP1252 ) )
        return { QV_CHARSET_MSFT_CP1252, "a guess: no UTF-8, and bytes from 128 to 159" };
    return { QV_CHARSET_ISO_8859_1, "a guess: no UTF-8" };
}

// ---- Counting ----

struct NewLine
{
    const char *name;
    long long count;
};

struct Census
{
    long long characters = 0;
    long long lines = 0;
    long long longest = 0;
    long long longestLine = 0;
    std::vector<NewLine> newLines = { { "LF", 0 },  { "CRLF", 0 }, { "CR", 0 },
                                      { "NEL", 0 }, { "LS", 0 },   { "PS", 0 } };
    std::map<QV_UNICODE_SCRIPT, long long> scripts;
    std::map<QV_UNICODE_GENC, long long> categories;
};

int newLineKind( const QV_CHAR *chs, QV_INT length, QV_INT idx )
{
    switch ( chs[idx] )
    {
    case '\n':
        return 0;
    case '\r':
        return idx + 1 < length && chs[idx + 1] == '\n' ? 1 : 2;
    case 0x85:
        return 3;
    case 0x2028:
        return 4;
    case 0x2029:
        return 5;
    default:
        return -1;
    }
}

void countLines( QV_STRING *text, Census &census )
{
    const QV_CHAR *chs = qvStringBacking( text );
    QV_INT length = qvStringLength( text );
    QV_INT start = 0;
    auto endLine = [&]( QV_INT end ) {
        census.lines++;
        if ( end - start > census.longest )
        {
            census.longest = end - start;
            census.longestLine = census.lines;
        }
    };
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        int kind = newLineKind( chs, length, idx );
        if ( kind < 0 )
            continue;
        census.newLines[static_cast<size_t>( kind )].count++;
        endLine( idx );
        idx += kind == 1;
        start = idx + 1;
    }
    if ( start < length )
        endLine( length );
}

Census take( QV_STRING *text, const std::string &name )
{
    Census census;
    census.characters = qvStringLength( text );
    countLines( text, census );
    tool::Progress progress( "Reading " + name, census.characters, "characters" );
    std::array<long long, 256> scripts = {};
    std::array<long long, 32> categories = {};
    const QV_CHAR *chs = qvStringBacking( text );
    for ( QV_INT idx = 0; idx < census.characters; idx++ )
    {
        scripts[static_cast<size_t>( qvUnicodeScript( chs[idx] ) )]++;
        categories[static_cast<size_t>( qvUnicodeGenc( chs[idx] ) )]++;
        if ( idx % ( 1 << 20 ) == 0 )
            progress.advance( idx );
    }
    for ( size_t script = 0; script < scripts.size(); script++ )
    {
        if ( scripts[script] )
            census.scripts[static_cast<QV_UNICODE_SCRIPT>( script )] = scripts[script];
    }
    for ( size_t category = 0; category < categories.size(); category++ )
    {
        if ( categories[category] )
            census.categories[static_cast<QV_UNICODE_GENC>( category )] = categories[category];
    }
    return census;
}

// ---- Printing ----

void printFact( Tool &tool, const char *label, std::string_view text )
{
    tool::printFact( tool.out, label, text, 14 );
}

std::string normalForms( QV_STRING *text )
{
    std::string names;
    for ( QV_UNICODE_NORMAL_FORM form = 0; QV_UNICODE_NORMAL_FORM_OK( form ); form++ )
    {
        String normal( qvStringCreateFrom( text ) );
        qvStringNormalize( normal.edit(), form );
        String symbol( qvUnicodeNormalFormToString( form ) );
        std::string name = tool::shortName( "QV_UNICODE_NORMAL_FORM_", symbol );
        for ( char &letter : name )
            letter = static_cast<char>( letter - 32 );
        if ( qvStringEquals( normal, text ) )
            names += ( names.empty() ? "" : ", " ) + name;
    }
    return names.empty() ? "none" : names;
}

std::string newLineText( const Census &census )
{
    std::string text;
    for ( const NewLine &form : census.newLines )
    {
        if ( form.count )
            text += ( text.empty() ? "" : ", " ) + tool::grouped( form.count ) + " " + form.name;
    }
    return text.empty() ? "none" : text;
}

// Counts, the largest first.
template <typename Key, typename Name>
void printCounts( Tool &tool, const char *title, const std::map<Key, long long> &counts, Name name )
{
    std::vector<std::pair<Key, long long>> rows( counts.begin(), counts.end() );
    std::stable_sort( rows.begin(), rows.end(),
                      []( const auto &one, const auto &other ) { return one.second > other.second; } );
    for ( size_t row = 0; row < rows.size(); row++ )
        printFact( tool, row ? "" : title,
                   tool::aligned( tool::grouped( rows[row].second ), 12 ) + "  " + name( rows[row].first ) );
}

void printText( Tool &tool, const std::string &name, QV_BUFFER *bytes, const Guess &guess )
{
    tool::printTitle( tool.out, tool::shownName( name ) );
    printFact( tool, "charset",
               tool::textOf( String( qvCharsetToIanaName( guess.charset ) ) ) + "  (" + guess.reason + ")" );
    printFact( tool, "bytes", tool::grouped( qvBufferLength( bytes ) ) );
    String text( qvCharsetConvertBufferToString( guess.charset, bytes ) );
    // Sources of 16-bit units deliver the halves of pairs as they stand.
    qvStringSanitize( text.edit() );
    Census census = take( text, name );
    printFact( tool, "characters", tool::grouped( census.characters ) );
    printFact( tool, "lines", tool::grouped( census.lines ) );
    printFact( tool, "new-lines", newLineText( census ) );
    if ( census.longest )
        printFact( tool, "longest line",
                   tool::counted( census.longest, "character" ) + " in line " +
                       tool::grouped( census.longestLine ) );
    printFact( tool, "normal forms", normalForms( text ) );
    printCounts( tool, "scripts", census.scripts, []( QV_UNICODE_SCRIPT script ) {
        return tool::textOf( String( qvUnicodeScriptName( script ) ) );
    } );
    printCounts( tool, "categories", census.categories, []( QV_UNICODE_GENC category ) {
        return tool::textOf( String( qvUnicodeGencAbbreviation( category ) ) ) + "  " +
               tool::textOf( String( qvUnicodeGencDescription( category ) ) );
    } );
}

void runInfo( Tool &tool, const Arguments &arguments )
{
    QV_CHARSET given = -1;
    if ( std::optional<std::string> name = arguments.value( "from" ) )
    {
        given = qvCharsetFromIanaName( tool::stringOf( *name ) );
        if ( !QV_CHARSET_OK( given ) )
            return tool.usage( *name + ": no such charset; the list: qv text charsets" );
    }
    for ( size_t idx = 0; idx < arguments.operands.size(); idx++ )
    {
        std::string name = arguments.operand( idx );
        Owner bytes = tool::readFile( tool, name );
        if ( !bytes )
            continue;
        if ( idx > 0 )
            tool.out.write( "\n" );
        Guess guess = given >= 0 ? Guess{ given, "as given" } : guessCharset( bytes );
        printText( tool, name, bytes, guess );
        if ( Owner place = tool::locateInvalid( bytes, tool::locationOf( name ), guess.charset ); place )
            tool.error( place, "invalid byte sequence in " +
                                   tool::textOf( String( qvCharsetToIanaName( guess.charset ) ) ) );
    }
}

void runCharsets( Tool &tool, const Arguments & )
{
    const Style &style = tool::styleOf( STDOUT_FILENO );
    tool.out.write( style.bold + tool::padded( "CHARSET", 16 ) + tool::padded( "CODE PAGE", 11 ) + "NAME" +
                    style.off + "\n" );
    for ( QV_CHARSET charset = 0; QV_CHARSET_OK( charset ); charset++ )
    {
        QV_INT page = qvCharsetToWindowsCodePage( charset );
        std::string name = tool::textOf( String( qvCharsetToIanaName( charset ) ) );
        std::string pageText = page >= 0 ? std::to_string( page ) : "";
        tool.out.write( style.name + tool::padded( name, 16 ) + style.off + tool::aligned( pageText, 9 ) +
                        "  " + tool::textOf( String( qvCharsetToString( charset ) ) ) + "\n" );
    }
}

const tool::Option infoOptions[] = {
    { 'f', "from", "CHARSET", "Charset of the files; guessed if not given." },
};
const tool::Example infoExamples[] = {
    { "qv text info notes.txt", "what a text is made of" },
    { "qv text info --from koi8-r brief.txt", "read in a charset that can't be guessed" },
};
const tool::Example charsetsExamples[] = {
    { "qv text charsets", "the names that --from and --to take; aliases such as latin1 are taken too" },
};

} // namespace

namespace tool
{

const Command textInfo = {
    "text info",
    "FILE...",
    1,
    noLimit,
    "Tell what texts are made of: charset, lines, scripts, categories",
    "The charset is found by a byte order mark, or by what the bytes can be.",
    infoOptions,
    infoExamples,
    runInfo,
};

const Command textCharsets = {
    "text charsets", "", 0, 0, "List the charsets", nullptr, {}, charsetsExamples, runCharsets,
};

} // namespace tool
