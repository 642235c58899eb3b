#ifndef SERVER_OPTIONS_HH
#define SERVER_OPTIONS_HH

// What the server is to do, from a data file of the type EXAMPLE_SERVER_OPTIONS.

#include "owner.hh"

#include <optional>

namespace server
{

struct Options
{
    std::string input;      // text: records of lines "Field: value", separated by empty lines
    std::string result;     // data file for the sums
    std::string statistics; // data file for the statistics of the processes
    std::string groupField; // the records are grouped by this field
    std::string sumField;   // whose values, integers, are summed up in each group
    QV_INT interval;        // milliseconds from one batch of records to the next
    QV_INT batch;           // records read at a time
    QV_INT backlog;         // most records under way: while they are so many, none is read
    QV_INT workers;         // processes that transform
    Owner<QV_PROCESS_DOMAIN_OPTIONS> flowDomain; // the domain of reader and collector
    Owner<QV_PROCESS_DOMAIN_OPTIONS> workDomain; // the domain of the workers
};

// Nothing after messages about all that is wrong.
std::optional<Options> readOptions( const std::string &file );

} // namespace server

#endif
