// All sorts in one table: the eight standard operations exist for each, and each has the functions of its own that it
// is known to have.

#include "support/test.hh"

#include <qv/base/qv_boxed_pointer.hh>
#include <qv/base/qv_event_queue.hh>
#include <qv/base/qv_priority_map.hh>
#include <qv/base/qv_store.hh>
#include <qv/base/qv_target.hh>
#include <qv/base/qv_tool_switch.hh>
#include <qv/charset/qv_charset_map.hh>
#include <qv/charset/qv_charset_utf.hh>
#include <qv/exec/qv_process_thread.hh>
#include <qv/exec/qv_timer.hh>

namespace
{

enum Has
{
    free = 1,
    compare = 2,
    toString = 4,
};

struct Row
{
    const char *name;
    int has;
    QV_SORT *( *sort )();
    // The operations that pass a null, and those that must not see one, through untyped shells.
    qvObj ( *objOfNull )();
    void *( *fromNull )();
    void *( *from )( qvObj );
    void ( *retainNull )();
    void ( *releaseNull )();
    void ( *toStringNull )();
    void ( *compareNull )();
};

#define ROW( NAME, prefix, has )                                                                             \
    {                                                                                                        \
#NAME, has, prefix##Sort, [] { return prefix##Obj( nullptr ); },                                     \
            []() -> void * { return prefix##From( nullptr ); },                                              \
            []( qvObj obj ) -> void * { return prefix##From( obj ); }, [] { prefix##Retain( nullptr ); },    \
            [] { prefix##Release( nullptr ); }, [] { prefix##ToString( nullptr ); },                         \
            [] { prefix##Compare( nullptr, nullptr ); }       \
    }

/* clang-format off */
const Row rows[] = {
    ROW( QV_ALERT, qvAlert, free ), ROW( QV_ALERTABLE, qvAlertable, free ),
    ROW( QV_BARRIER, qvBarrier, free ), ROW( QV_BOXED_BOOL, qvBoxedBool, compare | toString ),
    ROW( QV_BOXED_INT, qvBoxedInt, compare | toString ), ROW( QV_BOXED_NULL, qvBoxedNull, toString ),
    ROW( QV_BOXED_REAL, qvBoxedReal, compare | toString ), ROW( QV_BOXED_UNIQUE, qvBoxedUnique, 0 ),
    ROW( QV_BUFFER, qvBuffer, free | compare | toString ), ROW( QV_BUFFER_BYTE_SINK, qvBufferByteSink, free ),
    ROW( QV_BUFFER_BYTE_SOURCE, qvBufferByteSource, free ), ROW( QV_BYTE_SINK, qvByteSink, free ),
    ROW( QV_BYTE_SOURCE, qvByteSource, free ), ROW( QV_CHAR_SINK, qvCharSink, free ),
    ROW( QV_CHAR_SOURCE, qvCharSource, free ), ROW( QV_COUNTER, qvCounter, free ),
    ROW( QV_DECODER, qvDecoder, free ), ROW( QV_DICT, qvDict, free | compare | toString ),
    ROW( QV_ENCODER, qvEncoder, free ), ROW( QV_ENUM, qvEnum, free ),
    ROW( QV_ENVIRONMENT, qvEnvironment, free ), ROW( QV_EVENT_QUEUE, qvEventQueue, free ),
    ROW( QV_FLAGSET, qvFlagset, free ), ROW( QV_GENERATION, qvGeneration, free | compare | toString ),
    ROW( QV_GENERATION_MUTEX, qvGenerationMutex, free ), ROW( QV_HEADER, qvHeader, free ),
    ROW( QV_HEADER_BYTE_SINK, qvHeaderByteSink, free ),
    ROW( QV_HEADER_BYTE_SOURCE, qvHeaderByteSource, free ),
    ROW( QV_HEADER_DECODE_ERROR, qvHeaderDecodeError, free ),
    ROW( QV_HEADER_DECODE_RESULT, qvHeaderDecodeResult, free ), ROW( QV_HEADER_INFO, qvHeaderInfo, free ),
    ROW( QV_IDENTIFIER, qvIdentifier, free | compare | toString ),
    ROW( QV_JSON_DECODE_ERROR, qvJsonDecodeError, free ),
    ROW( QV_JSON_DECODE_RESULT, qvJsonDecodeResult, free ), ROW( QV_JSON_OPTIONS, qvJsonOptions, free ),
    ROW( QV_JSON_VALUE, qvJsonValue, free ), ROW( QV_LINE_SINK, qvLineSink, free ),
    ROW( QV_LINE_SOURCE, qvLineSource, free ), ROW( QV_LOCATION, qvLocation, free | toString ),
    ROW( QV_MESSAGE, qvMessage, free | toString ), ROW( QV_MESSAGE_SINK, qvMessageSink, free ),
    ROW( QV_MODULE, qvModule, free | compare | toString ),
    ROW( QV_MODULE_VERSION, qvModuleVersion, compare | toString ), ROW( QV_MONITOR, qvMonitor, free ),
    ROW( QV_NLF_LINE_SINK, qvNlfLineSink, free ), ROW( QV_NLF_LINE_SOURCE, qvNlfLineSource, free ),
    ROW( QV_OPT_DEF, qvOptDef, free ), ROW( QV_OPT_SEQ, qvOptSeq, free ),
    ROW( QV_PARSER_LOCATION_MAP, qvParserLocationMap, free ),
    ROW( QV_PATH, qvPath, free | compare | toString ), ROW( QV_PRIORITY_MAP, qvPriorityMap, free | compare ),
    ROW( QV_PROCESS, qvProcess, free ), ROW( QV_PROCESS_DOMAIN, qvProcessDomain, free ),
    ROW( QV_PROCESS_DOMAIN_OPTIONS, qvProcessDomainOptions, free ),
    ROW( QV_PROCESS_STATISTICS, qvProcessStatistics, free ),
    ROW( QV_PROCESS_STATISTICS_FAMILY, qvProcessStatisticsFamily, free ),
    ROW( QV_PROCESS_STATISTICS_GROUP, qvProcessStatisticsGroup, 0 ),
    ROW( QV_PROCESS_STATISTICS_INTERVAL, qvProcessStatisticsInterval, 0 ),
    ROW( QV_PROCESS_STATISTICS_QUERY, qvProcessStatisticsQuery, free ),
    ROW( QV_PROCESS_STATISTICS_RESULT, qvProcessStatisticsResult, free ),
    ROW( QV_PROCESS_SYSTEM_OPTIONS, qvProcessSystemOptions, free ),
    ROW( QV_RANGE_MAP, qvRangeMap, free | compare | toString ), ROW( QV_REGION, qvRegion, free ),
    ROW( QV_RUNTIME_INSTALL_INFO, qvRuntimeInstallInfo, free ), ROW( QV_RUNTIME_PATHS, qvRuntimePaths, free ),
    ROW( QV_SIGNAL, qvSignal, free ), ROW( QV_SIGNALABLE, qvSignalable, free ),
    ROW( QV_SORT, qvSort, free | compare | toString ), ROW( QV_STACK_TRACE, qvStackTrace, free ),
    ROW( QV_STAT, qvStat, free ), ROW( QV_STAT_FILESYSTEM, qvStatFilesystem, free ),
    ROW( QV_STORE, qvStore, free | compare ), ROW( QV_STORE_DECODE_ERROR, qvStoreDecodeError, free ),
    ROW( QV_STORE_DECODE_RESULT, qvStoreDecodeResult, free ), ROW( QV_STORE_HEADER, qvStoreHeader, free ),
    ROW( QV_STRING, qvString, free | compare | toString ), ROW( QV_STRING_CHAR_SINK, qvStringCharSink, free ),
    ROW( QV_STRING_CHAR_SOURCE, qvStringCharSource, free ),
    ROW( QV_TAG_DEFINITION, qvTagDefinition, free | compare ),
    ROW( QV_TAG_DEFINITION_SET, qvTagDefinitionSet, free | compare ),
    ROW( QV_TAG_MATCH, qvTagMatch, free | compare ), ROW( QV_TAG_REWRITE, qvTagRewrite, free | compare ),
    ROW( QV_TAG_REWRITE_OPERATION, qvTagRewriteOperation, free | compare ),
    ROW( QV_TAG_SET, qvTagSet, free | compare | toString ), ROW( QV_THREAD, qvThread, free | toString ),
    ROW( QV_TIME, qvTime, compare | toString ), ROW( QV_TIMER, qvTimer, free ),
    ROW( QV_TOOL_SWITCH, qvToolSwitch, free ), ROW( QV_UNICODE_NORMALIZER, qvUnicodeNormalizer, free ),
    ROW( QV_VECTOR, qvVector, free | compare | toString ), ROW( QV___ALERTABLE_IMP, qv___AlertableImp, free ),
    ROW( QV___BOXED_POINTER, qv___BoxedPointer, free | compare ),
    ROW( QV___CHARSET_MAP_CHAR_SINK_CLOSURE, qv___CharsetMapCharSinkClosure, free ),
    ROW( QV___CHARSET_MAP_CHAR_SOURCE_CLOSURE, qv___CharsetMapCharSourceClosure, free ),
    ROW( QV___CHARSET_UTF16_CHAR_SINK_CLOSURE, qv___CharsetUtf16CharSinkClosure, free ),
    ROW( QV___CHARSET_UTF16_CHAR_SOURCE_CLOSURE, qv___CharsetUtf16CharSourceClosure, free ),
    ROW( QV___CHARSET_UTF32_CHAR_SINK_CLOSURE, qv___CharsetUtf32CharSinkClosure, free ),
    ROW( QV___CHARSET_UTF32_CHAR_SOURCE_CLOSURE, qv___CharsetUtf32CharSourceClosure, free ),
    ROW( QV___CHARSET_UTF8_CHAR_SINK_CLOSURE, qv___CharsetUtf8CharSinkClosure, free ),
    ROW( QV___CHARSET_UTF8_CHAR_SOURCE_CLOSURE, qv___CharsetUtf8CharSourceClosure, free ),
    ROW( QV___EVENT_QUEUE_IMP, qv___EventQueueImp, free ),
    ROW( QV___PRIORITY_MAP_ENTRY, qv___PriorityMapEntry, free | compare ),
    ROW( QV___PROCESS_THREAD, qv___ProcessThread, free ),
    ROW( QV___SIGNALABLE_IMP, qv___SignalableImp, free ),
    ROW( QV___STORE_VALUE, qv___StoreValue, free | compare ),
    ROW( QV___TIMER_ABS_KEY, qv___TimerAbsKey, free | compare ),
    ROW( QV___TIMER_CLOSURE, qv___TimerClosure, free | compare ),
    ROW( QV___TOOL_SWITCH_TOOL, qv___ToolSwitchTool, 0 ),
};
/* clang-format on */

TEST( Sorts, HaveTheFunctionsOfTheirOwn )
{
    for ( const Row &row : rows )
    {
        QV_SORT *sort = row.sort();
        EXPECT_STREQ( row.name, sort->name );
        EXPECT_EQ( &qv___module, sort->module ) << row.name;
        EXPECT_EQ( ( row.has & free ) != 0, sort->functions.freeFunc != nullptr ) << row.name;
        EXPECT_EQ( ( row.has & compare ) != 0, sort->functions.compareFunc != nullptr ) << row.name;
        EXPECT_EQ( ( row.has & toString ) != 0, sort->functions.toStringFunc != nullptr ) << row.name;
        EXPECT_EQ( nullptr, row.objOfNull() ) << row.name;
        EXPECT_EQ( nullptr, row.fromNull() ) << row.name;
    }
}

TEST( SortsDeathTest, RefuseNullsAndStrangers )
{
    // One that owns nothing stands for a stranger to every other sort.
    testing::GTEST_FLAG( death_test_style ) = "fast";
    qvObj stranger = qvSortObj( qvSortSort() );
    for ( const Row &row : rows )
    {
        EXPECT_DEATH( row.retainNull(), "stdfunc retain" ) << row.name;
        EXPECT_DEATH( row.releaseNull(), "stdfunc release" ) << row.name;
        EXPECT_DEATH( row.toStringNull(), "stdfunc tostring" ) << row.name;
        EXPECT_DEATH( row.compareNull(), "stdfunc compare a" ) << row.name;
        if ( row.sort() != qvSortSort() )
        {
            EXPECT_DEATH( row.from( stranger ), std::string( "qv___sort_" ) + row.name ) << row.name;
        }
    }
    testing::GTEST_FLAG( death_test_style ) = "threadsafe";
}

} // namespace
