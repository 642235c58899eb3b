// Paths: texts both ways, edits, order, and random paths and texts.

#include "support/test.hh"
#include "support/folder.hh"

#include <qv/io/qv_path.hh>

#include <filesystem>

using namespace test;

namespace
{

using Owned = Local<QV_PATH>;

constexpr QV_PATH_FLAGS dir = QV_PATH_FLAG_DIRECTORY;
constexpr QV_PATH_FLAGS cwd = QV_PATH_FLAG_CWD;
constexpr QV_PATH_FLAGS root = QV_PATH_FLAG_FSROOT;
constexpr QV_PATH_FLAGS volume = QV_PATH_FLAG_WINDOWS_VOLUME;
constexpr QV_PATH_FLAGS unc = QV_PATH_FLAG_WINDOWS_UNC;

std::string textOrNone( QV_STRING *given )
{
    return given ? takeUtf8( given ) : "none";
}

// All fields in one line, for example "5 up0 c: \\server a|b".
std::string fieldsOf( QV_PATH *path )
{
    if ( !path )
        return "none";
    std::string fields = std::to_string( qvPathFlags( path ) ) + " up" + std::to_string( qvPathUp( path ) );
    if ( qvPathHasWindowsVolumeDesignator( path ) )
        fields += std::string( " " ) + static_cast<char>( qvPathWindowsVolumeDesignator( path ) ) + ":";
    if ( qvPathHasWindowsUncServer( path ) )
        fields += " \\\\" + takeUtf8( qvPathWindowsUncServer( path ) );
    for ( QV_INT idx = 0; idx < qvPathComponentsLength( path ); idx++ )
        fields += ( idx == 0 ? " " : "|" ) + takeUtf8( qvPathComponentAt( path, idx ) );
    return fields;
}

Owned emptyWithFlags( QV_PATH_FLAGS flags )
{
    Owned path( qvPathCreate() );
    qvPathSetFlags( path.edit(), flags );
    return path;
}

using Random = std::mt19937;

size_t below( Random *random, size_t limit )
{
    return ( *random )() % limit;
}

std::string pick( Random *random, const std::vector<std::string> &from )
{
    return from[below( random, from.size() )];
}

// A random path that is valid in both forms, with at least one component, so that its texts say all there is.
Owned randomPath( Random *random )
{
    const std::vector<std::string> names = {
        "a", "b", "...", ".x", "ä ö", "x.tar.gz", "\x01", "\xF0\x9F\x98\x80", "-" };
    Owned path( qvPathCreate() );
    for ( size_t count = 1 + below( random, 6 ); count > 0; count-- )
    {
        std::string name = pick( random, names );
        if ( below( random, 2 ) )
            qvPathAppendComponentDirectoryCstr( path.edit(), name.c_str(), -1 );
        else
            qvPathAppendComponentFilename( path.edit(), text( name ) );
    }
    QV_PATH_FLAGS flags =
        qvPathFlags( path ) | static_cast<QV_PATH_FLAGS>( below( random, 8 ) & ( cwd | root ) );
    qvPathSetFlags( path.edit(), flags );
    if ( !( qvPathFlags( path ) & root ) )
        qvPathSetUp( path.edit(), static_cast<QV_INT>( below( random, 3 ) ) );
    return path;
}

// Gives a random path a volume or a server.
void addWindowsParts( Random *random, QV_PATH **path )
{
    if ( below( random, 2 ) )
    {
        qvPathSetWindowsVolumeDesignator( path, "CzQa"[below( random, 4 )] );
        qvPathSetFlags( path, qvPathFlags( *path ) | volume );
    }
    else if ( below( random, 2 ) )
    {
        qvPathSetWindowsUncServer( path, text( "server" ) );
        qvPathSetFlags( path, qvPathFlags( *path ) | unc );
        qvPathSetUp( path, 0 );
    }
}

} // namespace

