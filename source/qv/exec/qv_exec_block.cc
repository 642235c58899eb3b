#include <qv/exec/qv_exec_block.hh>

constinit thread_local qv___ExecBlock qv___exec_block = {
    qv___EXEC_MAGIC, QV_FALSE, QV___UNIQUE_INVALID, { nullptr, nullptr }, 0,
};

namespace
{

// The block of the thread that started the runtime, as it was before.
constinit qv___ExecBlock startingBlock = {};
constinit bool started = false;

} // namespace

void qv___ExecEncapsulate( qv___ExecEncapsulateFunc func, void *argument )
{
    QV_CHECK( func );
    qv___ExecBlock saved;
    qv___ExecEncapsulateBegin( &saved );
    func( argument );
    qv___ExecEncapsulateEnd( &saved );
}

void qv___ExecEncapsulateBegin( qv___ExecBlock *eb )
{
    QV_CHECK( eb );
    QV_CHECK( qv___exec_block.magicNumber == qv___EXEC_MAGIC );
    *eb = qv___exec_block;
    qv___exec_block.encapsulated = QV_TRUE;
    qv___exec_block.processDomainToken = QV___UNIQUE_INVALID;
    qv___ExecListInitialize( &qv___exec_block.processQueue );
    qv___exec_block.processTimestamp = 0;
}

void qv___ExecEncapsulateEnd( qv___ExecBlock *eb )
{
    QV_CHECK( eb );
    QV_CHECK( eb->magicNumber == qv___EXEC_MAGIC );
    QV_CHECK( qv___exec_block.magicNumber == qv___EXEC_MAGIC );
    QV_CHECK( qv___exec_block.encapsulated );
    qv___ExecListFinalize( &qv___exec_block.processQueue );
    qv___exec_block = *eb;
}

QV_BOOL qv___ExecEncapsulated()
{
    QV_CHECK( qv___exec_block.magicNumber == qv___EXEC_MAGIC );
    return qv___exec_block.encapsulated;
}

void qv___ExecCheckEncapsulated()
{
    QV_CHECK( qv___ExecEncapsulated() );
}

void qv___ExecEncapsulateStartup()
{
    QV_CHECK( !started );
    started = true;
    qv___ExecEncapsulateBegin( &startingBlock );
}

void qv___ExecEncapsulateShutdown()
{
    QV_CHECK( started );
    started = false;
    qv___ExecEncapsulateEnd( &startingBlock );
}
