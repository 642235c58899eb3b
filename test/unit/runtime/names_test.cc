// All enumerations and flag words in two tables: each value has a name that leads back to it, and no other text does.

#include "support/test.hh"

#include <qv/base/qv_store.hh>

#include <sstream>

using namespace test;

namespace
{

const struct
{
    const char *prefix, *names; // what the names begin with, and how they go on in the order of the values
    QV_STRING *( *toString )( QV_INT );
    QV_INT ( *fromString )( QV_STRING * );
} enumerations[] = {
    { "QV_CHARSET_",
      "ASCII ISO_8859_1 ISO_8859_2 ISO_8859_3 ISO_8859_4 ISO_8859_5 ISO_8859_6 ISO_8859_7 ISO_8859_8 "
      "ISO_8859_9 ISO_8859_10 ISO_8859_11 ISO_8859_13 ISO_8859_14 ISO_8859_15 ISO_8859_16 KOI_8R "
      "MSFT_CP037 MSFT_CP437 MSFT_CP500 MSFT_CP850 MSFT_CP852 MSFT_CP855 MSFT_CP857 MSFT_CP860 "
      "MSFT_CP861 MSFT_CP862 MSFT_CP863 MSFT_CP864 MSFT_CP865 MSFT_CP866 MSFT_CP869 MSFT_CP874 "
      "MSFT_CP875 MSFT_CP1026 MSFT_CP1250 MSFT_CP1251 MSFT_CP1252 MSFT_CP1253 MSFT_CP1254 "
      "MSFT_CP1255 MSFT_CP1256 MSFT_CP1257 MSFT_CP1258 UTF_8 UTF_16 UTF_16_BE UTF_16_LE UTF_32 "
      "UTF_32_BE UTF_32_LE",
      qvCharsetToString, qvCharsetFromString },
    { "QV_HEADER_DECODE_ERROR_CODE_",
      "HEADER_START HEADER_END HEADER_END_NLF INDICATOR TYPE MODULE_VERSION STORE",
      qvHeaderDecodeErrorCodeToString, qvHeaderDecodeErrorCodeFromString },
    { "QV_JSON_DECODE_ERROR_CODE_", "CHARSET TRAILING END TOKEN UNEXPECTED DUPLICATE ESCAPE DEPTH",
      qvJsonDecodeErrorCodeToString, qvJsonDecodeErrorCodeFromString },
    { "QV_JSON_TYPE_", "NULL FALSE TRUE NUMBER STRING OBJECT ARRAY", qvJsonTypeToString,
      qvJsonTypeFromString },
    { "QV_MESSAGE_LEVEL_", "DECORATIVE NORMAL WARNING ERROR", qvMessageLevelToString,
      qvMessageLevelFromString },
    { "QV_PROCESS_PRIORITY_", "LOW HIGH", qvProcessPriorityToString, qvProcessPriorityFromString },
    { "QV_PROCESS_SYSTEM_MODE_", "TOOL SERVER", qvProcessSystemModeToString, qvProcessSystemModeFromString },
    { "QV_RUNTIME_PATH_",
      "INSTALL PRODUCT PRODUCT_BIN PRODUCT_RES DATA DATA_STORAGE DATA_TRACE DATA_ABORT DATA_TEMP",
      qvRuntimePathToString, qvRuntimePathFromString },
    { "QV_STORE_DECODE_ERROR_CODE_",
      "HEADER ENCODING CHARSET TRAILING END TOKEN UNEXPECTED NLF ADDRESS DUPLICATE ESCAPE DEPTH "
      "JSON_ENCODING JSON_VALUE LEGACY_BINARY_ENCODING",
      qvStoreDecodeErrorCodeToString, qvStoreDecodeErrorCodeFromString },
    { "QV_STORE_ENCODING_",
      "STANDARD JSON LEGACY_TEXT LEGACY_BINARY HEADERLESS_STANDARD HEADERLESS_JSON "
      "HEADERLESS_LEGACY_TEXT HEADERLESS_LEGACY_BINARY",
      qvStoreEncodingToString, qvStoreEncodingFromString },
    { "QV_TAG_COLOR_", "RED ORANGE YELLOW GREEN BLUE INDIGO VIOLET WHITE GREY BLACK", qvTagColorToString,
      qvTagColorFromString },
    { "QV_TAG_MATCH_TYPE_", "OR XOR AND NOT", qvTagMatchTypeToString, qvTagMatchTypeFromString },
    { "QV_TAG_REWRITE_OPERATION_TYPE_", "SET DELETE PASSTHROUGH", qvTagRewriteOperationTypeToString,
      qvTagRewriteOperationTypeFromString },
    { "QV_THREAD_PRIORITY_", "IDLE LOWEST LOW NORMAL HIGH HIGHEST CRITICAL", qvThreadPriorityToString,
      qvThreadPriorityFromString },
    { "QV_UNICODE_NORMAL_FORM_", "C KC D KD", qvUnicodeNormalFormToString, qvUnicodeNormalFormFromString },
};

const struct
{
    const char *prefix, *names;
    QV_INT normalized; // what is left of a word of all flags
    QV_INT ( *normalize )( QV_INT );
    QV_STRING *( *toString )( QV_INT );
    QV_INT ( *fromString )( QV_STRING * );
} flagWords[] = {
    { "QV_CHARSET_FLAG_",
      "ABORT_ON_INVALID_CHARACTER IGNORE_INVALID_CHARACTERS IGNORE_BYTE_ORDER_MARK "
      "INSERT_BYTE_ORDER_MARK",
      14, qvCharsetFlagsNormalize, qvCharsetFlagsToString, qvCharsetFlagsFromString },
    { "QV_FORMAT_FLAG_",
      "LEFTALIGN ZEROPAD NOSIGN PLUSPOS BLANKPOS UPPERCASE BASEMNEMONIC BASENUMERIC BASEDECIMAL", 357,
      qvFormatFlagsNormalize, qvFormatFlagsToString, qvFormatFlagsFromString },
    { "QV_NLF_FLAG_", "LF CR CRLF NEL VT FF LS PS", 255, qvNlfFlagsNormalize, qvNlfFlagsToString,
      qvNlfFlagsFromString },
    { "QV_PATH_DIRECTORY_LIST_FLAG_", "RECURSIVE RELATIVE EXCLUDE_FILES EXCLUDE_DIRECTORIES SORT", 31,
      qvPathDirectoryListFlagsNormalize, qvPathDirectoryListFlagsToString,
      qvPathDirectoryListFlagsFromString },
    { "QV_PATH_FLAG_", "DIRECTORY CWD FSROOT WINDOWS_VOLUME WINDOWS_UNC", 17, qvPathFlagsNormalize,
      qvPathFlagsToString, qvPathFlagsFromString },
    { "QV_PROCESS_STATISTICS_FLAG_",
      "FAMILIES GROUP_PAST GROUP_PAST_SINCE_RESET GROUP_PAST_SINCE_RESET_RESET "
      "GROUP_CURRENT_SINCE_CREATION GROUP_CURRENT_SINCE_RESET GROUP_CURRENT_SINCE_RESET_RESET "
      "PROCESSES PROCESSES_INTERVAL_SINCE_CREATION PROCESSES_INTERVAL_SINCE_RESET "
      "PROCESSES_INTERVAL_SINCE_RESET_RESET",
      2047, qvProcessStatisticsFlagsNormalize, qvProcessStatisticsFlagsToString,
      qvProcessStatisticsFlagsFromString },
    { "QV_RUNTIME_FLAG_",
      "MINIMAL SYSTEM SERVER MEMORY_DEBUG OBJECT_DATABASE OBJECT_ORIGIN SNAPSHOT_SORT "
      "SNAPSHOT_OBJECT SNAPSHOT_OBJECT_TOSTRING SNAPSHOT_OBJECT_LOG NO_EXCEPTION_HANDLERS "
      "IMPLICIT_MODULE_PATH MODULE_DEBUG MODULE_DEPENDENCY_DEBUG NO_MODULE_EXTENSIONS",
      1, qvRuntimeFlagsNormalize, qvRuntimeFlagsToString, qvRuntimeFlagsFromString },
    { "QV_STORE_HINT_", "ARRAY ARRAY_MANAGED", 3, qvStoreHintsNormalize, qvStoreHintsToString,
      qvStoreHintsFromString },
    { "QV___STORE_VALUE_HINT_", "NULL BOOL INT REAL", 15, qv___StoreValueHintsNormalize,
      qv___StoreValueHintsToString, qv___StoreValueHintsFromString },
};

std::vector<std::string> namesOf( const std::string &prefix, const char *words )
{
    std::vector<std::string> names;
    std::istringstream in( words );
    for ( std::string word; in >> word; )
        names.push_back( prefix + word );
    return names;
}

TEST( Names, OfEnumerations )
{
    for ( const auto &row : enumerations )
    {
        std::vector<std::string> names = namesOf( row.prefix, row.names );
        for ( size_t idx = 0; idx < names.size(); idx++ )
        {
            QV_INT value = static_cast<QV_INT>( idx );
            EXPECT_EQ( names[idx], takeUtf8( row.toString( value ) ) );
            EXPECT_EQ( value, row.fromString( text( names[idx] ) ) );
            EXPECT_EQ( value, row.fromString( text( " " + std::to_string( value ) ) ) );
        }
        for ( const std::string &bad :
              { std::to_string( names.size() ), std::string( row.prefix ), std::string() } )
            EXPECT_EQ( -1, row.fromString( text( bad ) ) ) << row.prefix << " " << bad;
    }
}

TEST( Names, OfFlags )
{
    for ( const auto &row : flagWords )
    {
        SCOPED_TRACE( row.prefix );
        std::vector<std::string> names = namesOf( row.prefix, row.names );
        const QV_INT end = QV_INT( 1 ) << names.size();
        EXPECT_EQ( row.normalized, row.normalize( end - 1 ) );
        EXPECT_EQ( 0, row.normalize( end ) );
        for ( QV_INT flags = 0; flags < end; flags += flags < 256 ? 1 : 7 )
        {
            QV_INT normalized = row.normalize( flags );
            std::string expected;
            for ( size_t bit = 0; bit < names.size(); bit++ )
            {
                if ( normalized >> bit & 1 )
                    expected += ( expected.empty() ? "" : "|" ) + names[bit];
            }
            EXPECT_EQ( expected, takeUtf8( row.toString( normalized ) ) );
            EXPECT_EQ( normalized, row.fromString( text( expected + "| x" ) ) );
            EXPECT_EQ( normalized, row.normalize( normalized ) );
        }
    }
}

TEST( NamesDeathTest, OfNoValue )
{
    for ( const auto &row : enumerations )
    {
        // Outside its range a path has no name; the others stop the process.
        if ( row.toString == qvRuntimePathToString )
            continue;
        EXPECT_DEATH( row.toString( lengthOf( namesOf( "", row.names ) ) ), "_OK|_HIGH|_SERVER" )
            << row.prefix;
        EXPECT_DEATH( row.toString( -1 ), "_OK|_LOW|_TOOL" ) << row.prefix;
    }
    EXPECT_EQ( nullptr, qvRuntimePathToString( 9 ) );
}

} // namespace
