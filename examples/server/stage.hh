#ifndef SERVER_STAGE_HH
#define SERVER_STAGE_HH

// Objects of C++ as processes.

#include "owner.hh"

#include <memory>

namespace server
{

// A process that reads an event queue: it runs when something asks for it, and whenever the queue holds an event after
// a run has called awaitEvent. A run does a slice of work and never waits.
class Stage
{
  public:
    virtual ~Stage() = default;
    virtual void run() = 0;

    QV_EVENT_QUEUE *inbox() const
    {
        return queue;
    }

    // Makes the process, which owns the stage from then on and destroys it on one of its domain's threads when it ends.
    // Nothing runs before the first qvProcessSchedule.
    static Owner<QV_PROCESS> start( std::unique_ptr<Stage> stage, QV_PROCESS_DOMAIN *domain,
                                    const char *name );

  protected:
    // The oldest event; null if there is none.
    Owner<qv___Obj> readEvent()
    {
        return Owner( qvEventQueueReadEvent( queue ) );
    }
    // Asks for a run as soon as the queue holds an event, which may be at once.
    void awaitEvent()
    {
        qvEventQueueReadEventAddAlertable( queue, wake );
    }

  private:
    Owner<QV_EVENT_QUEUE> queue{ qvEventQueueCreate() };
    Owner<QV_ALERTABLE>
        wake; // keeps the process, which keeps this stage; the end of the process undoes the circle
};

// Ends a process and returns when it has run for the last time.
void halt( QV_PROCESS *process );

} // namespace server

#endif
