#include <qv/exec/qv_thread_priority.hh>

#include <qv/base/qv_enum.hh>

constinit QV_ENUM *qv___ThreadPriorityEnum = nullptr;

namespace
{

constexpr qv::EnumName priorityNames[] = {
    { QV_THREAD_PRIORITY_IDLE, "QV_THREAD_PRIORITY_IDLE" },
    { QV_THREAD_PRIORITY_LOWEST, "QV_THREAD_PRIORITY_LOWEST" },
    { QV_THREAD_PRIORITY_LOW, "QV_THREAD_PRIORITY_LOW" },
    { QV_THREAD_PRIORITY_NORMAL, "QV_THREAD_PRIORITY_NORMAL" },
    { QV_THREAD_PRIORITY_HIGH, "QV_THREAD_PRIORITY_HIGH" },
    { QV_THREAD_PRIORITY_HIGHEST, "QV_THREAD_PRIORITY_HIGHEST" },
    { QV_THREAD_PRIORITY_CRITICAL, "QV_THREAD_PRIORITY_CRITICAL" },
};

} // namespace

void qv___ThreadPriorityStartup()
{
    qv___ThreadPriorityEnum = qv::enumFromTable( priorityNames, QV_SIZEOF_ARRAY( priorityNames ) );
}

void qv___ThreadPriorityShutdown()
{
    qv::retire( &qv___ThreadPriorityEnum );
}

QV_THREAD_PRIORITY qvThreadPriorityFromString( QV_STRING *text )
{
    return qvEnumParse( qv___ThreadPriorityEnum, text );
}

QV_STRING *qvThreadPriorityToString( QV_THREAD_PRIORITY prio )
{
    QV_CHECK( QV_THREAD_PRIORITY_OK( prio ) );
    return qvEnumGenerate( qv___ThreadPriorityEnum, prio );
}
