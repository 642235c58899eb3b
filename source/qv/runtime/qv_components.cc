// The components of the library, in the one fixed order in which they start.

#include <qv/runtime/qv_runtime.hh>

#include <qv/base/qv_boxed_bool.hh>
#include <qv/base/qv_boxed_null.hh>
#include <qv/base/qv_buffer.hh>
#include <qv/base/qv_dict.hh>
#include <qv/base/qv_format.hh>
#include <qv/base/qv_generation.hh>
#include <qv/base/qv_random.hh>
#include <qv/base/qv_stack_trace.hh>
#include <qv/base/qv_store.hh>
#include <qv/base/qv_store_encoding.hh>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_time.hh>
#include <qv/base/qv_timezone.hh>
#include <qv/base/qv_vector.hh>
#include <qv/charset/qv_charset.hh>
#include <qv/exec/qv_exec_block.hh>
#include <qv/exec/qv_process_priority.hh>
#include <qv/exec/qv_process_statistics_db.hh>
#include <qv/exec/qv_process_statistics_flags.hh>
#include <qv/exec/qv_process_system.hh>
#include <qv/exec/qv_process_system_mode.hh>
#include <qv/exec/qv_thread.hh>
#include <qv/exec/qv_thread_priority.hh>
#include <qv/exec/qv_timer.hh>
#include <qv/io/qv_header.hh>
#include <qv/io/qv_message.hh>
#include <qv/io/qv_nlf_flags.hh>
#include <qv/io/qv_path.hh>
#include <qv/io/qv_path_directory.hh>
#include <qv/json/qv_json_options.hh>
#include <qv/json/qv_json_value.hh>
#include <qv/runtime/qv_abort_startup.hh>
#include <qv/runtime/qv_obj.hh>
#include <qv/runtime/qv_runtime_hardware.hh>
#include <qv/runtime/qv_runtime_info.hh>
#include <qv/runtime/qv_runtime_os.hh>
#include <qv/runtime/qv_runtime_paths.hh>
#include <qv/runtime/qv_runtime_platform.hh>
#include <qv/runtime/qv_runtime_variant.hh>
#include <qv/runtime/qv_version.hh>
#include <qv/sys/qv_mem.hh>
#include <qv/sys/qv_timestamp.hh>
#include <qv/sys/qv_unique.hh>
#include <qv/tag/qv_tag_definition.hh>
#include <qv/tag/qv_tag_match.hh>
#include <qv/tag/qv_tag_rewrite.hh>
#include <qv/tag/qv_tag_set.hh>
#include <qv/unicode/qv_unicode_db.hh>
#include <qv/unicode/qv_unicode_normalizer.hh>

