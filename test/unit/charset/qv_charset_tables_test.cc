// Every byte charset both ways, against runs of bytes and characters that the tables weren't written from.

#include "support/test.hh"
#include "coding.hh"

#include <qv/charset/qv_charset_map.hh>

#include <array>
#include <fstream>
#include <sstream>

using namespace test;

namespace
{

constexpr char32_t unassigned = 0xFFFD;
using Table = std::array<char32_t, 256>;

std::vector<std::pair<std::string, Table>> readTables()
{
    std::vector<std::pair<std::string, Table>> tables;
    std::ifstream file( QV_TEST_DATA "/charset/tables.txt" );
    for ( std::string line; std::getline( file, line ); )
    {
        if ( line.starts_with( '#' ) )
            continue;
        std::istringstream words( line );
        std::string name;
        words >> name;
        Table table;
        table.fill( unassigned );
        for ( std::string run; words >> run; )
        {
            unsigned byte = 0, ch = 0, count = 0;
            EXPECT_EQ( std::sscanf( run.c_str(), "%X:%X+%X", &byte, &ch, &count ), 3 );
            for ( unsigned idx = 0; idx < count; idx++ )
                table.at( byte + idx ) = ch + idx;
        }
        tables.emplace_back( name, table );
    }
    return tables;
}

} // namespace

TEST( CharsetTables, MapFunctionsAreThePublishedTablesAndExactInverses )
{
    const auto tables = readTables();
    ASSERT_EQ( tables.size(), static_cast<size_t>( qv::byteMapCount ) );
    for ( size_t cs = 0; cs < tables.size(); cs++ )
    {
        SCOPED_TRACE( tables[cs].first );
        const Table &table = tables[cs].second;
        const qv::ByteMap &map = qv::byteMaps[cs];
        std::map<char32_t, unsigned> byteOf;
        for ( unsigned byte = 0; byte < 256; byte++ )
        {
            QV_CHAR ch = 0x12345;
            const bool assigned = map.byteToChar( static_cast<unsigned char>( byte ), &ch );
            ASSERT_EQ( assigned, table[byte] != unassigned ) << byte;
            if ( assigned )
                byteOf[table[byte]] = byte;
            ASSERT_EQ( ch, assigned ? table[byte] : 0x12345 ) << byte;
        }
        for ( QV_CHAR ch = 0; ch < 0x20000; ch++ )
        {
            unsigned char byte = 0xEE;
            const bool known = map.charToByte( ch, &byte );
            const auto found = byteOf.find( ch );
            ASSERT_EQ( known, found != byteOf.end() ) << ch;
            ASSERT_EQ( byte, known ? found->second : 0xEE ) << ch;
        }
        EXPECT_EQ( map.complete, std::count( table.begin(), table.end(), unassigned ) == 0 );
        unsigned char byte = 0;
        EXPECT_FALSE( map.charToByte( 0x10FFFF, &byte ) );
        EXPECT_FALSE( map.charToByte( 0x80000041, &byte ) );
    }
}

// All bytes in one text, long enough for block steps, through streams and whole, by each treatment of invalid ones.
TEST( CharsetTables, AllBytesDecode )
{
    const auto tables = readTables();
    std::string bytes;
    for ( int idx = 0; idx < 5 * 256; idx++ )
        bytes += static_cast<char>( idx * 7 );
    for ( size_t cs = 0; cs < tables.size(); cs++ )
    {
        SCOPED_TRACE( tables[cs].first );
        Decoded replaced, ignored, aborted;
        for ( const char byte : bytes )
        {
            const char32_t ch = tables[cs].second[static_cast<unsigned char>( byte )];
            replaced.chars += ch;
            if ( ch != unassigned )
                ignored.chars += ch;
            aborted.error |= ch == unassigned;
            if ( !aborted.error )
                aborted.chars += ch;
        }
        const Decoded *const expected[] = { &replaced, &aborted, &ignored };
        for ( QV_CHARSET_FLAGS flags = 0; flags < 3; flags++ )
        {
            const QV_CHARSET charset = static_cast<QV_CHARSET>( cs );
            for ( const QV_INT step : { 1, 17, 1000, 5000 } )
                EXPECT_EQ( decodeStream( charset, flags, bytes, step ), *expected[flags] );
            Decoded whole = *expected[flags];
            if ( whole.error )
                whole.chars.clear();
            EXPECT_EQ( decodeWhole( charset, flags, bytes ), whole );
        }
    }
}

TEST( CharsetTables, AllCharactersEncodeAsTheyDecode )
{
    const auto tables = readTables();
    for ( size_t cs = 0; cs < tables.size(); cs++ )
    {
        SCOPED_TRACE( tables[cs].first );
        std::u32string chars;
        std::string bytes;
        for ( unsigned byte = 0; byte < 256; byte++ )
        {
            const char32_t ch = tables[cs].second[byte];
            // Composition replaces this one by a character that the charset lacks, and joins marks with what is before
            // them, so that a blank stands between.
            if ( ch == unassigned || ch == 0x387 )
                continue;
            QV_CHAR blank = ' ';
            unsigned char blankByte = 0;
            qv::byteMaps[cs].charToByte( blank, &blankByte );
            chars += { U' ', ch };
            bytes += { static_cast<char>( blankByte ), static_cast<char>( byte ) };
        }
        const QV_CHARSET charset = static_cast<QV_CHARSET>( cs );
        const QV_CHARSET_FLAGS abort = QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER;
        EXPECT_EQ( encodeWhole( charset, abort, chars ), ( Encoded{ bytes, false } ) );
        for ( const size_t step : { 1, 5, 50, 1000 } )
            EXPECT_EQ( encodeStream( charset, abort, chars, step ), ( Encoded{ bytes, false } ) );
    }
}
