// qv text convert: a stream of pieces, so that texts of any length pass in little memory.

#include "tool.hh"

#include <qv/charset/qv_charset.h>
#include <qv/io/qv_nlf_flags.h>
#include <qv/io/qv_stream_author.h>
#include <qv/unicode/qv_unicode_normalizer.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using tool::Arguments;
using tool::Output;
using tool::Owner;
using tool::String;
using tool::Tool;

constexpr QV_INT pieceChars = 64 * 1024;

// ---- Options ----

enum class Case
{
    same,
    upper,
    lower,
    fold
};

struct Plan
{
    QV_CHARSET from = QV_CHARSET_UTF_8;
    QV_CHARSET to = QV_CHARSET_UTF_8;
    QV_CHARSET_FLAGS invalid = 0;
    bool insertMark = false;
    String newLine; // null: as in the source
    QV_UNICODE_NORMAL_FORM form = -1;
    Case letters = Case::same;
};

bool takeNewLine( Tool &tool, const Arguments &arguments, String &newLine )
{
    std::optional<std::string> name = arguments.value( "newline" );
    if ( !name )
        return true;
    String symbol = tool::longName( "QV_NLF_FLAG_", *name );
    QV_NLF_FLAGS flags = qvNlfFlagsFromString( symbol );
    // One name only: the text form of the flags must be the name again.
    if ( flags == 0 || !qvStringEquals( String( qvNlfFlagsToString( flags ) ), symbol ) )
    {
        tool.usage( *name + ": no such new-line form, there are: lf, cr, crlf, nel, vt, ff, ls, ps" );
        return false;
    }
    newLine = String( qvNlfFlagsNlfString( flags ) );
    return true;
}

template <typename T>
bool takeChoice( Tool &tool, const Arguments &arguments, const char *option,
                 std::initializer_list<std::pair<const char *, T>> choices, T &chosen )
{
    std::optional<std::string> name = arguments.value( option );
    if ( !name )
        return true;
    std::string names;
    for ( const auto &[word, value] : choices )
    {
        if ( *name == word )
        {
            chosen = value;
            return true;
        }
        names += ( names.empty() ? "" : ", " ) + std::string( word );
    }
    tool.usage( *name + ": --" + option + " is one of: " + names );
    return false;
}

bool takePlan( Tool &tool, const Arguments &arguments, Plan &plan )
{
    plan.insertMark = arguments.has( "bom" );
    return tool::takeCharset( tool, arguments, "from", plan.from ) &&
           tool::takeCharset( tool, arguments, "to", plan.to ) &&
           takeNewLine( tool, arguments, plan.newLine ) && tool::takeForm( tool, arguments, plan.form ) &&
           takeChoice<Case>( tool, arguments, "case",
                             { { "upper", Case::upper }, { "lower", Case::lower }, { "fold", Case::fold } },
                             plan.letters ) &&
           takeChoice<QV_CHARSET_FLAGS>( tool, arguments, "invalid",
                                         { { "replace", 0 },
                                           { "ignore", QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS },
                                           { "abort", QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER } },
                                         plan.invalid );
}

// ---- Source ----

// The bytes of a file or of standard input, counted for the progress line.
struct Input
{
    int descriptor = -1;
    int failure = 0;
    long long bytesRead = 0;
    long long size = 0;

    explicit Input( const std::string &name )
        : descriptor( name == "-" ? STDIN_FILENO : open( name.c_str(), O_RDONLY | O_CLOEXEC ) )
    {
        struct stat status;
        if ( descriptor < 0 )
            failure = errno;
        else if ( fstat( descriptor, &status ) == 0 && S_ISREG( status.st_mode ) )
            size = status.st_size;
    }
    ~Input()
    {
        if ( descriptor > STDIN_FILENO )
            close( descriptor );
    }
    Input( const Input & ) = delete;
    Input &operator=( const Input & ) = delete;
};

QV_BOOL readInput( qvObj closure, unsigned char *bytes, QV_INT maxByteCount, QV_INT *bytesRead )
{
    auto *input = tool::unboxed<Input>( closure );
    while ( *bytesRead < maxByteCount )
    {
        ssize_t count =
            read( input->descriptor, bytes + *bytesRead, static_cast<size_t>( maxByteCount - *bytesRead ) );
        if ( count < 0 && errno == EINTR )
            continue;
        if ( count < 0 )
        {
            input->failure = errno;
            return QV_FALSE;
        }
        if ( count == 0 )
            break;
        *bytesRead += count;
        input->bytesRead += count;
    }
    return QV_TRUE;
}

