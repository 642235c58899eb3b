// Directories: making, listing and deleting them in a temporary folder.

#include "support/test.hh"
#include "support/folder.hh"

#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using namespace test;

namespace
{

using Names = std::vector<std::string>;

constexpr QV_INT recursive = QV_PATH_DIRECTORY_LIST_FLAG_RECURSIVE;
constexpr QV_INT relative = QV_PATH_DIRECTORY_LIST_FLAG_RELATIVE;
constexpr QV_INT noFiles = QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_FILES;
constexpr QV_INT noDirectories = QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_DIRECTORIES;
constexpr QV_INT sorted = QV_PATH_DIRECTORY_LIST_FLAG_SORT;

Names namesOf( QV_VECTOR *paths )
{
    Names names;
    for ( QV_INT idx = 0; idx < qvVectorLength( paths ); idx++ )
    {
        Local<QV_PATH> path( qvPathFrom( qvVectorObjAt( paths, idx ) ) );
        names.push_back( textOf( path ) );
    }
    return names;
}

// What a listing gives, or just "none".
Names listed( QV_PATH *path, QV_INT flags )
{
    Local<QV_VECTOR> paths( qvPathDirectoryList( path, flags ) );
    return paths ? namesOf( paths ) : Names{ "none" };
}

void fillExample( const TemporaryFolder &folder )
{
    folder.makeFolder( "a/inner/deep" );
    folder.makeFolder( "b" );
    folder.write( "a/inner/deep/x", "" );
    folder.write( "a/y", "" );
    folder.write( "z", "" );
    ASSERT_EQ( 0, symlink( "a", folder.name( "link" ).c_str() ) );
}

} // namespace

TEST( Directory, ListsWhatTheFlagsAskFor )
{
    TemporaryFolder folder;
    EXPECT_EQ( Names{}, listed( folder.path(), relative ) );
    fillExample( folder );
    const struct
    {
        QV_INT flags;
        Names expected;
    } cases[] = {
        { 0, { "a/", "b/", "link", "z" } },
        { noFiles, { "a/", "b/" } },
        { noDirectories, { "link", "z" } },
        { noFiles | noDirectories, {} },
        { recursive, { "a/", "a/inner/", "a/inner/deep/", "a/inner/deep/x", "a/y", "b/", "link", "z" } },
        { recursive | noDirectories, { "a/inner/deep/x", "a/y", "link", "z" } },
        { recursive | noFiles, { "a/", "a/inner/", "a/inner/deep/", "b/" } },
        { recursive | noFiles | noDirectories, {} },
    };
    for ( const auto &c : cases )
    {
        EXPECT_EQ( c.expected, listed( folder.path(), c.flags | relative | sorted ) ) << c.flags;
        Names absolute;
        for ( const std::string &name : c.expected )
            absolute.push_back( folder.name( name ) );
        EXPECT_EQ( absolute, listed( folder.path(), c.flags | sorted ) ) << c.flags;
        // Unknown flags and the missing directory flag of the path change nothing.
        std::string bare = folder.name();
        bare.pop_back();
        EXPECT_EQ( absolute, listed( pathOf( bare ), c.flags | sorted | 4096 ) ) << c.flags;
    }
    EXPECT_EQ( Names{ "none" }, listed( folder.path( "missing" ), 0 ) );
    EXPECT_EQ( Names{ "none" }, listed( folder.path( "z" ), 0 ) );
    EXPECT_EQ( Names{ "none" }, listed( pathOf( "" ), 0 ) );
    // The symbolic link itself can be listed when it is asked for.
    EXPECT_EQ( ( Names{ "inner/", "y" } ), listed( folder.path( "link" ), relative | sorted ) );
}

TEST( Directory, UnsortedListingsGoDepthFirst )
{
    TemporaryFolder folder;
    fillExample( folder );
    Names names = listed( folder.path(), relative | recursive );
    auto positionOf = [&]( const char *name ) {
        return std::find( names.begin(), names.end(), name ) - names.begin();
    };
    auto top = positionOf( "a/" );
    // The directory, then its five-fold contents without a stranger in between.
    std::vector<std::string> inside( names.begin() + top + 1, names.begin() + top + 5 );
    for ( const std::string &name : inside )
        EXPECT_EQ( 0u, name.find( "a/" ) ) << name;
    EXPECT_EQ( positionOf( "a/inner/" ) + 1, positionOf( "a/inner/deep/" ) );
    EXPECT_EQ( positionOf( "a/inner/deep/" ) + 1, positionOf( "a/inner/deep/x" ) );
    EXPECT_EQ( 8u, names.size() );
}