TEST( Path, UnixTextsBothWays )
{
    const char *const cases[][3] = {
        { "", "0 up0", "" },
        { "/", "5 up0", "/" },
        { "//", "5 up0", "/" },
        { ".", "3 up0", "./" },
        { "./", "3 up0", "./" },
        { "..", "1 up1", "../" },
        { "../..", "1 up2", "../../" },
        { "a", "0 up0 a", "a" },
        { "a/b", "0 up0 a|b", "a/b" },
        { "a/b/", "1 up0 a|b", "a/b/" },
        { "a//b", "0 up0 a|b", "a/b" },
        { "a/./b/.", "1 up0 a|b", "a/b/" },
        { "./a", "2 up0 a", "./a" },
        { "./../a", "2 up1 a", "./../a" },
        { "a/../b", "0 up0 b", "b" },
        { "a/..", "1 up0", "./" },
        { "a/../..", "1 up1", "../" },
        { "../../a", "0 up2 a", "../../a" },
        { "/a", "4 up0 a", "/a" },
        { "///a///", "5 up0 a", "/a/" },
        { "/./a", "4 up0 a", "/a" },
        { "/a/..", "5 up0", "/" },
        { "...", "0 up0 ...", "..." },
        { "a\\b", "0 up0 a\\b", "a\\b" },
        { "C:\\x", "0 up0 C:\\x", "C:\\x" },
        { "\xC3\xA4/\xF0\x9F\x98\x80", "0 up0 \xC3\xA4|\xF0\x9F\x98\x80", "\xC3\xA4/\xF0\x9F\x98\x80" },
    };
    for ( auto &[from, fields, encoded] : cases )
    {
        Owned path( qvPathUnixTryDecode( text( from ) ) );
        ASSERT_EQ( fields, fieldsOf( path ) ) << from;
        EXPECT_EQ( encoded, textOrNone( qvPathUnixTryEncode( path ) ) ) << from;
        EXPECT_EQ( encoded, textOrNone( qvPathPlatformTryEncode( path ) ) ) << from;
    }
    for ( std::u32string_view bad : { std::u32string_view( U"a\0b", 3 ), { U"/.." }, { U"/a/../.." } } )
        EXPECT_EQ( nullptr, qvPathUnixTryDecode( text( bad ) ) );
}

TEST( Path, WindowsTextsBothWays )
{
    const char *const cases[][3] = {
        { "", "0 up0", "" },
        { "\\", "5 up0", "\\" },
        { "/", "5 up0", "\\" },
        { ".", "3 up0", ".\\" },
        { "a\\b/c", "0 up0 a|b|c", "a\\b\\c" },
        { "..\\a\\", "1 up1 a", "..\\a\\" },
        { "C:", "8 up0 C:", "C:" },
        { "C:\\", "13 up0 C:", "C:\\" },
        { "C:x", "8 up0 C: x", "C:x" },
        { "C:\\x", "12 up0 C: x", "C:\\x" },
        { "c:/x/", "13 up0 c: x", "c:\\x\\" },
        { "C:.", "11 up0 C:", "C:.\\" },
        { "C:..\\x", "8 up1 C: x", "C:..\\x" },
        { "C:\\\\x", "12 up0 C: x", "C:\\x" },
        { "\\\\server\\share\\f", "16 up0 \\\\server share|f", "\\\\server\\share\\f" },
        { "//server", "16 up0 \\\\server", "\\\\server" },
        { "//server/", "17 up0 \\\\server", "\\\\server\\" },
        { "\\\\server\\.\\a", "16 up0 \\\\server a", "\\\\server\\a" },
        { "\\/a", "4 up0 a", "\\a" },
        { "a\x01", "0 up0 a\x01", "a\x01" },
    };
    for ( auto &[from, fields, encoded] : cases )
    {
        Owned path( qvPathWindowsTryDecode( text( from ) ) );
        ASSERT_EQ( fields, fieldsOf( path ) ) << from;
        EXPECT_EQ( encoded, textOrNone( qvPathWindowsTryEncode( path ) ) ) << from;
    }
    for ( const char *bad : { "C:\\..", "1:\\", "C:D:", "a\\C:", "\\\\server\\..", "\\\\", "\\\\\\a",
                              "\\\\..\\a", "\\\\C:\\a", "a*", "<", "a\"b", "a|b", "a?" } )
        EXPECT_EQ( nullptr, qvPathWindowsTryDecode( text( bad ) ) ) << bad;
}

TEST( Path, EitherText )
{
    EXPECT_EQ( "0 up0 a|b", fieldsOf( Owned( qvPathTryDecodeCstr( "a\\b", -1 ) ) ) );
    EXPECT_EQ( "0 up0 1:\\", fieldsOf( Owned( qvPathTryDecodeCstr( "1:\\rest", 3 ) ) ) );
    EXPECT_EQ( "12 up0 C: x", fieldsOf( Owned( qvPathTryDecodeWcstr( L"C:\\x", -1 ) ) ) );
    EXPECT_EQ( "4 up0 a*", fieldsOf( Owned( qvPathTryDecode( text( "/a*" ) ) ) ) );
    EXPECT_EQ( nullptr, qvPathTryDecodeCstr( "/..", -1 ) );

    Owned path( qvPathTryDecodeCstr( "C:\\x", -1 ) );
    EXPECT_FALSE( qvPathUnixIsValid( path ) );
    EXPECT_FALSE( qvPathPlatformIsValid( path ) );
    EXPECT_TRUE( qvPathIsValid( path ) );
    EXPECT_EQ( nullptr, qvPathUnixTryEncode( path ) );
    EXPECT_EQ( "C:\\x", textOrNone( qvPathTryEncode( path ) ) );
    qvPathDelWindowsVolumeDesignator( path.edit() );
    EXPECT_FALSE( qvPathIsValid( path ) );
    EXPECT_EQ( nullptr, qvPathTryEncode( path ) );
    EXPECT_EQ( "[:\\x]", takeUtf8( qvPathToString( path ) ) );
}