Owner<QV_BYTE_SOURCE> sourceOf( Input &input )
{
    Owner closure = tool::boxOf( &input );
    return Owner( qv___ByteSourceCreate( readInput, nullptr, qvBoxedIntObj( closure ) ) );
}

// ---- Steps on a piece ----

bool isNewLine( QV_CHAR ch )
{
    // Vertical tab and form feed move the paper; they stay as they are.
    return ch == '\n' || ch == '\r' || ch == 0x85 || ch == 0x2028 || ch == 0x2029;
}

bool isHighSurrogate( QV_CHAR ch )
{
    return ch >= 0xD800 && ch <= 0xDBFF;
}

bool isLowSurrogate( QV_CHAR ch )
{
    return ch >= 0xDC00 && ch <= 0xDFFF;
}

// A high surrogate at the very end may wait for its low one.
QV_INT wholePairs( QV_STRING *text )
{
    QV_INT length = qvStringLength( text );
    return length > 0 && isHighSurrogate( qvStringCharAt( text, length - 1 ) ) ? length - 1 : length;
}

bool hasSurrogate( QV_STRING *text )
{
    const QV_CHAR *chs = qvStringBacking( text );
    return std::any_of( chs, chs + qvStringLength( text ),
                        []( QV_CHAR ch ) { return ( ch & 0xFFFFF800 ) == 0xD800; } );
}

// The first surrogate without its other half, or -1.
QV_INT findLoneSurrogate( QV_STRING *text )
{
    const QV_CHAR *chs = qvStringBacking( text );
    QV_INT length = qvStringLength( text );
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        if ( ( chs[idx] & 0xFFFFF800 ) != 0xD800 )
            continue;
        if ( !isHighSurrogate( chs[idx] ) || idx + 1 == length || !isLowSurrogate( chs[idx + 1] ) )
            return idx;
        idx++;
    }
    return -1;
}

// Sources of 16-bit units deliver the halves of pairs as they stand. Joined they are one character; a half on its own
// is invalid, and is dropped or replaced.
void joinPairs( String &text, bool drop )
{
    if ( !drop )
    {
        for ( QV_INT lone = findLoneSurrogate( text ); lone >= 0; lone = findLoneSurrogate( text ) )
            qvStringSetCharAt( text.edit(), lone, 0xFFFD );
    }
    qvStringSanitize( text.edit() );
}

// Where a text may be cut before all of it is known: in front of an ASCII character, which joins nothing before it in
// any normal form and whose case hangs on nothing before it, but not between carriage return and line feed. 0 if there is
// no such place among the last characters.
QV_INT safeCut( QV_STRING *text )
{
    const QV_CHAR *chs = qvStringBacking( text );
    QV_INT length = qvStringLength( text );
    QV_INT least = std::max<QV_INT>( 0, length - pieceChars );
    for ( QV_INT cut = length - 1; cut > least; cut-- )
    {
        if ( chs[cut] < 0x80 && chs[cut] != '\n' )
            return cut;
    }
    return 0;
}

void replaceNewLines( String &text, QV_STRING *newLine )
{
    String result( qvStringCreate() );
    const QV_CHAR *chs = qvStringBacking( text );
    QV_INT length = qvStringLength( text );
    QV_INT start = 0;
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        if ( !isNewLine( chs[idx] ) )
            continue;
        qvStringAppendChars( result.edit(), chs + start, idx - start );
        qvStringAppend( result.edit(), newLine );
        if ( chs[idx] == '\r' && idx + 1 < length && chs[idx + 1] == '\n' )
            idx++;
        start = idx + 1;
    }
    qvStringAppendChars( result.edit(), chs + start, length - start );
    text = std::move( result );
}

// Lines and columns of what was read, for the place of a fault.
struct Position
{
    QV_INT line = 1;
    QV_INT column = 1;
    QV_CHAR before = 0;

