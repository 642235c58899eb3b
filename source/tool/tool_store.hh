#ifndef QV_TOOL_TOOL_STORE_HH
#define QV_TOOL_TOOL_STORE_HH

// Data files as the store tools read and write them.

#include "tool.hh"

namespace tool
{

struct DataFile
{
    std::string name;
    Owner<QV_BUFFER> bytes;
    Owner<QV_STORE> store;
    Owner<QV_STORE_HEADER> header; // null without one
    QV_STORE_ENCODING encoding;    // of the content, headerless
    long long leftOut = 0;         // members that the file has and the store hasn't
};

// Shared rows of the options' tables.
inline constexpr const char *encodingChoices =
    "standard json legacy-text legacy-binary headerless-standard headerless-json headerless-legacy-text "
    "headerless-legacy-binary";
inline constexpr Option fromOption = {
    'f', "from", "ENCODING", "Encoding of a file that doesn't name its own; otherwise it is found out.",
    encodingChoices };

// The encoding of a name such as "standard", in any of its spellings, or -1.
QV_STORE_ENCODING encodingOf( const std::string &name );

// Its short name.
std::string encodingName( QV_STORE_ENCODING encoding );

// The names of the encodings with a header that the library can read and write, separated by commas.
std::string encodingNames();

// The encoding with a header that has the same content.
QV_STORE_ENCODING withHeader( QV_STORE_ENCODING encoding );

// True if the library can read and write the encoding.
bool isAvailable( QV_STORE_ENCODING encoding );

// The value of --from as a headerless encoding, -1 if it isn't given. False after a usage error.
bool takeFrom( Tool &tool, const Arguments &arguments, QV_STORE_ENCODING &from );

// Reads a data file; null after error messages that name place and reason.
std::optional<DataFile> loadData( Tool &tool, const std::string &name, QV_STORE_ENCODING from );

// The bytes of a data file, with its header if it has one.
Owner<QV_BUFFER> encodeData( const DataFile &file );

// Writes it. False after an error message.
bool saveData( Tool &tool, const DataFile &file, const std::string &name );

// A place in a store, as typed: addresses, or positions in arrays, separated by "/".
struct Place
{
    std::string typed;
    std::vector<std::string> steps;
};

// False after a usage error.
bool takePlace( Tool &tool, const std::string &typed, Place &place );

// The index of an entry by its address, or in an array by its position; -1 if there is none.
QV_INT indexOf( QV_STORE *store, const std::string &step );

// A failure to decode JSON with the place of the fault, which the library's stores go without. Null if it isn't JSON that
// is at fault.
Owner<QV_STORE_DECODE_RESULT> locatedJsonFailure( QV_BUFFER *bytes, QV_LOCATION *place );

// The store of a valid JSON content, with warnings of what it can't hold. False after an error message.
bool takeJsonContent( Tool &tool, QV_BUFFER *bytes, QV_LOCATION *place, DataFile &file );

// A store as indented JSON.
void printJson( Output &out, QV_STORE *store );

// Lines of standard text, coloured for standard output.
void printContent( Output &out, QV_STORE *store );

} // namespace tool

#endif