TEST( Path, PathsWithoutText )
{
    EXPECT_EQ( "./", textOrNone( qvPathUnixTryEncode( emptyWithFlags( dir ) ) ) );
    EXPECT_EQ( "/", textOrNone( qvPathUnixTryEncode( emptyWithFlags( root ) ) ) );
    EXPECT_EQ( "none", textOrNone( qvPathWindowsTryEncode( emptyWithFlags( unc ) ) ) );
    EXPECT_EQ( "none", textOrNone( qvPathWindowsTryEncode( emptyWithFlags( volume ) ) ) );
    Owned path = emptyWithFlags( root );
    qvPathSetUp( path.edit(), 1 );
    EXPECT_FALSE( qvPathIsValid( path ) );
    for ( const char *bad : { "", ".", "..", "a/b" } )
    {
        Owned odd( qvPathCreate() );
        qvPathAppendComponentFilenameCstr( odd.edit(), bad, -1 );
        EXPECT_FALSE( qvPathIsValid( odd ) ) << bad;
        EXPECT_EQ( std::string( "[" ) + bad + "]", takeUtf8( qvPathToString( odd ) ) );
    }
    Owned server = emptyWithFlags( unc | dir );
    qvPathSetWindowsUncServer( server.edit(), text( ".." ) );
    EXPECT_FALSE( qvPathWindowsIsValid( server ) );
    EXPECT_EQ( "[\\\\..\\]", takeUtf8( qvPathToString( server ) ) );
    EXPECT_EQ( "[]", takeUtf8( qvPathToString( Owned( qvPathCreate() ) ) ) );
}

TEST( Path, Flags )
{
    for ( QV_PATH_FLAGS flags = 0; flags < 64; flags++ )
    {
        QV_PATH_FLAGS expected = flags & 31;
        if ( flags & unc )
            expected &= unc | dir;
        else if ( flags & root )
            expected &= ~cwd;
        EXPECT_EQ( expected, qvPathFlagsNormalize( flags ) );
        EXPECT_EQ( expected, qvPathFlags( emptyWithFlags( flags ) ) );
    }
}

TEST( Path, AppendAndPrepend )
{
    const struct
    {
        const char *path, *append, *expected;
    } cases[] = {
        { "/a", "b", "/a/b" },  { "/a/", "b", "/a/b" }, { "a", "b/", "a/b/" },
        { "", "", "" },         { "a/", "", "a/" },     { "..", "b", "../b" },
        { "/", "b/c", "/b/c" }, { "./", "b", "./b" },   { "a", "b/..", "a/" },
    };
    for ( const auto &c : cases )
    {
        Owned path = pathOf( c.path );
        Owned append = pathOf( c.append );
        ASSERT_TRUE( qvPathCanAppend( append ) ) << c.append;
        auto witness = Owned::share( path );
        qvPathAppend( path.edit(), append );
        EXPECT_EQ( c.expected, textOf( path ) );
        Owned before = pathOf( c.path );
        EXPECT_TRUE( qvPathEquals( before, witness ) );
        qvPathPrepend( append.edit(), witness );
        EXPECT_TRUE( qvPathEquals( path, append ) );
    }
    Owned self = pathOf( "a/b" );
    qvPathAppend( self.edit(), self );
    EXPECT_EQ( "a/b/a/b", textOf( self ) );
    qvPathPrepend( self.edit(), self );
    EXPECT_EQ( "a/b/a/b/a/b/a/b", textOf( self ) );
    for ( const char *bad : { "/a", "./a", "../a", "." } )
        EXPECT_FALSE( qvPathCanAppend( pathOf( bad ) ) ) << bad;
    EXPECT_DEATH( qvPathAppend( self.edit(), pathOf( "/a" ) ), "qvPathCanAppend" );
    EXPECT_DEATH( qvPathPrepend( pathOf( "../a" ).edit(), self ), "qvPathCanAppend" );
}