    void pass( QV_CHAR ch )
    {
        bool secondHalf = ch == '\n' && before == '\r';
        line += isNewLine( ch ) && !secondHalf;
        column = isNewLine( ch ) ? 1 : column + 1;
        before = ch;
    }
    void pass( QV_STRING *text )
    {
        const QV_CHAR *chs = qvStringBacking( text );
        for ( QV_INT idx = 0; idx < qvStringLength( text ); idx++ )
            pass( chs[idx] );
    }
    Owner<QV_LOCATION> in( const std::string &name ) const
    {
        Owner place = tool::locationOf( name );
        qvLocationSetLine( place.edit(), line );
        qvLocationSetColumn( place.edit(), column );
        return place;
    }
};

void applySteps( const Plan &plan, String &text )
{
    if ( plan.letters == Case::upper )
        qvStringToUpper( text.edit() );
    else if ( plan.letters == Case::lower )
        qvStringToLower( text.edit() );
    else if ( plan.letters == Case::fold )
        qvStringToCaseFold( text.edit() );
    if ( plan.form >= 0 )
        qvStringNormalize( text.edit(), plan.form );
    if ( plan.newLine )
        replaceNewLines( text, plan.newLine );
}

// ---- Conversion ----

class Conversion
{
  public:
    Conversion( Tool &runningTool, const Plan &given, const std::string &from, Output &to )
        : tool( runningTool ), plan( given ), name( from ), output( to ), input( from ),
          progress( "Converting " + from, input.size, "bytes" )
    {
    }

    // False after an error message.
    bool run()
    {
        if ( input.failure )
        {
            tool.error( tool::shownName( name ),
                        std::string( "can't read: " ) + std::strerror( input.failure ) );
            return false;
        }
        Owner bytes = sourceOf( input );
        Owner source( qvCharsetCreateCharSource( bytes, plan.from, plan.invalid ) );
        Owner sink( qvCharsetCreateCharSink( output.sink(), plan.to, sinkFlags() ) );
        // Where no step looks at the text it may be cut anywhere.
        bool wholesale = plan.letters == Case::same && plan.form < 0 && !plan.newLine;
        String waiting( qvStringCreate() );
        while ( !qvCharSourceEnd( source ) )
        {
            qvCharSourceRead( source, waiting.edit(), pieceChars );
            bool last = qvCharSourceEnd( source );
            QV_INT ready = last        ? qvStringLength( waiting )
                           : wholesale ? wholePairs( waiting )
                                       : safeCut( waiting );
            String piece( qvStringCreateFromLeading( waiting, ready ) );
            qvStringDelLeading( waiting.edit(), ready );
            if ( !pass( sink, piece ) )
                return false;
            progress.advance( input.bytesRead );
        }
        return ended( source ) && flushed( sink );
    }

  private:
    QV_CHARSET_FLAGS sinkFlags() const
    {
        return plan.invalid | ( plan.insertMark ? QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK : 0 );
    }

    bool pass( QV_CHAR_SINK *sink, String &piece )
    {
        bool abort = plan.invalid == QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER;
        if ( abort && !allPaired( piece ) )
            return false;
        if ( hasSurrogate( piece ) )
            joinPairs( piece, plan.invalid == QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS );
        if ( abort && !allFit( piece ) )
            return false;
        if ( abort )
            position.pass( piece );
        applySteps( plan, piece );
        if ( qvCharSinkWrite( sink, piece ) )
            return true;
        return writeFailed();
    }

    bool allPaired( QV_STRING *piece )
    {
        QV_INT lone = findLoneSurrogate( piece );
        if ( lone < 0 )
            return true;
        String before( qvStringCreateFromLeading( piece, lone ) );
        joinPairs( before, true );
        position.pass( before );
        tool.error( position.in( name ),
                    tool::codePoint( qvStringCharAt( piece, lone ) ) + ", half of a surrogate pair" );
        return false;
    }