namespace
{

// When a component stops: in the reverse order of the start, or, for a few that stand together, in its start order.
enum class Stop
{
    inReverse,
    inOrder,
};

struct Component
{
    const char *name;
    void ( *startup )();
    void ( *shutdown )();
    Stop stop;
};

/* clang-format off */
#define QV___COMPONENT( Name, stop ) { #Name, qv___##Name##Startup, qv___##Name##Shutdown, stop }
/* clang-format on */

// What the host said of itself, for the one component that takes it.
struct Application
{
    const char *identifier;
    const char *friendlyName;
    const char *version;
};
constinit Application application = {};

void startVersion()
{
    qv___RuntimeVersionStartup( application.identifier, application.friendlyName, application.version );
}

constexpr Component components[] = {
    { "RuntimeVersion", startVersion, qv___RuntimeVersionShutdown, Stop::inReverse },
    QV___COMPONENT( Mem, Stop::inReverse ),
    QV___COMPONENT( Unique, Stop::inReverse ),
    QV___COMPONENT( Timestamp, Stop::inReverse ),
    QV___COMPONENT( Obj, Stop::inReverse ),
    QV___COMPONENT( StackTrace, Stop::inReverse ),
    QV___COMPONENT( ExecEncapsulate, Stop::inReverse ),
    QV___COMPONENT( String, Stop::inReverse ),
    QV___COMPONENT( Buffer, Stop::inReverse ),
    QV___COMPONENT( Vector, Stop::inReverse ),
    QV___COMPONENT( Dict, Stop::inReverse ),
    QV___COMPONENT( Generation, Stop::inReverse ),
    QV___COMPONENT( FormatFlags, Stop::inReverse ),
    QV___COMPONENT( Format, Stop::inReverse ),
    QV___COMPONENT( BoxedNull, Stop::inReverse ),
    QV___COMPONENT( BoxedBool, Stop::inReverse ),
    QV___COMPONENT( StoreHints, Stop::inReverse ),
    QV___COMPONENT( StoreValueHints, Stop::inReverse ),
    QV___COMPONENT( StoreValue, Stop::inReverse ),
    QV___COMPONENT( StoreEncoding, Stop::inReverse ),
    QV___COMPONENT( Store, Stop::inReverse ),
    QV___COMPONENT( StoreDecodeErrorCode, Stop::inReverse ),
    QV___COMPONENT( Time, Stop::inReverse ),
    QV___COMPONENT( Timezone, Stop::inReverse ),
    QV___COMPONENT( Random, Stop::inReverse ),
    QV___COMPONENT( RuntimeFlags, Stop::inReverse ),
    QV___COMPONENT( RuntimePath, Stop::inReverse ),
    QV___COMPONENT( RuntimeOs, Stop::inReverse ),
    QV___COMPONENT( RuntimeHardware, Stop::inReverse ),
    QV___COMPONENT( RuntimeVariant, Stop::inReverse ),
    QV___COMPONENT( UnicodeNormalForm, Stop::inReverse ),
    QV___COMPONENT( UnicodeGenc, Stop::inReverse ),
    QV___COMPONENT( UnicodeCccv, Stop::inReverse ),
    QV___COMPONENT( UnicodeCdmt, Stop::inReverse ),
    QV___COMPONENT( UnicodeScript, Stop::inReverse ),
    QV___COMPONENT( CharsetFlags, Stop::inReverse ),
    QV___COMPONENT( Charset, Stop::inReverse ),
    QV___COMPONENT( PathFlags, Stop::inReverse ),
    QV___COMPONENT( PathDirectoryListFlags, Stop::inReverse ),
    QV___COMPONENT( Path, Stop::inReverse ),
    QV___COMPONENT( HeaderDecodeErrorCode, Stop::inReverse ),
    QV___COMPONENT( MessageLevel, Stop::inReverse ),
    QV___COMPONENT( NlfFlags, Stop::inReverse ),
    QV___COMPONENT( RuntimeComputerName, Stop::inReverse ),
    QV___COMPONENT( RuntimeComputerInfo, Stop::inReverse ),
    QV___COMPONENT( RuntimeUserInformation, Stop::inReverse ),
    QV___COMPONENT( JsonFlags, Stop::inReverse ),
    QV___COMPONENT( JsonType, Stop::inReverse ),
    QV___COMPONENT( JsonValue, Stop::inReverse ),
    QV___COMPONENT( JsonOptions, Stop::inReverse ),
    QV___COMPONENT( TagColor, Stop::inOrder ),
    QV___COMPONENT( TagMatchType, Stop::inOrder ),
    QV___COMPONENT( TagRewriteOperationType, Stop::inOrder ),
    QV___COMPONENT( TagSet, Stop::inOrder ),
    QV___COMPONENT( RuntimePlatform, Stop::inReverse ),
    QV___COMPONENT( Abort, Stop::inReverse ),
    QV___COMPONENT( ThreadPriority, Stop::inReverse ),
    QV___COMPONENT( Thread, Stop::inReverse ),
    QV___COMPONENT( Timer, Stop::inReverse ),
    QV___COMPONENT( ProcessSystemMode, Stop::inReverse ),
    QV___COMPONENT( ProcessPriority, Stop::inReverse ),
    QV___COMPONENT( ProcessStatisticsFlags, Stop::inReverse ),
    QV___COMPONENT( ProcessStatisticsDb, Stop::inReverse ),
    QV___COMPONENT( ProcessSystem, Stop::inReverse ),
};

#undef QV___COMPONENT

constexpr int componentCount = static_cast<int>( QV_SIZEOF_ARRAY( components ) );

} // namespace

void qv___RuntimeComponentsStartup( const char *applicationIdentifier, const char *applicationFriendlyName,
                                    const char *applicationVersion )
{
    application = { applicationIdentifier, applicationFriendlyName, applicationVersion };
    for ( const Component &component : components )
    {
        component.startup();
    }
    application = {};
}

void qv___RuntimeComponentsShutdown()
{
    int last = componentCount - 1;
    while ( last >= 0 )
    {
        int first = last;
        while ( components[last].stop == Stop::inOrder && first > 0 &&
                components[first - 1].stop == Stop::inOrder )
        {
            first--;
        }
        for ( int idx = first; idx <= last; idx++ )
        {
            components[idx].shutdown();
        }
        last = first - 1;
    }
}
