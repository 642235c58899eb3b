#ifndef QV_TOOL_TOOL_HH
#define QV_TOOL_TOOL_HH

// What the subtools share: the tables that describe them, their parsed arguments, messages, input and output.

#include "tool_owner.hh"

#include <qv/charset/qv_charset.h>
#include <qv/runtime/qv_runtime.h>
#include <qv/unicode/qv_unicode_normalizer.h>

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace tool
{

// Exit codes of the process.
enum Status : int
{
    statusGood = 0,
    statusData = 1, // the data, or a file, is at fault
    statusUsage = 2 // the command line is
};

// ---- Output ----

// Where results go: standard output, a file of any kind, or a regular file that appears whole or not at all.
class Output
{
  public:
    // Standard output.
    Output();
    // "-" is standard output. A regular file, or a name that is free, is written beside its place and takes it in
    // finish. Failures are told by isGood and failure.
    explicit Output( const std::string &name );
    ~Output();
    Output( const Output & ) = delete;
    Output &operator=( const Output & ) = delete;

    void write( std::string_view text );
    void write( QV_BUFFER *buffer );
    // The library's sink on the same bytes; flush it before anything else is written here.
    QV_BYTE_SINK *sink();
    // Passes on what is held back.
    void pass();
    // Ends the output: true if every byte has reached its place. Only then a regular file is replaced.
    bool finish();
    bool isGood() const
    {
        return reason.empty();
    }
    // Why it isn't good.
    const std::string &failure() const
    {
        return reason;
    }
    const std::string &displayName() const
    {
        return shown;
    }

  private:
    void openBeside( const std::string &target );
    void writeAll( const unsigned char *bytes, size_t count );
    void fail( const char *step );
    static QV_BOOL takeBytes( qvObj closure, const unsigned char *bytes, QV_INT count );
    static QV_BOOL flushBytes( qvObj closure );

    std::string shown;
    std::string target;    // what finish puts in place, if that is a regular file
    std::string temporary; // and its file until then
    std::string held;      // bytes that wait for a larger write
    std::string reason;
    Owner<QV_BYTE_SINK> stream;
    int descriptor = -1;
    bool owned = false;
};

// ---- Terminal ----

struct Style
{
    const char *bold = "";
    const char *dim = "";
    const char *name = "";
    const char *text = "";
    const char *number = "";
    const char *word = "";
    const char *bad = "";
    const char *good = "";
    const char *off = "";
};

// The colours of a descriptor: all empty unless it is a terminal and the user hasn't refused colours.
const Style &styleOf( int descriptor );

// A line on standard error that tells how far the work is, once it has taken more than a second; only on a terminal.
class Progress
{
  public:
    // total is in units, 0 if not known.
    Progress( std::string label, long long total, const char *unit );
    ~Progress();
    Progress( const Progress & ) = delete;
    Progress &operator=( const Progress & ) = delete;
    void advance( long long done );

  private:
    std::string label;
    const char *unit;
    long long total;
    double start;
    double next;
    bool terminal;
};

// The same for work that doesn't tell how far it is: the line counts the seconds meanwhile.
class Watch
{
  public:
    explicit Watch( std::string task );
    ~Watch();
    Watch( const Watch & ) = delete;
    Watch &operator=( const Watch & ) = delete;
    // What is done from now on.
    void step( std::string task );

  private:
    void tell();

    std::mutex lock; // of the three below
    std::string label;
    bool ended = false;
    bool shown = false;
    std::condition_variable wake;
    std::thread teller; // runs only on a terminal
};
// A heading, and a line below it: a label in a column of its own, and what it stands for.
void printTitle( Output &out, std::string_view title );
void printFact( Output &out, std::string label, std::string_view text, size_t width = 16 );

// Takes the progress line off the terminal before something else is printed there.
void clearProgressLine();

// Prints a line on standard error in its place. False if that fails.
bool printMessage( const std::string &text );

// ---- Subtools ----

struct Option
{
    char letter;       // 0 for none
    const char *name;  // without dashes
    const char *value; // what its argument is called, null if it takes none
    const char *text;
    const char *choices = nullptr; // what its argument may be, separated by blanks, if that is a fixed set
};

struct Example
{
    const char *line;
    const char *text;
};

struct Tool;
struct Arguments;

inline constexpr size_t noLimit = SIZE_MAX;

// One row for each subtool; parsing, help and everything printed of it come from here.
struct Command
{
    const char *name; // as typed behind "qv", for example "store show"
    const char *operands;
    size_t least;
    size_t most; // or noLimit
    const char *summary;
    const char *details; // may be null
    std::span<const Option> options;
    std::span<const Example> examples;
    void ( *run )( Tool &tool, const Arguments &arguments );
    bool paths = false;         // needs the product's paths, which the library's minimal start leaves out
    QV_RUNTIME_FLAGS flags = 0; // and these flags then
};

struct Group
{
    const char *name; // null: its commands stand alone
    const char *summary;
    std::span<const Command *const> commands;
    const qvToolSwitchToolFunc *functions; // of the commands, in their order
};

extern const Command storeShow, storeCheck, storeConvert, storeGet, storeSet, storeDel;
extern const Command jsonCheck, jsonFormat, jsonGet;
extern const Command textConvert, textInfo, textCharsets;
extern const Command processShow;
extern const Command crash;
extern const Command moduleList, moduleCheck;
extern const Command tagMatch, tagRewrite;
extern const Command charFacts, timeFacts, zoneFacts;
extern const Command info, installShow, installWrite;
extern const Command help, generate;

// Everything that the command has: groups of subtools, and groups without a name, whose subtools stand alone.
std::span<const Group> groups();

// The word that a command is called by within its group.
const char *wordOf( const Group &group, const Command &command );

// What the command is for, as a sentence; and what holds for all subtools, each a word and its meaning.
extern const char purpose[];
struct Meaning
{
    const char *word;
    const char *text;
};
extern const std::span<const Meaning> everywhere, exitCodes, variables;

// That and --help, as every subtool has them.
std::vector<const Option *> allOptions( const Command &command );

// ---- One run ----

struct Tool
{
    Output out;
    QV_MESSAGE_SINK *messages = nullptr;
    const Group *group = nullptr; // what was called so far
    const Command *command = nullptr;
    int status = statusGood;
    bool paths = false;   // the library was started with the product's paths
    bool restart = false; // the command needs them: nothing is done yet

    // Messages; an error sets the status to statusData, or stays at a worse one. place may be null.
    void error( QV_LOCATION *place, std::string_view text );
    void error( std::string_view file, std::string_view text );
    void warning( std::string_view file, std::string_view text );
    void report( QV_MESSAGE *message );
    // An error of the command line, with a hint where help is.
    void usage( std::string_view text );
    void usageHint();
    // What was called: "qv", "qv store" or "qv store show".
    std::string name() const;
};

struct Arguments
{
    std::vector<String> operands;
    std::vector<std::pair<const Option *, std::string>> options;

    bool has( std::string_view name ) const;
    std::optional<std::string> value( std::string_view name ) const; // of its last occurrence
    std::string operand( size_t index ) const;
};

// Runs what the whole command line calls.
void runTools( Tool &tool, QV_VECTOR *argv );

// Parses the arguments of one command, answers --help, and runs. False if the status isn't good.
bool runCommand( Tool &tool, const Command &command, QV_VECTOR *argv );

void printHelp( Tool &tool, const Command &command );
void printHelp( Tool &tool, const Group &group );
void printHelp( Tool &tool );

// ---- Manual page and completions ----

// The identifiers that install information takes, separated by blanks.
std::string systemNames();
std::string machineNames();
std::string variantNames();

// What an argument is, for its completion.
enum class Kind
{
    other,
    files,
    folders,
    words, // one of some words
    tools  // a tool's name
};

struct Slot
{
    std::string name; // as help shows it
    Kind kind = Kind::other;
    std::string words; // separated by blanks
    bool again = false;
};

Slot slotOf( const Option &option );
std::vector<Slot> slotsOf( const Command &command );

// The texts of the files that help a user outside of the command itself.
std::string manualPage();
std::string bashCompletion();
std::string zshCompletion();
std::string fishCompletion();

// ---- Input ----

// The name of a file as typed, for messages: "-" is "<stdin>".
std::string shownName( const std::string &name );

// The location of a file by its name as typed, "-" being standard input.
Owner<QV_LOCATION> locationOf( const std::string &name );
Owner<QV_PATH> pathOf( const std::string &name );

// The bytes of a file, or of standard input for "-"; null after an error message.
Owner<QV_BUFFER> readFile( Tool &tool, const std::string &name );

// Checks all operands and prints how many are good. An operand that is a folder stands for the files below it whose
// names end with the suffix. isGood reports what is wrong with a file.
void checkFiles( Tool &tool, const Arguments &arguments, std::string_view suffix,
                 const std::function<bool( const std::string &name )> &isGood );

// Where the first invalid byte sequence stands, by line and column of the characters before it. Null if there is none.
Owner<QV_LOCATION> locateInvalid( QV_BUFFER *buffer, QV_LOCATION *base, QV_INT charset );

// ---- The product's paths ----

// The library makes the product's data folders when it works out the paths. These two calls, before and after the end of
// the minimal start, let the next start work them out without making any.
void findDataPlaces();
void hideDataPlaces();

// The paths, as after a start that makes the folders.
Owner<QV_RUNTIME_PATHS> runtimePaths();

// ---- Texts ----

// A name of the library without its prefix, in lower case with dashes: "QV_NLF_FLAG_CRLF" gives "crlf".
std::string shortName( std::string_view prefix, QV_STRING *name );
// The other way round.
String longName( std::string_view prefix, std::string_view name );

// The value of an option as a charset, or as a normal form; what is there stays if it isn't given. False after a usage
// error.
bool takeCharset( Tool &tool, const Arguments &arguments, const char *option, QV_CHARSET &charset );
bool takeForm( Tool &tool, const Arguments &arguments, QV_UNICODE_NORMAL_FORM &form );

// "--one and --other exclude each other", a usage error.
void usageExclusive( Tool &tool, std::string_view one, std::string_view other );

// A time as the library reads it, "now", or "@" and seconds since the start of 1970. Null if it is none.
Owner<QV_TIME> readTime( const std::string &text );

std::string grouped( long long number );
std::string codePoint( QV_CHAR ch );
// Of a clock: "07".
std::string twoDigits( long long number );
std::string padded( std::string text, size_t width );
// The column of a number, right-aligned.
std::string aligned( std::string text, size_t width );
// The text with each occurrence of one of the characters behind a prefix.
std::string prefixed( std::string_view text, std::string_view characters, std::string_view prefix );
// "1 file", "2 files".
std::string counted( long long number, const char *noun );

} // namespace tool

#endif
