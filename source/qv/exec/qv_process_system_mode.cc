#include <qv/exec/qv_process_system_mode.hh>

#include <qv/base/qv_enum.hh>

constinit QV_ENUM *qv___ProcessSystemModeEnum = nullptr;

namespace
{

constexpr qv::EnumName modeNames[] = {
    { QV_PROCESS_SYSTEM_MODE_TOOL, "QV_PROCESS_SYSTEM_MODE_TOOL" },
    { QV_PROCESS_SYSTEM_MODE_SERVER, "QV_PROCESS_SYSTEM_MODE_SERVER" },
};

} // namespace

void qv___ProcessSystemModeStartup()
{
    qv___ProcessSystemModeEnum = qv::enumFromTable( modeNames, QV_SIZEOF_ARRAY( modeNames ) );
}

void qv___ProcessSystemModeShutdown()
{
    qv::retire( &qv___ProcessSystemModeEnum );
}

QV_PROCESS_SYSTEM_MODE qvProcessSystemModeFromString( QV_STRING *text )
{
    return qvEnumParse( qv___ProcessSystemModeEnum, text );
}

QV_STRING *qvProcessSystemModeToString( QV_PROCESS_SYSTEM_MODE mode )
{
    QV_CHECK( mode >= QV_PROCESS_SYSTEM_MODE_TOOL );
    QV_CHECK( mode <= QV_PROCESS_SYSTEM_MODE_SERVER );
    return qvEnumGenerate( qv___ProcessSystemModeEnum, mode );
}
