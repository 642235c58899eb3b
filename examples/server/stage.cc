#include "stage.hh"

#include <qv/runtime/qv_author.h>

// A process hands its function an object of the library: a sort of our own, which carries the stage.
typedef struct ServerStage : qv___Obj
{
    server::Stage *stage;
} SERVER_STAGE;

QV_BEGIN_DECLS
QV_SORT_FUNCTIONS( SERVER_STAGE, serverStage )
QV_END_DECLS

static void freeStage( qvObj thisObj )
{
    delete serverStageFrom( thisObj )->stage;
}

QV_SORT_DEFINE( SERVER_STAGE, serverStage, { freeStage, nullptr, nullptr } )

namespace server
{

static void runStage( qvObj closure )
{
    serverStageFrom( closure )->stage->run();
}

Owner<QV_PROCESS> Stage::start( std::unique_ptr<Stage> stage, QV_PROCESS_DOMAIN *domain, const char *name )
{
    Owner closure( serverStageFrom( qv___ObjCreate( sizeof( SERVER_STAGE ), serverStageSort() ) ) );
    Stage *started = stage.get();
    static_cast<SERVER_STAGE *>( closure )->stage = stage.release();
    Owner process(
        qvProcessCreateWithDomain( domain, runStage, serverStageObj( closure ), stringOf( name ) ) );
    started->wake = Owner( qvAlertableCreateWithProcess( process ) );
    return process;
}

void halt( QV_PROCESS *process )
{
    Owner ended( qvSignalCreate() );
    Owner target( qvSignalableCreateWithSignal( ended ) );
    qvProcessEndAddSignalable( process, target );
    qvProcessHalt( process );
    qvSignalWait( ended );
}

} // namespace server
