// What the process runs on, where its files lie, and what an installer recorded.

#include "support/test.hh"
#include "support/child.hh"
#include "support/folder.hh"

#include <qv/runtime/qv_runtime_hardware.hh>
#include <qv/runtime/qv_runtime_info.hh>
#include <qv/runtime/qv_runtime_install_info.hh>
#include <qv/runtime/qv_runtime_os.hh>
#include <qv/runtime/qv_runtime_paths.hh>
#include <qv/runtime/qv_runtime_platform.hh>
#include <qv/runtime/qv_runtime_variant.hh>

namespace
{

using namespace test;

TEST( Platform, IdentifiersGoBothWays )
{
    const struct
    {
        QV_INT count;
        QV_STRING *( *toString )( QV_INT );
        QV_INT ( *fromString )( QV_STRING * );
        QV_STRING *( *toIdentifier )( QV_INT );
        QV_INT ( *fromIdentifier )( QV_STRING * );
        QV_STRING *( *friendlyName )( QV_INT );
        std::string firstName, lastIdentifier, lastFriendlyName;
    } families[] = {
        { 15, qvRuntimeOsToString, qvRuntimeOsFromString, qvRuntimeOsToIdentifier, qvRuntimeOsFromIdentifier,
          qvRuntimeOsFriendlyName, "QV_RUNTIME_OS_WINDOWS", "macosx", "MacOSX" },
        { 7, qvRuntimeHardwareToString, qvRuntimeHardwareFromString, qvRuntimeHardwareToIdentifier,
          qvRuntimeHardwareFromIdentifier, qvRuntimeHardwareFriendlyName, "QV_RUNTIME_HARDWARE_X32",
          "riscv64", "Generic RISC-V" },
        { 4, qvRuntimeVariantToString, qvRuntimeVariantFromString, qvRuntimeVariantToIdentifier,
          qvRuntimeVariantFromIdentifier, qvRuntimeVariantFriendlyName, "QV_RUNTIME_VARIANT_RELEASE", "check",
          "Check" },
    };
    for ( const auto &family : families )
    {
        for ( QV_INT value = 0; value < family.count; value++ )
        {
            EXPECT_EQ( value, family.fromString( Local<QV_STRING>( family.toString( value ) ) ) );
            EXPECT_EQ( value, family.fromIdentifier( Local<QV_STRING>( family.toIdentifier( value ) ) ) );
        }
        EXPECT_EQ( family.firstName, takeUtf8( family.toString( 0 ) ) );
        EXPECT_EQ( family.lastIdentifier, takeUtf8( family.toIdentifier( family.count - 1 ) ) );
        EXPECT_EQ( family.lastFriendlyName, takeUtf8( family.friendlyName( family.count - 1 ) ) );
        EXPECT_EQ( -1, family.fromIdentifier( text( "DEBIAN12" ) ) );
        EXPECT_EQ( -1, family.fromIdentifier( text( "" ) ) );
        EXPECT_EQ( -1, family.fromString( text( "debian12" ) ) );
        EXPECT_EQ( nullptr, family.toString( family.count ) );
        EXPECT_DEATH( family.toIdentifier( family.count ), "_OK" );
        EXPECT_DEATH( family.friendlyName( -1 ), "_OK" );
    }
}

TEST( Platform, Classes )
{
    // A row for each system: windows, linux, debian, rhel, unix; then the supported hardware, from X32 on.
    const struct
    {
        QV_INT first, last;
        std::string classes, supported;
    } systems[] = {
        { QV_RUNTIME_OS_WINDOWS, QV_RUNTIME_OS_WINDOWS, "10000", "1100010" },
        { QV_RUNTIME_OS_DEBIAN_9, QV_RUNTIME_OS_DEBIAN_11, "01101", "1111110" },
        { QV_RUNTIME_OS_DEBIAN_12, QV_RUNTIME_OS_DEBIAN_13, "01101", "1111111" },
        { QV_RUNTIME_OS_UBUNTU_1804, QV_RUNTIME_OS_UBUNTU_2004, "01101", "1100000" },
        { QV_RUNTIME_OS_UBUNTU_2204, QV_RUNTIME_OS_UBUNTU_2604, "01101", "1100011" },
        { QV_RUNTIME_OS_RHEL_8, QV_RUNTIME_OS_RHEL_10, "01011", "0100000" },
        { QV_RUNTIME_OS_MACOSX, QV_RUNTIME_OS_MACOSX, "00001", "0000000" },
    };
    const char *platforms[] = { "i386", "amd64", "armhf", "armhf", "armhf", "arm64", "riscv64" };
    auto digit = []( QV_BOOL value ) { return value ? '1' : '0'; };
    for ( const auto &row : systems )
        for ( QV_INT os = row.first; os <= row.last; os++ )
        {
            std::string classes{ digit( qvRuntimeOsIsWindows( os ) ), digit( qvRuntimeOsIsLinux( os ) ),
                                 digit( qvRuntimeOsIsDebian( os ) ), digit( qvRuntimeOsIsRhel( os ) ),
                                 digit( qvRuntimeOsIsUnix( os ) ) };
            EXPECT_EQ( row.classes, classes ) << os;
            std::string supported;
            for ( QV_INT hw = 0; hw < 7; hw++ )
            {
                supported += digit( qvRuntimeOsSupportsHardware( os, hw ) );
                Local<QV_STRING> name( qvRuntimeOsHardwarePlatformName( os, hw ) );
                EXPECT_EQ( qvRuntimeOsIsLinux( os ), name != nullptr );
                EXPECT_EQ( qvRuntimeOsIsLinux( os ), qvRuntimeOsHasHardwarePlatformName( os, hw ) );
                EXPECT_EQ( name ? platforms[hw] : "", name ? toUtf8( name ) : "" );
            }
            EXPECT_EQ( row.supported, supported ) << os;
        }
    std::string intel, arm, riscv;
    for ( QV_INT hw = 0; hw < 7; hw++ )
    {
        intel += digit( qvRuntimeHardwareIsIntel( hw ) );
        arm += digit( qvRuntimeHardwareIsArm( hw ) );
        riscv += digit( qvRuntimeHardwareIsRiscv( hw ) );
        EXPECT_TRUE( qvRuntimeHardwareIsLittleEndian( hw ) && !qvRuntimeHardwareIsBigEndian( hw ) );
    }
    EXPECT_EQ( "1100000 0011110 0000001", intel + " " + arm + " " + riscv );
    EXPECT_DEATH( qvRuntimeOsSupportsHardware( 0, 7 ), "QV_RUNTIME_HARDWARE_OK" );
    EXPECT_DEATH( qvRuntimeOsIsUnix( 15 ), "QV_RUNTIME_OS_OK" );
    EXPECT_TRUE( qvRuntimeOsSupportsHardware( qvRuntimeOs(), qvRuntimeHardware() ) );
}

// All paths that are set, each as its number and text.
std::string describe( QV_RUNTIME_PATHS *paths )
{
    std::string result;
    for ( QV_INT rtp = 0; rtp < 9; rtp++ )
    {
        Local<QV_PATH> path( qvRuntimePathsPath( paths, rtp ) );
        EXPECT_EQ( path != nullptr, qvRuntimePathsHasPath( paths, rtp ) != 0 );
        if ( path )
            result += std::to_string( rtp ) + " " + textOf( path ) + "\n";
    }
    return result;
}

// The paths of a product in a child process whose environment holds the variables alone.
std::string pathsWith( const std::map<std::string, std::string> &variables, QV_INT flags,
                       const char *product )
{
    ChildResult result = runInChild( [&] {
        clearenv();
        for ( const auto &[name, value] : variables )
            setenv( name.c_str(), value.c_str(), 1 );
        qvRuntimeStartup( flags, -1, nullptr, nullptr, nullptr, nullptr );
        {
            Local<QV_RUNTIME_PATHS> paths( product ? qv___RuntimePathsForProduct( flags, text( product ) )
                                                   : qvRuntimePaths() );
            fputs( describe( paths ).c_str(), stderr );
        }
        qvRuntimeShutdown();
        return 0;
    } );
    EXPECT_EQ( 0, result.status );
    return result.output;
}

std::string productPart( const std::string &name )
{
    std::string root = "/opt/veltrano/" + name + "/";
    return "0 " + root + "\n1 " + root + "\n2 " + root + "bin/\n3 " + root + "res/\n";
}

std::string dataPart( const std::string &root )
{
    return "4 " + root + "\n5 " + root + "storage/\n6 " + root + "trace/\n7 " + root + "abort/\n8 " + root +
           "temp/\n";
}

TEST( RuntimePaths, FollowTheEnvironment )
{
    TemporaryFolder home;
    const std::map<std::string, std::string> atHome = { { "HOME", home.name( "" ) } };
    EXPECT_EQ( "", pathsWith( atHome, QV_RUNTIME_FLAG_MINIMAL, nullptr ) );
    EXPECT_FALSE( std::filesystem::exists( home.name( ".opt" ) ) );
    EXPECT_EQ( productPart( "other" ) + dataPart( home.name( ".opt/veltrano/other/" ) ),
               pathsWith( { { "HOME", home.name( "" ) }, { "JN_QV_DATA_PATH", "/none" } }, 0, "other" ) );
    EXPECT_FALSE( std::filesystem::exists( home.name( ".opt/veltrano/other" ) ) );
    EXPECT_EQ( productPart( "qv" ) + dataPart( home.name( ".opt/veltrano/qv/" ) ),
               pathsWith( atHome, 0, nullptr ) );
    for ( const char *folder : { "storage", "trace", "abort", "temp" } )
        EXPECT_TRUE( std::filesystem::is_directory( home.name( ".opt/veltrano/qv/" ) + folder ) );
}

TEST( RuntimePaths, VariablesWin )
{
    TemporaryFolder home;
    std::map<std::string, std::string> variables = { { "HOME", home.name( "" ) },
                                                     { "JN_MYPROD_DATA_PATH", "/data/here" } };
    EXPECT_EQ( productPart( "myprod" ) + dataPart( "/data/here/" ), pathsWith( variables, 0, "myprod" ) );
    variables = { { "JN_MYPROD_PRODUCT_PATH", "/p" },     { "JN_MYPROD_BIN_PATH", "/b/" },
                  { "JN_MYPROD_RES_PATH", "/r" },         { "JN_MYPROD_DATA_PATH", "/d" },
                  { "JN_MYPROD_STORAGE_PATH", "/s" },     { "JN_MYPROD_TRACE_PATH", "/t/" },
                  { "JN_MYPROD_ABORT_PATH", "relative" }, { "JN_MYPROD_TEMP_PATH", "../up" } };
    EXPECT_EQ( "0 /opt/veltrano/myprod/\n1 /p/\n2 /b/\n3 /r/\n4 /d/\n5 /s/\n6 /t/\n7 relative/\n8 ../up/\n",
               pathsWith( variables, QV_RUNTIME_FLAG_SYSTEM, "myprod" ) );
    // A directory that a variable names is never made.
    TemporaryFolder fresh;
    variables = { { "HOME", fresh.name( "" ) }, { "JN_QV_TRACE_PATH", fresh.name( "mine" ) } };
    pathsWith( variables, 0, nullptr );
    EXPECT_FALSE( std::filesystem::exists( fresh.name( "mine" ) ) );
    EXPECT_FALSE( std::filesystem::exists( fresh.name( ".opt/veltrano/qv/trace" ) ) );
    EXPECT_TRUE( std::filesystem::exists( fresh.name( ".opt/veltrano/qv/abort" ) ) );
}

TEST( RuntimePaths, WithoutHome )
{
    EXPECT_EQ( productPart( "other" ) + dataPart( "/.opt/veltrano/other/" ), pathsWith( {}, 0, "other" ) );
    EXPECT_EQ( productPart( "other" ) + dataPart( "/var/opt/veltrano/other/" ),
               pathsWith( {}, QV_RUNTIME_FLAG_SYSTEM, "other" ) );
}

TEST( RuntimePaths, CopyStoreAndRestore )
{
    Local<QV_RUNTIME_PATHS> paths( qvRuntimePathsCreate() );
    EXPECT_EQ( "", describe( paths ) );
    qvRuntimePathsSetPath( paths.edit(), QV_RUNTIME_PATH_DATA, pathOf( "/d/" ) );
    auto before = Local<QV_RUNTIME_PATHS>::share( paths );
    qvRuntimePathsSetPath( paths.edit(), QV_RUNTIME_PATH_INSTALL, pathOf( "../i/" ) );
    qvRuntimePathsSetPath( paths.edit(), QV_RUNTIME_PATH_DATA, pathOf( "/e/" ) );
    EXPECT_EQ( "4 /d/\n", describe( before ) );
    EXPECT_EQ( "0 ../i/\n4 /e/\n", describe( paths ) );
    Local<QV_STORE> store( qvRuntimePathsStore( paths ) );
    EXPECT_EQ( "../i/", takeUtf8( qvStoreValueCstr( store, "QV_RUNTIME_PATH_INSTALL", -1 ) ) );
    EXPECT_EQ( 2, qvStoreLength( store ) );
    qvStoreSetValueCstr( store.edit(), "UNKNOWN", -1, text( "/u/" ) );
    qvStoreSetValueCstr( store.edit(), "QV_RUNTIME_PATH_DATA_TEMP", -1, text( "/file" ) );
    qvStoreSetStoreCstr( store.edit(), "QV_RUNTIME_PATH_DATA_TRACE", -1, Local<QV_STORE>( qvStoreCreate() ) );
    Local<QV_RUNTIME_PATHS> restored( qvRuntimePathsRestore( store ) );
    EXPECT_EQ( describe( paths ), describe( restored ) );
    qvRuntimePathsDelPath( restored.edit(), QV_RUNTIME_PATH_DATA );
    auto shared = Local<QV_RUNTIME_PATHS>::share( restored );
    qvRuntimePathsDelPath( restored.edit(), QV_RUNTIME_PATH_DATA_TEMP );
    EXPECT_EQ( static_cast<QV_RUNTIME_PATHS *>( shared ), restored );
    EXPECT_EQ( "0 ../i/\n", describe( restored ) );
    EXPECT_DEATH( qvRuntimePathsSetPath( paths.edit(), 0, pathOf( "/file" ) ), "isDirectory" );
    EXPECT_DEATH( qvRuntimePathsPath( paths, 9 ), "QV_RUNTIME_PATH_OK" );
    EXPECT_DEATH( qv___RuntimePathsForProduct( 0, text( "No" ) ), "qvRuntimeValidateProductName" );
}

const std::vector<std::pair<std::string, std::string>> goodInfo = {
    { "os", "ubuntu2204" },
    { "hardware", "arm64" },
    { "variant", "profile" },
    { "productName", "myprod" },
    { "productFriendlyName", "My Product" },
    { "productVersion", "1.2.3" },
    { "productVendorName", "A-B" },
    { "productCopyright", "(C) 2026 A-B" },
};

TEST( InstallInfo, RestoresOnlyWhatIsWhole )
{
    Local<QV_STORE> store( storeOf( goodInfo ) );
    Local<QV_RUNTIME_INSTALL_INFO> info( qvRuntimeInstallInfoTryRestore( store ) );
    ASSERT_TRUE( info );
    EXPECT_EQ( QV_RUNTIME_OS_UBUNTU_2204, qvRuntimeInstallInfoOs( info ) );
    EXPECT_EQ( QV_RUNTIME_HARDWARE_ARM64, qvRuntimeInstallInfoHardware( info ) );
    EXPECT_EQ( QV_RUNTIME_VARIANT_PROFILE, qvRuntimeInstallInfoVariant( info ) );
    EXPECT_EQ( "myprod", takeUtf8( qvRuntimeInstallInfoProductName( info ) ) );
    EXPECT_EQ( "My Product", takeUtf8( qvRuntimeInstallInfoProductFriendlyName( info ) ) );
    EXPECT_EQ( "1.2.3", takeUtf8( qvRuntimeInstallInfoProductVersion( info ) ) );
    EXPECT_EQ( "A-B", takeUtf8( qvRuntimeInstallInfoProductVendorName( info ) ) );
    EXPECT_EQ( "(C) 2026 A-B", takeUtf8( qvRuntimeInstallInfoProductCopyright( info ) ) );
    Local<QV_STORE> again( qvRuntimeInstallInfoStore( info ) );
    EXPECT_EQ( 0, qvStoreCompare( store, again ) );
    for ( size_t idx = 0; idx < goodInfo.size(); idx++ )
    {
        auto entries = goodInfo;
        entries[idx].second = "No/such";
        EXPECT_EQ( nullptr, qvRuntimeInstallInfoTryRestore( storeOf( entries ) ) ) << entries[idx].first;
        entries.erase( entries.begin() + static_cast<std::ptrdiff_t>( idx ) );
        EXPECT_EQ( nullptr, qvRuntimeInstallInfoTryRestore( storeOf( entries ) ) ) << goodInfo[idx].first;
    }
}

TEST( InstallInfo, LoadsFromTheFirstDirectoryThatIsSet )
{
    TemporaryFolder folder;
    folder.makeFolder( "install" );
    Local<QV_PATH> file( folder.path( "install/install-info" ) );
    Local<QV_RUNTIME_PATHS> paths( qvRuntimePathsCreate() );
    EXPECT_EQ( nullptr, qvRuntimeInstallInfoTryLoadWithRuntimePaths( paths ) );
    qvRuntimePathsSetPath( paths.edit(), QV_RUNTIME_PATH_PRODUCT, folder.path( "install/" ) );
    EXPECT_EQ( nullptr, qvRuntimeInstallInfoTryLoadWithRuntimePaths( paths ) );
    auto write = [&]( QV_STORE_HEADER *header ) {
        ASSERT_TRUE( qvPathFileWriteStore( file, storeOf( goodInfo ), header ) );
    };
    write( Local<QV_STORE_HEADER>( qvStoreHeaderCreateFromSort( qvRuntimeInstallInfoSort(), QV_FALSE ) ) );
    EXPECT_TRUE( Local<QV_RUNTIME_INSTALL_INFO>( qvRuntimeInstallInfoTryLoadWithRuntimePaths( paths ) ) );
    qvRuntimePathsSetPath( paths.edit(), QV_RUNTIME_PATH_INSTALL, folder.path( "nothing/" ) );
    EXPECT_EQ( nullptr, qvRuntimeInstallInfoTryLoadWithRuntimePaths( paths ) );
    write( Local<QV_STORE_HEADER>( qvStoreHeaderCreateFromSort( qvRuntimePathsSort(), QV_FALSE ) ) );
    EXPECT_EQ( nullptr, qvRuntimeInstallInfoTryLoadFromFile( file ) );
    folder.write( "install/install-info", "\x01 no store" );
    EXPECT_EQ( nullptr, qvRuntimeInstallInfoTryLoadFromFile( file ) );
    EXPECT_EQ( nullptr, qvRuntimeInstallInfoTryLoadForProduct( text( "nosuchproduct" ) ) );
}

TEST( Computer, ProcessorTexts )
{
    const struct
    {
        std::vector<std::string> lines;
        QV_INT cores;
        std::string info;
    } rows[] = {
        { {}, 0, "CPU unknown" },
        { {}, 4, "CPU unknown, cores:4" },
        { { "processor : 0", "model name\t:  Fast \t", "model name : Slow" }, 2, "Fast, cores:2" },
        { { "model name :", "model name : B" }, 0, "B" },
        { { "Revision : r", "model name : M" }, 1, "M, cores:1" },
        { { "Hardware : H", "Revision : r", "model name : M" }, 0, "M / H (r)" },
        { { "Hardware : H: h", "model name : M" }, 0, "M / H: h" },
        { { "Hardware : H", "Revision : r" }, 0, "H (r)" },
        { { "Hardware : H", " model name : M" }, 0, "H" },
        { { "Revision : r" }, 0, "CPU unknown" },
    };
    for ( const auto &row : rows )
        EXPECT_EQ( row.info, takeUtf8( qv::cpuInfoOfLines( vectorOf( row.lines ), row.cores ) ) );
    EXPECT_TRUE( qvRuntimeHasOperatingSystemInfo() && qvRuntimeHasCpuInfo() && qvRuntimeHasComputerName() );
}

TEST( RuntimeInfo, UserInformation )
{
    Local<QV_STORE> none( qvRuntimeUserInformation() );
    EXPECT_EQ( 0, qvStoreLength( none ) );
    Local<QV_STORE> a( storeOf( { { "x", "1" } } ) ), b( storeOf( { { "y", "2" } } ) );
    qvRuntimeSetUserInformationKey( text( "two" ), b );
    qvRuntimeSetUserInformationKey( text( "one" ), b );
    qvRuntimeSetUserInformationKey( text( "one" ), a );
    EXPECT_TRUE( qvRuntimeHasUserInformationKey( text( "one" ) ) );
    EXPECT_EQ( 0, qvStoreCompare( a, Local<QV_STORE>( qvRuntimeUserInformationKey( text( "one" ) ) ) ) );
    Local<QV_STORE> both( qvRuntimeUserInformation() );
    ASSERT_EQ( 2, qvStoreLength( both ) );
    Local<QV_STORE> first( qvStoreStoreAt( both, 0 ) ), second( qvStoreStoreAt( both, 1 ) );
    EXPECT_EQ( "one", takeUtf8( qvStoreValueCstr( first, "key", -1 ) ) );
    EXPECT_EQ( 0, qvStoreCompare( a, Local<QV_STORE>( qvStoreStoreCstr( first, "store", -1 ) ) ) );
    EXPECT_EQ( "two", takeUtf8( qvStoreValueCstr( second, "key", -1 ) ) );
    qvRuntimeDelUserInformationKey( text( "one" ) );
    qvRuntimeDelUserInformationKey( text( "two" ) );
    qvRuntimeDelUserInformationKey( text( "two" ) );
    EXPECT_FALSE( qvRuntimeHasUserInformationKey( text( "one" ) ) );
    EXPECT_EQ( nullptr, qvRuntimeUserInformationKey( text( "one" ) ) );
}

TEST( RuntimeInfo, HasAllKeys )
{
    Local<QV_STORE> info( qvRuntimeInfo() );
    std::string keys;
    for ( QV_INT idx = 0; idx < qvStoreLength( info ); idx++ )
        keys += takeUtf8( qvStoreAddressAt( info, idx ) ) + " ";
    EXPECT_EQ( "applicationFriendlyName applicationIdentifier applicationVersion buildTime compatibility "
               "computerName cpuInfo friendlyName hardware operatingSystemInfo os product startTime "
               "userInformation variant version versionMajor versionMinor versionRelease ",
               keys );
    EXPECT_EQ( takeUtf8( qvRuntimeOsFriendlyName( qvRuntimeOs() ) ),
               takeUtf8( qvStoreValueCstr( info, "os", -1 ) ) );
    EXPECT_EQ( "qv_unit", takeUtf8( qvStoreValueCstr( info, "applicationIdentifier", -1 ) ) );
    QV_INT compatibility = -1;
    EXPECT_TRUE( qvStoreValueIntCstr( info, &compatibility, "compatibility", -1 ) );
    EXPECT_EQ( 0, compatibility );
}

} // namespace
