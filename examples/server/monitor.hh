#ifndef SERVER_MONITOR_HH
#define SERVER_MONITOR_HH

// What the server tells of itself while it runs and when it has run.

#include "pipeline.hh"

namespace server
{

// Prints a table of the processes' last interval, by their families: on a terminal in place of the one before, else as
// further lines. Each call starts the next interval.
class Monitor
{
  public:
    explicit Monitor( const Flow &shownFlow ) : flow( shownFlow ) {}
    void print();

  private:
    const Flow &flow;
    QV_INT started = qvTimestamp();
    QV_INT last = started;
    size_t linesShown = 0;
};

// Writes what the processes have done since the server started. False after a message.
bool writeStatistics( const std::string &file );

} // namespace server

#endif