TEST( Path, ComponentEdits )
{
    Owned path = pathOf( "/b/d/" );
    auto witness = Owned::share( path );
    qvPathInsertComponent( path.edit(), 1, text( "c" ) );
    qvPathPrependComponent( path.edit(), text( "a" ) );
    qvPathInsertComponent( path.edit(), 4, text( "e" ) );
    EXPECT_EQ( "/a/b/c/d/e/", textOf( path ) );
    qvPathSetComponentAt( path.edit(), 2, text( "C" ) );
    qvPathDelComponentAt( path.edit(), 0 );
    EXPECT_EQ( "/b/C/d/e/", textOf( path ) );
    qvPathAppendComponentFilenameWcstr( path.edit(), L"f.txt", 1 );
    EXPECT_EQ( "/b/C/d/e/f", textOf( path ) );
    qvPathAppendComponentDirectoryWcstr( path.edit(), L"g", -1 );
    EXPECT_EQ( "/b/C/d/e/f/g/", textOf( path ) );
    Local<QV_VECTOR> components( qvPathComponentsVector( witness ) );
    qvPathSetComponentsVector( path.edit(), components );
    EXPECT_TRUE( qvPathEquals( path, witness ) );
    EXPECT_EQ( "/b/d/", textOf( witness ) );
    qvVectorAppendInt( components.edit(), 1 );
    EXPECT_DEATH( qvPathSetComponentsVector( path.edit(), components ), "qvVectorContainsOnly" );
    EXPECT_DEATH( qvPathSetUp( path.edit(), -1 ), "up >= 0" );
    EXPECT_DEATH( qvPathSetWindowsVolumeDesignator( path.edit(), '1' ), "DesignatorOk" );
    EXPECT_DEATH( qvPathDelComponentAt( path.edit(), 2 ), "" );
}

TEST( Path, Order )
{
    // In ascending order: up, components, flags; the Windows parts weigh most.
    std::vector<Owned> ascending;
    for ( const char *unixText : { "", "./", "/", "a", "a/", "/a", "a/b", "b", "..", "../a", "../.." } )
        ascending.push_back( pathOf( unixText ) );
    for ( const char *windowsText : { "C:", "C:\\a", "D:", "\\\\s", "\\\\s\\a", "\\\\t" } )
        ascending.push_back( Owned( qvPathWindowsTryDecode( text( windowsText ) ) ) );
    expectAscending( ascending, qvPathCompare );
}

TEST( Path, RandomPathsComeBackFromTheirTexts )
{
    Random random( 6401 );
    for ( int round = 0; round < 20000; round++ )
    {
        Owned path = randomPath( &random );
        Local<QV_STRING> unixText( qvPathUnixTryEncode( path ) );
        ASSERT_TRUE( unixText ) << fieldsOf( path );
        ASSERT_EQ( fieldsOf( path ), fieldsOf( Owned( qvPathUnixTryDecode( unixText ) ) ) )
            << toUtf8( unixText );
        addWindowsParts( &random, path.edit() );
        Local<QV_STRING> windowsText( qvPathWindowsTryEncode( path ) );
        ASSERT_TRUE( windowsText ) << fieldsOf( path );
        ASSERT_EQ( fieldsOf( path ), fieldsOf( Owned( qvPathWindowsTryDecode( windowsText ) ) ) )
            << toUtf8( windowsText );
    }
}

TEST( Path, RandomTextsAgreeWithTheNormalFormsOfThePlatform )
{
    Random random( 6402 );
    const std::vector<std::string> tokens = { "/", "/", ".", "..", "a", "b/", "../", "./" };
    for ( int round = 0; round < 50000; round++ )
    {
        std::string from;
        for ( size_t count = below( &random, 9 ); count > 0; count-- )
            from += pick( &random, tokens );
        std::vector<std::string> expected;
        QV_INT expectedUp = 0;
        for ( const auto &part : std::filesystem::path( from ).lexically_normal().relative_path() )
        {
            if ( part == ".." )
                expectedUp++;
            else if ( part != "." && part != "" )
                expected.push_back( part );
        }

        Owned path = pathOf( from );
        if ( !path )
        {
            // Only a path above the root is none.
            ASSERT_EQ( '/', from[0] );
            ASSERT_NE( std::string::npos, from.find( ".." ) );
            continue;
        }
        ASSERT_EQ( expectedUp, qvPathUp( path ) ) << from;
        ASSERT_EQ( lengthOf( expected ), qvPathComponentsLength( path ) ) << from;
        for ( size_t idx = 0; idx < expected.size(); idx++ )
            ASSERT_EQ( expected[idx], takeUtf8( qvPathComponentAt( path, static_cast<QV_INT>( idx ) ) ) )
                << from;
        // An encoded text doesn't change any more.
        std::string once = textOf( path );
        ASSERT_EQ( once, textOf( pathOf( once ) ) ) << from;
    }
}