TEST( Directory, SubDirectoriesThatCantBeListedArePassedOver )
{
    // So deep that the names of the lower directories are too long for the system.
    TemporaryFolder folder;
    const std::string name( 200, 'd' );
    int parent = open( folder.name().c_str(), O_RDONLY | O_DIRECTORY );
    for ( int depth = 0; depth < 30; depth++ )
    {
        ASSERT_EQ( 0, mkdirat( parent, name.c_str(), 0700 ) );
        int child = openat( parent, name.c_str(), O_RDONLY | O_DIRECTORY );
        close( parent );
        parent = child;
    }
    close( parent );

    Names names = listed( folder.path(), recursive );
    ASSERT_FALSE( names.empty() );
    EXPECT_LT( names.size(), 30u );
    EXPECT_GE( names.back().size(), static_cast<size_t>( PATH_MAX ) );
    EXPECT_FALSE( qvPathDirectoryDeleteRecursively( folder.path() ) );
    EXPECT_EQ( names, listed( folder.path(), recursive ) );
}

TEST( Directory, RandomTreesAgreeWithThePlatform )
{
    std::mt19937 random( 6501 );
    for ( int round = 0; round < 20; round++ )
    {
        TemporaryFolder folder;
        Names folders = { "" };
        for ( int count = 0; count < 40; count++ )
        {
            std::string name = folders[random() % folders.size()] + std::to_string( count );
            if ( random() % 3 == 0 )
            {
                folder.makeFolder( name );
                folders.push_back( name + "/" );
            }
            else
                folder.write( name, "x" );
        }
        Names expected;
        for ( const auto &entry : std::filesystem::recursive_directory_iterator( folder.name() ) )
            expected.push_back( entry.path().string() + ( entry.is_directory() ? "/" : "" ) );
        Names unsorted = listed( folder.path(), recursive );
        Names ordered = listed( folder.path(), recursive | sorted );
        std::sort( expected.begin(), expected.end() );
        // In the order of paths, a directory stands before what is in it.
        for ( size_t idx = 0; idx < ordered.size(); idx++ )
        {
            std::string parent = std::filesystem::path( ordered[idx] + "." ).parent_path();
            parent = std::filesystem::path( parent ).parent_path().string() + "/";
            auto at = std::find( ordered.begin(), ordered.end(), parent );
            ASSERT_TRUE( at == ordered.end() || at < ordered.begin() + static_cast<long>( idx ) );
        }
        std::sort( unsorted.begin(), unsorted.end() );
        std::sort( ordered.begin(), ordered.end() );
        ASSERT_EQ( expected, unsorted );
        ASSERT_EQ( expected, ordered );

        ASSERT_TRUE( qvPathDirectoryDeleteRecursively( folder.path() ) );
        ASSERT_FALSE( folder.has( "" ) );
    }
}

TEST( Directory, DeletingATreeSparesWhatLinksLeadTo )
{
    TemporaryFolder folder;
    folder.makeFolder( "tree/sub" );
    folder.makeFolder( "outside" );
    folder.write( "outside/precious", "kept" );
    ASSERT_EQ( 0, symlink( "../../outside", folder.name( "tree/sub/link" ).c_str() ) );
    ASSERT_EQ( 0, symlink( "nowhere", folder.name( "tree/broken" ).c_str() ) );
    EXPECT_TRUE( qvPathDirectoryDeleteRecursively( folder.path( "tree" ) ) );
    EXPECT_FALSE( folder.has( "tree" ) );
    EXPECT_EQ( "kept", folder.read( "outside/precious" ) );
    EXPECT_FALSE( qvPathDirectoryDeleteRecursively( folder.path( "outside/precious" ) ) );
    EXPECT_FALSE( qvPathDirectoryDeleteRecursively( folder.path( "tree" ) ) );
    EXPECT_EQ( "kept", folder.read( "outside/precious" ) );
}

TEST( Directory, CreateRenameDelete )
{
    TemporaryFolder folder;
    umask( 022 );
    Local<QV_PATH> one = folder.path( "one" );
    EXPECT_FALSE( qvPathDirectoryExists( one ) );
    EXPECT_TRUE( qvPathDirectoryCreate( one ) );
    struct stat status;
    ASSERT_EQ( 0, stat( folder.name( "one" ).c_str(), &status ) );
    EXPECT_EQ( 0711u, status.st_mode & 0777u );
    EXPECT_TRUE( qvPathDirectoryExists( one ) );
    EXPECT_TRUE( qvPathDirectoryExists( folder.path( "one/" ) ) );
    EXPECT_FALSE( qvPathDirectoryCreate( one ) );
    EXPECT_FALSE( qvPathDirectoryCreate( folder.path( "missing/one" ) ) );
    EXPECT_TRUE( qvPathDirectoryRename( one, folder.path( "two/" ) ) );
    EXPECT_FALSE( qvPathDirectoryExists( one ) );
    folder.write( "two/file", "" );
    EXPECT_FALSE( qvPathDirectoryExists( folder.path( "two/file" ) ) );
    EXPECT_FALSE( qvPathDirectoryDelete( folder.path( "two" ) ) );
    EXPECT_TRUE( qvPathFileDelete( folder.path( "two/file" ) ) );
    EXPECT_TRUE( qvPathDirectoryDelete( folder.path( "two/" ) ) );
    EXPECT_FALSE( qvPathDirectoryDelete( folder.path( "two/" ) ) );
}
