// Reads the facts and builds the textbook forms from them.

#include "support/test.hh"
#include "unicode/facts.hh"

#include <fstream>
#include <sstream>

namespace test
{

namespace
{

bool isTrail( char32_t ch )
{
    return ch >= 0x11A8 && ch <= 0x11C2;
}

std::u32string readChars( std::istream &in )
{
    std::u32string chars;
    for ( uint32_t code; in >> code; )
        chars += static_cast<char32_t>( code );
    return chars;
}

void readFact( Facts &known, const std::string &section, std::istream &in )
{
    uint32_t first = 0;
    uint32_t last = 0;
    in >> std::hex >> first;
    if ( section == "upper" || section == "lower" || section == "fold" )
    {
        auto &target = section == "upper" ? known.upper : section == "lower" ? known.lower : known.fold;
        target[first] = readChars( in );
        return;
    }
    if ( section == "map" )
    {
        Mapping &mapping = known.maps[first];
        in >> mapping.type;
        mapping.chars = readChars( in );
        return;
    }
    if ( section == "exclusion" )
    {
        known.exclusions.insert( first );
        return;
    }
    std::string value;
    in >> last >> value;
    for ( uint32_t code = first; code <= last; code++ )
    {
        if ( section == "category" )
            known.category[code] = value;
        else if ( section == "class" )
            known.combiningClass[code] = static_cast<unsigned>( std::stoul( value ) );
        else if ( section == "script" )
            known.script[code] = value;
        else if ( section == "decimal" )
            known.decimal[code] = static_cast<int>( ( code - first ) % 10 );
        else if ( section == "white" )
            known.white[code] = true;
        else
            std::abort();
    }
}

// A canonical pair is a primary composite unless it is listed, or is or begins with a mark.
void findComposites( Facts &known )
{
    for ( const auto &[code, mapping] : known.maps )
    {
        bool isPair = mapping.type == "canonical" && mapping.chars.size() == 2;
        if ( isPair && !known.exclusions.count( code ) && known.combiningClass[code] == 0 &&
             known.combiningClass[mapping.chars[0]] == 0 )
            known.composites[{ mapping.chars[0], mapping.chars[1] }] = code;
    }
}

Facts readFacts()
{
    Facts known;
    known.category.assign( codeEnd, "Cn" );
    known.combiningClass.assign( codeEnd, 0 );
    known.script.assign( codeEnd, "Unknown" );
    known.decimal.assign( codeEnd, -1 );
    known.white.assign( codeEnd, false );
    std::ifstream file( QV_TEST_DATA "/unicode/facts.txt" );
    std::string section;
    for ( std::string line; std::getline( file, line ); )
    {
        std::istringstream in( line );
        if ( line[0] == '[' )
            section = line.substr( 1, line.size() - 2 );
        else if ( line[0] != '#' )
            readFact( known, section, in );
    }
    findComposites( known );
    return known;
}

} // namespace

const Facts &facts()
{
    static const Facts known = readFacts();
    return known;
}

std::u32string Facts::decompose( char32_t ch, bool compat ) const
{
    if ( ch >= 0xAC00 && ch < 0xAC00 + 11172 )
    {
        char32_t index = ch - 0xAC00;
        std::u32string parts = { 0x1100 + index / 588, 0x1161 + index % 588 / 28 };
        if ( index % 28 )
            parts += 0x11A7 + index % 28;
        return parts;
    }
    auto found = maps.find( ch );
    if ( found == maps.end() || ( !compat && found->second.type != "canonical" ) )
        return std::u32string( 1, ch );
    std::u32string parts;
    for ( char32_t part : found->second.chars )
        parts += decompose( part, compat );
    return parts;
}

char32_t Facts::join( char32_t first, char32_t second ) const
{
    if ( first >= 0x1100 && first <= 0x1112 && second >= 0x1161 && second <= 0x1175 )
        return 0xAC00 + ( ( first - 0x1100 ) * 21 + second - 0x1161 ) * 28;
    if ( first >= 0xAC00 && first <= 0xD7A3 && ( first - 0xAC00 ) % 28 == 0 && isTrail( second ) )
        return first + second - 0x11A7;
    auto found = composites.find( { first, second } );
    return found == composites.end() ? 0 : found->second;
}

// Forms as the library numbers them: C, KC, D, KD. The text holds no surrogates.
std::u32string Facts::normalize( std::u32string_view text, int form ) const
{
    std::u32string parts;
    for ( char32_t ch : text )
        parts += decompose( ch, form % 2 == 1 );
    auto isStarter = [this]( char32_t ch ) { return combiningClass[ch] == 0; };
    for ( auto begin = parts.begin(); begin != parts.end(); )
    {
        auto end = std::find_if( begin, parts.end(), isStarter );
        std::stable_sort( begin, end, [this]( char32_t chA, char32_t chB ) {
            return combiningClass[chA] < combiningClass[chB];
        } );
        begin = end == parts.end() ? end : end + 1;
    }
    if ( form >= 2 )
        return parts;
    std::u32string result;
    size_t starter = std::u32string::npos;
    for ( char32_t ch : parts )
    {
        bool isNext = starter + 1 == result.size();
        bool isBlocked = starter == std::u32string::npos ||
                         ( !isNext && combiningClass[result.back()] >= combiningClass[ch] );
        char32_t joined = isBlocked ? 0 : join( result[starter], ch );
        if ( joined )
        {
            result[starter] = joined;
            continue;
        }
        if ( isStarter( ch ) )
            starter = result.size();
        result += ch;
    }
    return result;
}

} // namespace test
