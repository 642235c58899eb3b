#include "support/test.hh"
#include "coding.hh"

#include <qv/charset/qv_charset_table.hh>

using namespace test;

TEST( CharsetRegistry, NamesCodePagesAndAliasesLeadBack )
{
    std::set<std::string> constants;
    for ( const qv::CharsetRow &row : qv::charsetRows )
    {
        SCOPED_TRACE( row.enumerantName );
        constants.insert( row.enumerantName );
        EXPECT_EQ( takeUtf8( qvCharsetToString( row.cs ) ), row.enumerantName );
        EXPECT_EQ( takeUtf8( qvCharsetToIanaName( row.cs ) ), row.ianaName );
        EXPECT_EQ( qvCharsetFromIanaName( text( row.ianaName ) ), row.cs );
        EXPECT_EQ( qvCharsetToWindowsCodePage( row.cs ), row.codePage );
        if ( row.codePage >= 0 )
        {
            EXPECT_EQ( qvCharsetFromWindowsCodePage( row.codePage ), row.cs );
        }
        std::string aliases = row.aliases;
        while ( !aliases.empty() )
        {
            const size_t end = std::min( aliases.find( ' ' ), aliases.size() );
            EXPECT_EQ( qvCharsetFromIanaName( text( aliases.substr( 0, end ) ) ), row.cs ) << aliases;
            aliases.erase( 0, end + 1 );
        }
    }
    EXPECT_EQ( constants.size(), 51u );
}

TEST( CharsetRegistry, NamesAreFoundInAnyCase )
{
    const std::pair<const char *, QV_CHARSET> cases[] = {
        { "utf-8", QV_CHARSET_UTF_8 },
        { "UTF-8", QV_CHARSET_UTF_8 },
        { "Utf-8", QV_CHARSET_UTF_8 },
        { "CP65001", QV_CHARSET_UTF_8 },
        { "65001", QV_CHARSET_UTF_8 },
        { "ASCII", QV_CHARSET_ASCII },
        { "LATIN1", QV_CHARSET_ISO_8859_1 },
        { "iso-8859-14", QV_CHARSET_ISO_8859_14 },
        { "koi8-R", QV_CHARSET_KOI_8R },
        { "iso-10646-ucs-2", QV_CHARSET_UTF_16_BE },
        { "037", QV_CHARSET_MSFT_CP037 },
        { "37", -1 },
        { "utf8", -1 },
        { " utf-8", -1 },
        { "", -1 },
        { "iso-8859-12", -1 },
    };
    for ( auto [name, cs] : cases )
        EXPECT_EQ( qvCharsetFromIanaName( text( name ) ), cs ) << name;
}

TEST( CharsetRegistry, UnknownIsNoCharset )
{
    EXPECT_EQ( qvCharsetFromWindowsCodePage( 1201 ), QV_CHARSET_UTF_16_BE );
    EXPECT_EQ( qvCharsetFromWindowsCodePage( 0 ), -1 );
    EXPECT_EQ( qvCharsetFromWindowsCodePage( 1259 ), -1 );
    EXPECT_EQ( qvCharsetToWindowsCodePage( QV_CHARSET_UTF_32 ), -1 );
    EXPECT_EQ( qvCharsetToWindowsCodePage( QV_CHARSET_ISO_8859_10 ), -1 );
}

TEST( CharsetRegistryDeathTest, FaultsOfTheCaller )
{
    EXPECT_DEATH( qvCharsetToIanaName( -1 ), "QV_CHARSET_OK" );
    EXPECT_DEATH( qvCharsetToWindowsCodePage( 51 ), "QV_CHARSET_OK" );
    EXPECT_DEATH( qvCharsetFromWindowsCodePage( -1 ), "cp >= 0" );
}

TEST( CharsetFlags, NormalizeParseAndPrint )
{
    const QV_CHARSET_FLAGS normal[] = { 0, 1, 2, 2, 4, 5, 6, 6, 8, 9, 10, 10, 12, 13, 14, 14 };
    for ( QV_CHARSET_FLAGS flags = 0; flags < 16; flags++ )
        EXPECT_EQ( qvCharsetFlagsNormalize( flags ), normal[flags] );
    // A part that only begins with a number adds its bits as read; none of them may outlive the normalization.
    EXPECT_EQ( qvCharsetFlagsFromString( text( "4099x" ) ), 2 );
}
