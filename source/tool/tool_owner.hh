#ifndef QV_TOOL_TOOL_OWNER_HH
#define QV_TOOL_TOOL_OWNER_HH

// References of the library's objects, and its strings as the tool's own.

#include <qv/base/qv_boxed_int.h>
#include <qv/base/qv_buffer.h>
#include <qv/base/qv_identifier.h>
#include <qv/base/qv_opt_def.h>
#include <qv/base/qv_opt_seq.h>
#include <qv/base/qv_store.h>
#include <qv/base/qv_store_encoding.h>
#include <qv/base/qv_string.h>
#include <qv/base/qv_time.h>
#include <qv/base/qv_tool_switch.h>
#include <qv/base/qv_vector.h>
#include <qv/exec/qv_process_statistics.h>
#include <qv/exec/qv_process_statistics_family.h>
#include <qv/exec/qv_process_statistics_group.h>
#include <qv/exec/qv_process_statistics_interval.h>
#include <qv/io/qv_buffer_byte_source.h>
#include <qv/io/qv_byte_sink.h>
#include <qv/io/qv_byte_source.h>
#include <qv/io/qv_char_sink.h>
#include <qv/io/qv_char_source.h>
#include <qv/io/qv_header.h>
#include <qv/io/qv_header_info.h>
#include <qv/io/qv_location.h>
#include <qv/io/qv_message.h>
#include <qv/io/qv_message_sink.h>
#include <qv/io/qv_parser_location_map.h>
#include <qv/io/qv_path.h>
#include <qv/io/qv_store_header.h>
#include <qv/json/qv_json_decode.h>
#include <qv/json/qv_json_options.h>
#include <qv/json/qv_json_value.h>
#include <qv/runtime/qv_module.h>
#include <qv/runtime/qv_module_version.h>
#include <qv/runtime/qv_runtime_install_info.h>
#include <qv/runtime/qv_runtime_paths.h>
#include <qv/tag/qv_tag_match.h>
#include <qv/tag/qv_tag_rewrite.h>
#include <qv/tag/qv_tag_set.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace tool
{

inline void release( qvObj obj )
{
    qvObjRelease( obj );
}

#define TOOL_OWNED( NAME, prefix )                                                                           \
    inline void release( NAME *obj )                                                                         \
    {                                                                                                        \
        prefix##Release( obj );                                                                              \
    }
TOOL_OWNED( QV_BOXED_INT, qvBoxedInt )
TOOL_OWNED( QV_BUFFER, qvBuffer )
TOOL_OWNED( QV_BUFFER_BYTE_SOURCE, qvBufferByteSource )
TOOL_OWNED( QV_BYTE_SINK, qvByteSink )
TOOL_OWNED( QV_BYTE_SOURCE, qvByteSource )
TOOL_OWNED( QV_CHAR_SINK, qvCharSink )
TOOL_OWNED( QV_CHAR_SOURCE, qvCharSource )
TOOL_OWNED( QV_HEADER, qvHeader )
TOOL_OWNED( QV_HEADER_DECODE_ERROR, qvHeaderDecodeError )
TOOL_OWNED( QV_HEADER_DECODE_RESULT, qvHeaderDecodeResult )
TOOL_OWNED( QV_HEADER_INFO, qvHeaderInfo )
TOOL_OWNED( QV_IDENTIFIER, qvIdentifier )
TOOL_OWNED( QV_JSON_DECODE_ERROR, qvJsonDecodeError )
TOOL_OWNED( QV_JSON_DECODE_RESULT, qvJsonDecodeResult )
TOOL_OWNED( QV_JSON_OPTIONS, qvJsonOptions )
TOOL_OWNED( QV_JSON_VALUE, qvJsonValue )
TOOL_OWNED( QV_LOCATION, qvLocation )
TOOL_OWNED( QV_MESSAGE, qvMessage )
TOOL_OWNED( QV_MESSAGE_SINK, qvMessageSink )
TOOL_OWNED( QV_MODULE, qvModule )
TOOL_OWNED( QV_MODULE_VERSION, qvModuleVersion )
TOOL_OWNED( QV_OPT_DEF, qvOptDef )
TOOL_OWNED( QV_OPT_SEQ, qvOptSeq )
TOOL_OWNED( QV_PARSER_LOCATION_MAP, qvParserLocationMap )
TOOL_OWNED( QV_PATH, qvPath )
TOOL_OWNED( QV_PROCESS_STATISTICS, qvProcessStatistics )
TOOL_OWNED( QV_PROCESS_STATISTICS_FAMILY, qvProcessStatisticsFamily )
TOOL_OWNED( QV_PROCESS_STATISTICS_GROUP, qvProcessStatisticsGroup )
TOOL_OWNED( QV_PROCESS_STATISTICS_INTERVAL, qvProcessStatisticsInterval )
TOOL_OWNED( QV_RUNTIME_INSTALL_INFO, qvRuntimeInstallInfo )
TOOL_OWNED( QV_RUNTIME_PATHS, qvRuntimePaths )
TOOL_OWNED( QV_STORE, qvStore )
TOOL_OWNED( QV_STORE_DECODE_ERROR, qvStoreDecodeError )
TOOL_OWNED( QV_STORE_DECODE_RESULT, qvStoreDecodeResult )
TOOL_OWNED( QV_STORE_HEADER, qvStoreHeader )
TOOL_OWNED( QV_STRING, qvString )
TOOL_OWNED( QV_TAG_MATCH, qvTagMatch )
TOOL_OWNED( QV_TAG_REWRITE, qvTagRewrite )
TOOL_OWNED( QV_TAG_REWRITE_OPERATION, qvTagRewriteOperation )
TOOL_OWNED( QV_TAG_SET, qvTagSet )
TOOL_OWNED( QV_TIME, qvTime )
TOOL_OWNED( QV_TOOL_SWITCH, qvToolSwitch )
TOOL_OWNED( QV_VECTOR, qvVector )
#undef TOOL_OWNED

// One reference, adopted at creation and released at the end; may be null.
template <typename T> class Owner
{
  public:
    Owner() = default;
    explicit Owner( T *adopted ) : object( adopted ) {}
    Owner( Owner &&other ) noexcept : object( std::exchange( other.object, nullptr ) ) {}
    Owner &operator=( Owner &&other ) noexcept
    {
        std::swap( object, other.object );
        return *this;
    }
    ~Owner()
    {
        if ( object )
            release( object );
    }
    operator T *() const
    {
        return object;
    }
    // For functions that replace the handle.
    T **edit()
    {
        return &object;
    }

  private:
    T *object = nullptr;
};

template <typename T> Owner( T * ) -> Owner<T>;

using String = Owner<QV_STRING>;

inline String stringOf( std::string_view text )
{
    return String( qvStringCreateFromUtf8( text.data(), static_cast<QV_INT>( text.size() ) ) );
}

// A pointer as the closure of a stream.
inline Owner<QV_BOXED_INT> boxOf( void *pointer )
{
    return Owner( qvBoxedIntCreate( static_cast<QV_INT>( reinterpret_cast<intptr_t>( pointer ) ) ) );
}
template <typename T> T *unboxed( qvObj closure )
{
    return reinterpret_cast<T *>( static_cast<intptr_t>( qvBoxedIntValue( qvBoxedIntFrom( closure ) ) ) );
}

// The UTF-8 of a string.
std::string textOf( QV_STRING *string );

// The same of a string that is given up.
inline std::string textOf( String string )
{
    return textOf( static_cast<QV_STRING *>( string ) );
}

} // namespace tool

#endif
