#include <qv/exec/qv_process_priority.hh>

#include <qv/base/qv_enum.hh>

constinit QV_ENUM *qv___ProcessPriorityEnum = nullptr;

namespace
{

constexpr qv::EnumName priorityNames[] = {
    { QV_PROCESS_PRIORITY_LOW, "QV_PROCESS_PRIORITY_LOW" },
    { QV_PROCESS_PRIORITY_HIGH, "QV_PROCESS_PRIORITY_HIGH" },
};

} // namespace

void qv___ProcessPriorityStartup()
{
    qv___ProcessPriorityEnum = qv::enumFromTable( priorityNames, QV_SIZEOF_ARRAY( priorityNames ) );
}

void qv___ProcessPriorityShutdown()
{
    qv::retire( &qv___ProcessPriorityEnum );
}

QV_PROCESS_PRIORITY qvProcessPriorityFromString( QV_STRING *text )
{
    return qvEnumParse( qv___ProcessPriorityEnum, text );
}

QV_STRING *qvProcessPriorityToString( QV_PROCESS_PRIORITY priority )
{
    QV_CHECK( priority >= QV_PROCESS_PRIORITY_LOW );
    QV_CHECK( priority <= QV_PROCESS_PRIORITY_HIGH );
    return qvEnumGenerate( qv___ProcessPriorityEnum, priority );
}
