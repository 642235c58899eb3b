// The zone of made-up hosts, and the two naming schemes.

#include "support/test.hh"
#include "support/folder.hh"

#include <qv/base/qv_timezone.hh>

#include <filesystem>
#include <fstream>

namespace
{

using namespace test;

struct Host
{
    const char *timezone, *clock, *solaris, *localtime; // null for no file; localtime is the target of a link
    std::string name;
};

std::string zoneOf( const Host &host )
{
    namespace fs = std::filesystem;
    TemporaryFolder folder;
    fs::path root = folder.name();
    fs::create_directories( root / "etc/sysconfig" );
    if ( host.timezone )
        std::ofstream( root / "etc/timezone" ) << host.timezone;
    if ( host.clock )
        std::ofstream( root / "etc/sysconfig/clock" ) << host.clock;
    if ( host.solaris )
        std::ofstream( root / "etc/TIMEZONE" ) << host.solaris;
    if ( host.localtime && *host.localtime )
        fs::create_symlink( host.localtime, root / "etc/localtime" );
    else if ( host.localtime )
        std::ofstream( root / "etc/localtime" ) << "TZif2";
    std::string rootName = root.string();
    qv___TimezoneRoot = rootName.c_str();
    std::string name = takeUtf8( qvTimezone() );
    qv___TimezoneRoot = "";
    return name;
}

TEST( Timezone, TakesTheNameFromTheSystemFiles )
{
    constexpr const char *link = "/usr/share/zoneinfo/Europe/Paris";
    const std::string long128( 128, 'z' );
    const std::string linkTo128 = "/usr/share/zoneinfo/" + long128;
    const std::string linkTo129 = linkTo128 + "z";
    const std::string longLine = std::string( 126, 'a' ) + " bc\n";
    const std::string exactLine = std::string( 127, 'a' ) + "bc\n";
    const std::string longTarget = std::string( 3000, '/' ) + link;
    const Host hosts[] = {
        { nullptr, nullptr, nullptr, nullptr, "" },
        // The first file decides alone once it is there.
        { "Europe/Rome\n", "ZONE=x\n", "TZ=y\n", link, "Europe/Rome" },
        { "# a comment\n\n  # another\n", "ZONE=x\n", nullptr, link, "" },
        { "", nullptr, nullptr, link, "" },
        { "Europe/Rome\nEurope/Oslo\n", nullptr, nullptr, nullptr, "Europe/Oslo" },
        { " \tEurope/Rome behind # it\n#x\n", nullptr, nullptr, nullptr, "Europe/Rome" },
        { "\"UTC\"", nullptr, nullptr, nullptr, "\"UTC\"" },
        { longLine.c_str(), nullptr, nullptr, nullptr, "bc" },
        { exactLine.c_str(), nullptr, nullptr, nullptr, "bc" },
        { "caf\xE9\n", nullptr, nullptr, nullptr, "caf" },
        // Keys.
        { nullptr, "UTC=true\nZONE=\"Europe/Berlin\"\nZONE=x\n", nullptr, link, "Europe/Berlin" },
        { nullptr, "ZONE=\"America/New York\"\n", nullptr, nullptr, "America/New" },
        { nullptr, "ZONE= 'a\"b' \n", nullptr, nullptr, "'ab'" },
        { nullptr, "ZONE=a=b\n", nullptr, nullptr, "a=b" },
        { nullptr, "ZONE=\"\"\nZONE=x\n", "TZ=y\n", nullptr, "y" },
        { nullptr, "ZONE=\nZONE=x\n", nullptr, link, "Europe/Paris" },
        { nullptr, "ZONE =x\n ZONE=x\nZONE\nzone=x\nTZ=x\n", nullptr, link, "Europe/Paris" },
        { nullptr, nullptr, "ZONE=x\nTZ=US/Pacific\n", link, "US/Pacific" },
        // The link.
        { nullptr, nullptr, nullptr, link, "Europe/Paris" },
        { nullptr, nullptr, nullptr, "../usr/share/zoneinfo/UTC", "UTC" },
        { nullptr, nullptr, nullptr, "/usr/share/zoneinfo", "" },
        { nullptr, nullptr, nullptr, "/elsewhere/Europe/Paris", "" },
        { nullptr, nullptr, nullptr, "", "" },
        { nullptr, nullptr, nullptr, linkTo128.c_str(), long128 },
        { nullptr, nullptr, nullptr, linkTo129.c_str(), "" },
        { nullptr, nullptr, nullptr, longTarget.c_str(), "Europe/Paris" },
    };
    for ( const Host &host : hosts )
        EXPECT_EQ( host.name, zoneOf( host ) )
            << ( host.timezone ? host.timezone : "-" ) << ", " << ( host.clock ? host.clock : "-" ) << ", "
            << ( host.localtime ? host.localtime : "-" );
}

TEST( Timezone, TranslatesNames )
{
    static const struct
    {
        const char *windows, *iana;
        bool best;
    } rows[] = {
        { "W. Europe Standard Time", "Europe/Berlin", true },
        { "W. Europe Standard Time", "Europe/Vienna", false },
        { "UTC", "America/Danmarkshavn", true },
        { "UTC", "Etc/UTC", false },
        { "UTC-11", "Pacific/Pago_Pago", true },
        { "Line Islands Standard Time", "Etc/GMT-14", false },
        { "Central Pacific Standard Time", "Pacific/Ponape Pacific/Kosrae", false },
    };
    for ( const auto &row : rows )
    {
        EXPECT_EQ( row.windows, takeUtf8( qvTimezoneIanaToWindows( text( row.iana ) ) ) );
        EXPECT_EQ( row.best, takeUtf8( qvTimezoneWindowsToIana( text( row.windows ) ) ) == row.iana );
        EXPECT_TRUE( qvTimezoneWindowsOk( text( row.windows ) ) );
        EXPECT_TRUE( qvTimezoneIanaOk( text( row.iana ) ) );
    }
    for ( const char *name : { "", "europe/berlin", "Europe/Berlin ", "Mars", "Pacific/Kosrae" } )
    {
        EXPECT_EQ( nullptr, qvTimezoneIanaToWindows( text( name ) ) ) << name;
        EXPECT_EQ( nullptr, qvTimezoneWindowsToIana( text( name ) ) ) << name;
        EXPECT_FALSE( qvTimezoneWindowsOk( text( name ) ) ) << name;
        EXPECT_FALSE( qvTimezoneIanaOk( text( name ) ) ) << name;
    }
}

TEST( Timezone, ListsAllNames )
{
    Local<QV_VECTOR> list( qvTimezoneList() );
    ASSERT_EQ( 455, qv::vectorLength( list ) );
    std::set<std::string> windowsNames;
    for ( QV_INT idx = 0; idx < qv::vectorLength( list ); idx++ )
    {
        QV_STRING *iana = qvStringFrom( qv::vectorAt( list, idx ) );
        if ( idx > 0 )
        {
            EXPECT_LT( qvObjCompare( qv::vectorAt( list, idx - 1 ), qv::vectorAt( list, idx ) ), 0 );
        }
        Local<QV_STRING> windows( qvTimezoneIanaToWindows( iana ) );
        ASSERT_TRUE( windows ) << toUtf8( iana );
        windowsNames.insert( toUtf8( windows ) );
        // The best name of its Windows name belongs to that one too.
        Local<QV_STRING> best( qvTimezoneWindowsToIana( windows ) );
        ASSERT_TRUE( best );
        Local<QV_STRING> back( qvTimezoneIanaToWindows( best ) );
        EXPECT_TRUE( qvStringEquals( windows, back ) );
    }
    EXPECT_EQ( 132u, windowsNames.size() );
}

TEST( Timezone, TellsTheOffset )
{
    time_t now = time( nullptr );
    struct tm local;
    ASSERT_TRUE( localtime_r( &now, &local ) );
    EXPECT_EQ( local.tm_gmtoff, qvTimezoneUtcOffset() );
    static const std::pair<const char *, QV_INT> rows[] = {
        { "UTC0", 0 }, { "XXX-5:30", 19800 }, { "XXX+3", -10800 }, { "XXX-24:30", 0 } };
    for ( auto [zone, offset] : rows )
    {
        setenv( "TZ", zone, 1 );
        tzset();
        EXPECT_EQ( offset, qvTimezoneUtcOffset() ) << zone;
    }
    unsetenv( "TZ" );
    tzset();
}

} // namespace