    // Names the first character of the piece that the charset lacks. The charsets of bytes compose before they encode,
    // so that the piece is tried first as a whole.
    bool allFit( QV_STRING *piece )
    {
        String changed( qvStringCreateFrom( piece ) );
        applySteps( plan, changed );
        if ( fits( changed ) )
            return true;
        const QV_CHAR *chs = qvStringBacking( piece );
        for ( QV_INT idx = 0; idx < qvStringLength( piece ); idx++ )
        {
            String one( qvStringCreateFromCharsCopy( chs + idx, 1 ) );
            applySteps( plan, one );
            if ( !fits( one ) )
            {
                String charset( qvCharsetToIanaName( plan.to ) );
                tool.error( position.in( name ), tool::codePoint( chs[idx] ) + " doesn't exist in " +
                                                     tool::textOf( std::move( charset ) ) );
                return false;
            }
            position.pass( chs[idx] );
        }
        tool.error( position.in( name ), "a character doesn't exist in the charset to write" );
        return false;
    }

    bool fits( QV_STRING *text )
    {
        return Owner( qvCharsetTryConvertStringToBufferWithFlags(
            plan.to, text, QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER ) );
    }

    bool ended( QV_CHAR_SOURCE *source )
    {
        if ( !qvCharSourceError( source ) )
            return true;
        if ( input.failure )
            tool.error( tool::shownName( name ),
                        std::string( "can't read: " ) + std::strerror( input.failure ) );
        else
            tool.error( position.in( name ), "invalid byte sequence in " +
                                                 tool::textOf( String( qvCharsetToIanaName( plan.from ) ) ) );
        return false;
    }

    bool flushed( QV_CHAR_SINK *sink )
    {
        return qvCharSinkFlush( sink ) || writeFailed();
    }

    // What the file or the terminal refuses has a reason of its own, told when the output ends.
    bool writeFailed()
    {
        if ( output.isGood() )
            tool.error( position.in( name ), "can't be written in the charset" );
        else
            tool.error( output.displayName(), output.failure() );
        return false;
    }

    Tool &tool;
    const Plan &plan;
    const std::string name;
    Output &output;
    Input input;
    tool::Progress progress;
    Position position;
};

void runConvert( Tool &tool, const Arguments &arguments )
{
    Plan plan;
    if ( !takePlan( tool, arguments, plan ) )
        return;
    std::string from = arguments.operand( 0 );
    std::string to = arguments.operands.size() > 1 ? arguments.operand( 1 ) : "-";
    Output output( to );
    if ( !output.isGood() )
        return tool.error( output.displayName(), output.failure() );
    bool good = Conversion( tool, plan, from, output ).run();
    if ( good && !output.finish() )
        tool.error( output.displayName(), output.failure() );
}

// ---- Tables ----

const tool::Option convertOptions[] = {
    { 'f', "from", "CHARSET", "Charset of IN; UTF-8 if not given." },
    { 't', "to", "CHARSET", "Charset of OUT; UTF-8 if not given." },
    { 'n', "newline", "FORM", "Write all new-lines as lf, crlf, cr, nel, ls, ps, vt or ff.",
      "lf crlf cr nel ls ps vt ff" },
    { 'N', "normalize", "FORM", "Bring the text to the normal form C, KC, D or KD.", "C KC D KD" },
    { 'c', "case", "CASE", "Change letters: upper, lower or fold.", "upper lower fold" },
    { 'i', "invalid", "WAY",
      "What can't be read or written: replace it (so if not given), ignore it, or abort.",
      "replace ignore abort" },
    { 'b', "bom", nullptr, "Begin with a byte order mark, if OUT is in a form of Unicode." },
};
const tool::Example convertExamples[] = {
    { "qv text convert --from windows-1252 letter.txt letter-utf8.txt", "an old text to UTF-8" },
    { "qv text convert --newline lf --normalize C notes.txt notes.txt", "tidy a text in its place" },
    { "qv text convert --to iso-8859-15 --invalid abort notes.txt latin.txt", "stop at what Latin-9 lacks" },
    { "qv text convert --case upper - < words.txt", "as a filter" },
};

} // namespace

namespace tool
{

const Command textConvert = {
    "text convert",
    "IN [OUT]",
    1,
    2,
    "Convert text between charsets, new-line forms, normal forms and cases",
    "OUT is standard output if not given, and may be IN: a file is replaced when the result is complete. "
    "Changes are "
    "made in the order case, normal form, new-lines. The charsets of bytes are written in normal form C.",
    convertOptions,
    convertExamples,
    runConvert,
};

} // namespace tool
