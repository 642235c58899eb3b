#ifndef SERVER_PIPELINE_HH
#define SERVER_PIPELINE_HH

// The server's work: a reader takes batches of records from a file at the pace of a timer, workers transform them, a
// collector sums them up and writes the result. Records travel through event queues.

#include "options.hh"
#include "stage.hh"

#include <atomic>
#include <vector>

namespace server
{

// What the stages share. It lives until all of them have ended.
struct Flow
{
    Owner<QV_SIGNAL> stop{ qvSignalCreate() };       // the server is to end
    Owner<QV_SIGNAL> written{ qvSignalCreate() };    // the collector has done its last work
    Owner<QV_COUNTER> underWay{ qvCounterCreate() }; // records that were read and not yet summed up
    Owner<QV_TIMER> timer;                           // wakes the reader
    std::atomic<QV_INT> recordsRead = 0;
    std::atomic<bool> complete = false; // the input was read to its end
    std::atomic<bool> good = true;      // no file has failed
};

class Pipeline
{
  public:
    explicit Pipeline( const Options &serverOptions ) : options( serverOptions ) {}

    // False after a message; then nothing runs.
    bool start();
    // Ends the stages in their order, so that every record that was read is in the result. False after a message.
    bool finish();

    Flow flow;

  private:
    const Options &options;
    Owner<QV_PROCESS> reader;
    std::vector<Owner<QV_PROCESS>> workers;
    Owner<QV_PROCESS> collector;
    Owner<QV_EVENT_QUEUE> results; // the collector's inbox
};

} // namespace server

#endif
