// qv install-info write and show.

#include "tool_store.hh"

#include <qv/io/qv_path_directory.h>
#include <qv/json/qv_json_encode.h>
#include <qv/json/qv_json_store.h>
#include <qv/runtime/qv_runtime.h>

namespace
{

using tool::Arguments;
using tool::DataFile;
using tool::Owner;
using tool::String;
using tool::Tool;

constexpr char fileName[] = "install-info";

// ---- Fields ----

// What a field of the file may hold: one of the library's identifiers, or a text that obeys a rule.
struct Identifiers
{
    QV_INT ( *fromIdentifier )( QV_STRING *text );
    QV_STRING *( *toIdentifier )( QV_INT value );
    QV_STRING *( *friendlyName )( QV_INT value );
    QV_INT last; // of the values, which begin with 0
};

constexpr Identifiers systems = { qvRuntimeOsFromIdentifier, qvRuntimeOsToIdentifier, qvRuntimeOsFriendlyName,
                                  QV_RUNTIME_OS_MACOSX };
constexpr Identifiers machines = { qvRuntimeHardwareFromIdentifier, qvRuntimeHardwareToIdentifier,
                                   qvRuntimeHardwareFriendlyName, QV_RUNTIME_HARDWARE_RISCV64 };
constexpr Identifiers variants = { qvRuntimeVariantFromIdentifier, qvRuntimeVariantToIdentifier,
                                   qvRuntimeVariantFriendlyName, QV_RUNTIME_VARIANT_CHECK };

template <QV_INT ( *value )(), QV_STRING *( *name )( QV_INT )> QV_STRING *identifier()
{
    return name( value() );
}

struct Field
{
    const char *address;
    const char *option;
    const char *label;
    const Identifiers *identifiers; // or null for a text
    QV_BOOL ( *validate )( QV_STRING *text );
    const char *rule;
    QV_STRING *( *own )( void ); // that of this product
};

constexpr Field fields[] = {
    { "productFriendlyName", "friendly-name", "name", nullptr, qvRuntimeValidateProductFriendlyName,
      "up to 100 letters, digits and single inner blanks", qvRuntimeVersionProductFriendlyName },
    { "productName", "name", "identifier", nullptr, qvRuntimeValidateProductName,
      "up to 32 lower-case letters and digits, a letter first", qvRuntimeVersionProductName },
    { "productVersion", "product-version", "version", nullptr, qvRuntimeValidateProductVersion,
      "three numbers separated by \".\"", qvRuntimeVersionProductVersion },
    { "productVendorName", "vendor", "vendor", nullptr, qvRuntimeValidateProductVendorName,
      "up to 100 letters, digits, \"-\" and single inner blanks", qvRuntimeVersionProductVendorName },
    { "productCopyright", "copyright", "copyright", nullptr, qvRuntimeValidateProductCopyright,
      "letters, digits, \"-:;(),.@\" and single inner blanks", qvRuntimeVersionProductCopyright },
    { "os", "os", "built for", &systems, nullptr, nullptr, identifier<qvRuntimeOs, qvRuntimeOsToIdentifier> },
    { "hardware", "hardware", "", &machines, nullptr, nullptr,
      identifier<qvRuntimeHardware, qvRuntimeHardwareToIdentifier> },
    { "variant", "variant", "variant", &variants, nullptr, nullptr,
      identifier<qvRuntimeVariant, qvRuntimeVariantToIdentifier> },
};

std::string namesOf( const Identifiers &identifiers, const char *separator )
{
    std::string names;
    for ( QV_INT value = 0; value <= identifiers.last; value++ )
        names += ( value ? separator : "" ) + tool::textOf( String( identifiers.toIdentifier( value ) ) );
    return names;
}

// Why a text can't stand in a field; empty if it can.
std::string faultOf( const Field &field, QV_STRING *text )
{
    std::string shown = "\"" + tool::textOf( text ) + "\"";
    if ( !field.identifiers )
        return field.validate( text ) ? "" : shown + " isn't valid: must be " + field.rule;
    if ( field.identifiers->fromIdentifier( text ) >= 0 )
        return "";
    return shown + " is none of " + namesOf( *field.identifiers, ", " );
}

// ---- Files ----

// The file that a name stands for: itself, or the one of that folder.
std::string fileOf( const std::string &name )
{
    Owner path = tool::pathOf( name );
    if ( name == "-" || !path || !qvPathDirectoryExists( path ) )
        return name;
    return name + ( name.ends_with( '/' ) ? "" : "/" ) + fileName;
}

// That of the installed product.
std::string installedFile()
{
    Owner path( qvRuntimePathsPath( tool::runtimePaths(), QV_RUNTIME_PATH_INSTALL ) );
    qvPathAppendComponentFilenameCstr( path.edit(), fileName, -1 );
    return tool::textOf( String( qvPathPlatformTryEncode( path ) ) );
}

// ---- Show ----

// Null after messages that tell all that is wrong with the content of a file.
Owner<QV_RUNTIME_INSTALL_INFO> infoOf( Tool &tool, const DataFile &file )
{
    Owner place = tool::locationOf( file.name );
    if ( file.header && !qvStoreHeaderIsTypeSort( file.header, qvRuntimeInstallInfoSort() ) )
    {
        String type( qvStoreHeaderType( file.header ) );
        tool.error( place, "holds no install information but " + tool::textOf( std::move( type ) ) );
        return {};
    }
    for ( const Field &field : fields )
    {
        String text( qvStoreValueCstr( file.store, field.address, -1 ) );
        std::string fault = text ? faultOf( field, text ) : "is missing";
        if ( !fault.empty() )
            tool.error( place, std::string( field.address ) + ": " + fault );
    }
    return Owner( qvRuntimeInstallInfoTryRestore( file.store ) );
}

void printField( Tool &tool, const Field &field, QV_STORE *store )
{
    String text( qvStoreValueCstr( store, field.address, -1 ) );
    if ( field.identifiers )
        text = String( field.identifiers->friendlyName( field.identifiers->fromIdentifier( text ) ) );
    tool::printFact( tool.out, field.label, tool::textOf( std::move( text ) ) );
}

void runShow( Tool &tool, const Arguments &arguments )
{
    std::string name = arguments.operands.empty() ? installedFile() : fileOf( arguments.operand( 0 ) );
    std::optional<DataFile> file = tool::loadData( tool, name, -1 );
    Owner info = file ? infoOf( tool, *file ) : Owner<QV_RUNTIME_INSTALL_INFO>();
    if ( !info )
        return;
    Owner store( qvRuntimeInstallInfoStore( info ) );
    if ( arguments.has( "json" ) )
        return tool.out.write( Owner( qvJsonEncode( Owner( qvJsonConvertFromStore( store ) ) ) ) );
    tool::printTitle( tool.out, tool::shownName( name ) );
    for ( const Field &field : fields )
        printField( tool, field, store );
}

// ---- Write ----

// The texts as given and, where none is, as this product has them. False after usage errors.
bool takeFields( Tool &tool, const Arguments &arguments, QV_STORE **store )
{
    for ( const Field &field : fields )
    {
        std::optional<std::string> given = arguments.value( field.option );
        String text = given ? tool::stringOf( *given ) : String( field.own() );
        if ( std::string fault = faultOf( field, text ); !fault.empty() )
        {
            tool.usage( std::string( "--" ) + field.option + ": " + fault );
            return false;
        }
        qvStoreSetValueCstr( store, field.address, -1, text );
    }
    return true;
}

void warnOfPlatform( Tool &tool, QV_RUNTIME_INSTALL_INFO *info )
{
    QV_RUNTIME_OS system = qvRuntimeInstallInfoOs( info );
    QV_RUNTIME_HARDWARE machine = qvRuntimeInstallInfoHardware( info );
    if ( !qvRuntimeOsSupportsHardware( system, machine ) )
        tool.warning( tool.name(), tool::textOf( String( qvRuntimeOsFriendlyName( system ) ) ) +
                                       " isn't released for " +
                                       tool::textOf( String( qvRuntimeHardwareFriendlyName( machine ) ) ) );
}

void runWrite( Tool &tool, const Arguments &arguments )
{
    Owner store( qvStoreCreate() );
    if ( !takeFields( tool, arguments, store.edit() ) )
        return;
    Owner info( qvRuntimeInstallInfoTryRestore( store ) );
    warnOfPlatform( tool, info );
    Owner header( qvStoreHeaderCreateFromSort( qvRuntimeInstallInfoSort(), QV_TRUE ) );
    qvStoreHeaderGenerateInfo( header.edit() );
    qvStoreHeaderSetEncoding( header.edit(), QV_STORE_ENCODING_STANDARD );
    DataFile file{ .name = arguments.operands.empty() ? "-" : fileOf( arguments.operand( 0 ) ),
                   .bytes = Owner( qvBufferCreate() ),
                   .store = Owner( qvRuntimeInstallInfoStore( info ) ),
                   .header = std::move( header ),
                   .encoding = QV_STORE_ENCODING_HEADERLESS_STANDARD };
    tool::saveData( tool, file, file.name );
}

// ---- Tables ----

const tool::Option showOptions[] = {
    { 'j', "json", nullptr, "Print JSON." },
};
const tool::Example showExamples[] = {
    { "qv install-info show", "that of the installed product" },
    { "qv install-info show /opt/veltrano/gateway", "that of another product" },
    { "qv install-info show --json package/install-info", "for a program" },
};

const tool::Option writeOptions[] = {
    { 'n', "name", "NAME", "Identifier of the product: lower-case letters and digits, a letter first." },
    { 'f', "friendly-name", "NAME", "Its name for people." },
    { 'p', "product-version", "VERSION", "Its version: three numbers separated by \".\"." },
    { 'v', "vendor", "NAME", "Who makes it." },
    { 'c', "copyright", "TEXT", "Its copyright line." },
    { 'o', "os", "OS", "System that it was built for, for example debian12." },
    { 'm', "hardware", "HARDWARE", "Machine that it was built for, for example x64." },
    { 'V', "variant", "VARIANT", "How it was built, for example release." },
};
const tool::Example writeExamples[] = {
    { "qv install-info write package/", "what this product says of itself" },
    { "qv install-info write --name gateway --vendor 'Example Ltd' --product-version 4.2.1 .",
      "of another product" },
    { "qv install-info write --os debian12 --hardware arm64", "print it" },
};

} // namespace

namespace tool
{

std::string systemNames()
{
    return namesOf( systems, " " );
}

std::string machineNames()
{
    return namesOf( machines, " " );
}

std::string variantNames()
{
    return namesOf( variants, " " );
}

const Command installShow = {
    "install-info show",
    "[FILE|FOLDER]",
    0,
    1,
    "Show and check what an installer recorded about a product",
    "The information stands in the file \"install-info\" of a product's folder. Without an argument it is "
    "that of this "
    "product's installation.",
    showOptions,
    showExamples,
    runShow,
    true,
};

const Command installWrite = {
    "install-info write",
    "[FILE|FOLDER]",
    0,
    1,
    "Write what an installer records about a product",
    "What no option tells is as this product has it. In a folder the file is \"install-info\"; without an "
    "argument it is "
    "printed. It is replaced when it is complete.",
    writeOptions,
    writeExamples,
    runWrite,
};

} // namespace tool
