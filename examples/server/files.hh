#ifndef SERVER_FILES_HH
#define SERVER_FILES_HH

// Data files, and what there is to say about them.

#include "owner.hh"

namespace server
{

// A line "file: error: text" on standard error.
void printError( const std::string &file, std::string_view text );

// The store of a data file of the type; null after a message that tells file, place and reason.
Owner<QV_STORE> readStore( const std::string &file, const char *type );

// Writes a data file beside its place and puts it there when it is complete, so that no reader finds a part. False after
// a message.
bool writeStore( const std::string &file, QV_STORE *store, QV_STORE_HEADER *header );

} // namespace server

#endif
