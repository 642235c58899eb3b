// Options: what each element of an argument vector turns into, the definition's copies, and typed arguments.

#include "support/test.hh"

#include <qv/base/qv_opt_def.hh>
#include <qv/base/qv_opt_seq.hh>

using namespace test;

namespace
{

using Definition = Local<QV_OPT_DEF>;
using Sequence = Local<QV_OPT_SEQ>;
using Arguments = Local<QV_VECTOR>;

enum Id : QV_INT
{
    idPlain = 0,
    idOther = 1,
    idFile = 2,
    idOnce = 3,
    idSkip = 4,
    idExact = 5,
    idSkipFile = 6,
    idArg = 9,
};

// Short and long options of each kind; -a and --name, and --nap, share nothing but their beginnings.
Definition definition( bool allowArgs )
{
    Definition def( qvOptDefCreate() );
    qvOptDefSetShortOpt( def.edit(), 'a', idPlain );
    qvOptDefSetShortOpt( def.edit(), 'b', idOther );
    qvOptDefSetShortOpt( def.edit(), 'f', idFile );
    qvOptDefSetShortOpt( def.edit(), 'o', idOnce );
    qvOptDefSetShortOpt( def.edit(), 'i', idSkip );
    qvOptDefSetShortOpt( def.edit(), U'ä', idOther );
    qvOptDefSetLongOptCstr( def.edit(), "name", -1, idPlain );
    qvOptDefSetLongOptCstr( def.edit(), "nap", -1, idOther );
    qvOptDefSetLongOptCstr( def.edit(), "file", -1, idFile );
    qvOptDefSetLongOptWcstr( def.edit(), L"filename", -1, idFile );
    qvOptDefSetLongOptCstr( def.edit(), "once", -1, idOnce );
    qvOptDefSetLongOptCstr( def.edit(), "skip", -1, idSkip );
    qvOptDefSetLongOptCstr( def.edit(), "ignored-file", -1, idSkipFile );
    qvOptDefSetLongOptCstr( def.edit(), "exact", -1, idExact );
    qvOptDefSetFlags( def.edit(), idFile, QV_OPT_FLAG_ARGUMENT );
    qvOptDefSetFlags( def.edit(), idOnce, QV_OPT_FLAG_ONCE );
    qvOptDefSetFlags( def.edit(), idSkip, QV_OPT_FLAG_IGNORE );
    qvOptDefSetFlags( def.edit(), idSkipFile, QV_OPT_FLAG_IGNORE | QV_OPT_FLAG_ARGUMENT );
    qvOptDefSetFlags( def.edit(), idExact, QV_OPT_FLAG_NO_ABBREV | QV_OPT_FLAG_ARGUMENT );
    if ( allowArgs )
        qvOptDefSetArgOnly( def.edit(), idArg );
    return def;
}

// A vector of the words; one that begins with "#" stands for a boxed integer.
Arguments arguments( const std::vector<std::string> &words )
{
    Arguments argv( qvVectorCreate() );
    for ( const std::string &word : words )
    {
        if ( word.starts_with( '#' ) )
            qvVectorAppendInt( argv.edit(), std::stoll( word.substr( 1 ) ) );
        else
            qvVectorAppendStringCstr( argv.edit(), word.data(), lengthOf( word ) );
    }
    return argv;
}

// The last step as one line: the id, then the option, the argument and the error as far as they are there.
std::string shown( QV_OPT_SEQ *seq )
{
    EXPECT_EQ( qvOptSeqId( seq ), qvOptSeqIdSecondary( seq ) );
    std::string line = std::to_string( qvOptSeqId( seq ) );
    if ( qvOptSeqHasOpt( seq ) )
        line += " " + takeUtf8( qvOptSeqOpt( seq ) );
    if ( qvOptSeqHasArg( seq ) )
        line += " [" + takeUtf8( qvOptSeqArgString( seq ) ) + "]";
    if ( qvOptSeqHasError( seq ) )
        line += " ! " + takeUtf8( qvOptSeqError( seq ) );
    return line;
}

std::vector<std::string> walked( QV_OPT_DEF *def, const std::vector<std::string> &words )
{
    Sequence seq( qvOptSeqCreate( def, arguments( words ) ) );
    std::vector<std::string> steps;
    while ( qvOptSeqHasNext( seq ) )
    {
        QV_INT id = qvOptSeqNext( seq );
        EXPECT_EQ( qvOptSeqId( seq ), id );
        steps.push_back( shown( seq ) );
    }
    return steps;
}

struct Walk
{
    std::vector<std::string> words, steps;
};

void expectWalks( QV_OPT_DEF *def, std::initializer_list<Walk> walks )
{
    for ( const Walk &walk : walks )
    {
        std::string line;
        for ( const std::string &word : walk.words )
            line += word + " ";
        EXPECT_EQ( walked( def, walk.words ), walk.steps ) << line;
    }
}

TEST( OptSeq, OptionsAndArguments )
{
    expectWalks( definition( true ),
                 {
                     { {}, {} },
                     { { "--" }, {} },
                     { { "-" }, { "9 [-]" } },
                     { { "" }, { "9 []" } },
                     { { "x", "-a", "y" }, { "9 [x]", "0 -a", "9 [y]" } },
                     { { "-a", "--" }, { "0 -a" } },
                     { { "-a", "--", "-b", "--", "--nap" }, { "0 -a", "9 [-b]", "9 [--]", "9 [--nap]" } },
                     { { "--", "x", "--" }, { "9 [x]" } },
                     { { "-ab" }, { "0 -a", "1 -b" } },
                     { { "-abf", "x" }, { "0 -a", "1 -b", "2 -f [x]" } },
                     { { "-afb", "x" }, { "0 -a", "2 -f [b]", "9 [x]" } },
                     { { "-ffile", "-f", "file", "-f=x" }, { "2 -f [file]", "2 -f [file]", "2 -f [=x]" } },
                     { { "-f", "-a", "-f", "--" }, { "2 -f [-a]", "2 -f [--]" } },
                     { { "-ä" }, { "1 -ä" } },
                     { { "--name", "--nap", "--file=x" }, { "0 --name", "1 --nap", "2 --file [x]" } },
                     { { "--file=" }, { "2 --file []" } },
                     { { "--file=a=b" }, { "2 --file [a=b]" } },
                     { { "--file", "--", "y" }, { "2 --file [--]", "9 [y]" } },
                     { { "--filen", "x" }, { "2 --filen [x]" } },
                     { { "--exact", "x", "--exact=y" }, { "5 --exact [x]", "5 --exact [y]" } },
                     { { "#5", "-a" }, { "9 [5]", "0 -a" } },
                     { { "-f", "#-7" }, { "2 -f [-7]" } },
                 } );
}

TEST( OptSeq, ErrorsLeaveTheRest )
{
    expectWalks(
        definition( false ),
        {
            { { "x", "-a" }, { "-7 ! non-option argument disallowed", "0 -a" } },
            { { "-5" }, { "-1 -5 ! -5: option undefined" } },
            { { "-xa" }, { "-1 -x ! -x: option undefined", "0 -a" } },
            { { "--none=x", "-a" }, { "-1 --none [x] ! --none: option undefined", "0 -a" } },
            { { "--na" }, { "-2 --na ! --na: ambiguous" } },
            { { "--fi=x" }, { "-2 --fi [x] ! --fi: ambiguous" } },
            { { "--=x" }, { "-2 -- [x] ! --: ambiguous" } },
            { { "-f" }, { "-3 -f ! -f: argument missing" } },
            { { "--file" }, { "-3 --file ! --file: argument missing" } },
            { { "--name=", "-a" }, { "-4 --name [] ! --name: argument disallowed", "0 -a" } },
            { { "--exa", "x", "-a" }, { "-6 --exa [x] ! --exa: abbreviated option disallowed", "0 -a" } },
            { { "--exa" }, { "-3 --exa ! --exa: argument missing" } },
            { { "-o", "--once", "-a" },
              { "3 -o", "-5 --once ! --once: multiple options disallowed", "0 -a" } },
            { { "-oo" }, { "3 -o", "-5 -o ! -o: multiple options disallowed" } },
            { { "--once=x", "--once" }, { "-4 --once [x] ! --once: argument disallowed", "3 --once" } },
            { { "--skip=x" }, { "-4 --skip [x] ! --skip: argument disallowed" } },
        } );
}

TEST( OptSeq, IgnoredOptions )
{
    expectWalks( definition( true ),
                 {
                     { { "--skip", "-a" }, { "0 -a" } },
                     { { "-iai", "x" }, { "0 -a", "9 [x]" } },
                     { { "--ignored-file", "-b", "-a" }, { "0 -a" } },
                     { { "--ignored-file=x", "--skip", "--file", "y" }, { "2 --file [y]" } },
                     { { "-a", "--skip" }, { "0 -a", "-8" } },
                     { { "-i", "--" }, { "-8" } },
                     { { "-ii", "--", "-a" }, { "9 [-a]" } },
                 } );
}

TEST( OptSeq, DeferredObjects )
{
    Definition def = definition( true );
    qvOptDefSetReorder( def.edit(), QV_TRUE );
    expectWalks( def, {
                          { { "#1", "-a", "#2", "-b" }, { "0 -a", "1 -b", "9 [1]", "9 [2]" } },
                          { { "#1", "x", "-a" }, { "9 [x]", "0 -a", "9 [1]" } },
                          { { "#1", "-f", "#2", "-fx" }, { "2 -f [2]", "2 -f [x]", "9 [1]" } },
                          { { "#1", "--", "#2", "-a" }, { "9 [1]", "9 [2]", "9 [-a]" } },
                          { { "#1", "-i" }, { "9 [1]" } },
                          { { "#1", "--skip", "--" }, { "9 [1]" } },
                          { { "#1", "-f" }, { "-3 -f ! -f: argument missing", "9 [1]" } },
                      } );
    qvOptDefSetStringize( def.edit(), QV_TRUE );
    expectWalks( def, { { { "#1", "#-5", "-a" }, { "9 [1]", "-1 -5 ! -5: option undefined", "0 -a" } } } );
}

TEST( OptSeq, CallersVectorStaysAndTheRestCanBeTaken )
{
    Arguments argv = arguments( { "-ab", "#3", "--" } );
    Definition def = definition( true );
    qvOptDefSetStringize( def.edit(), QV_TRUE );
    {
        Sequence seq( qvOptSeqCreate( def, argv ) );
        EXPECT_EQ( qvOptSeqId( seq ), QV_OPT_ID_UNDEFINED );
        EXPECT_EQ( qvOptSeqNext( seq ), idPlain );
        Arguments rest( qvOptSeqRemainingArgv( seq ) );
        EXPECT_EQ( takeUtf8( qvVectorToString( rest ) ), "<-b, 3, -->" );
        EXPECT_EQ( qvOptSeqNext( seq ), idOther );
        EXPECT_EQ( takeUtf8( qvVectorToString( rest ) ), "<-b, 3, -->" ) << "the walk goes on without it";
        EXPECT_EQ( qvOptSeqNext( seq ), idArg );
        EXPECT_FALSE( qvOptSeqHasNext( seq ) );
        EXPECT_DEATH( qvOptSeqNext( seq ), "qvOptSeqHasNext" );
    }
    EXPECT_EQ( takeUtf8( qvVectorToString( argv ) ), "<-ab, 3, -->" );
    EXPECT_EQ( qvVectorSortAt( argv, 1 ), qvBoxedIntSort() );
}

// A text argument, or an object that is handed over.
struct Typed
{
    const char *text;
    qvObj object;
    bool isReal;
    double real;
    bool isInt;
    QV_INT integer;
};

Sequence sequenceOf( const Typed &row )
{
    Local<qv___Obj> arg( row.object ? row.object : qvStringObj( qvStringCreateFromCstr( row.text, -1 ) ) );
    Arguments argv( qvVectorCreateFromObj( arg ) );
    Sequence seq( qvOptSeqCreate( definition( true ), argv ) );
    qvOptSeqNext( seq );
    return seq;
}

qvObj realObj( double value )
{
    return qvBoxedRealObj( qvBoxedRealCreate( value ) );
}

TEST( OptSeq, ArgumentsAsNumbers )
{
    const Typed rows[] = {
        { "12", nullptr, true, 12, true, 12 },
        { "0x1F", nullptr, true, 31, true, 31 },
        { "2.5", nullptr, true, 2.5, false, 0 },
        { "12x", nullptr, false, 0, false, 0 },
        { "", nullptr, false, 0, false, 0 },
        { "x", nullptr, false, 0, false, 0 },
        { "9223372036854775808", nullptr, true, 9223372036854775808.0, false, 0 },
        { "", qvBoxedIntObj( qvBoxedIntCreate( -3 ) ), true, -3, true, -3 },
        { "", qvBoxedBoolObj( qvBoxedBoolCreate( QV_TRUE ) ), false, 0, false, 0 },
        { "", realObj( 2.5 ), true, 2.5, false, 0 },
        { "", realObj( -4 ), true, -4, true, -4 },
        { "", realObj( -9223372036854775808.0 ), true, -9223372036854775808.0, true, QV_INT_MIN },
        { "", realObj( 9223372036854775808.0 ), true, 9223372036854775808.0, false, 0 },
        { "", realObj( HUGE_VAL ), true, HUGE_VAL, false, 0 },
        { "", realObj( -HUGE_VAL ), true, -HUGE_VAL, false, 0 },
    };
    for ( const Typed &row : rows )
    {
        Sequence seq = sequenceOf( row );
        std::string name = shown( seq );
        EXPECT_EQ( qvOptSeqArgIsReal( seq ), row.isReal ) << name;
        EXPECT_DOUBLE_EQ( qvOptSeqArgReal( seq ), row.real ) << name;
        EXPECT_EQ( qvOptSeqArgIsInt( seq ), row.isInt ) << name;
        EXPECT_EQ( qvOptSeqArgInt( seq ), row.integer ) << name;
    }
    Sequence nan = sequenceOf( { "", realObj( std::nan( "" ) ), true, 0, false, 0 } );
    EXPECT_TRUE( qvOptSeqArgIsReal( nan ) );
    EXPECT_FALSE( qvOptSeqArgIsInt( nan ) );
    EXPECT_EQ( qvOptSeqArgInt( nan ), 0 );
}

TEST( OptSeq, ArgumentsAsTruthValues )
{
    struct
    {
        const char *text;
        qvObj object;
        bool isBool, value;               // without numbers
        bool isNumericBool, numericValue; // with numbers
    } const rows[] = {
        { "true", nullptr, true, true, true, true },
        { "false", nullptr, true, false, true, false },
        { "1", nullptr, false, false, true, true },
        { "0", nullptr, false, false, true, false },
        { "truex", nullptr, false, false, false, false },
        { "", nullptr, false, false, false, false },
        { "", qvBoxedBoolObj( qvBoxedBoolCreate( QV_TRUE ) ), true, true, true, true },
        { "", qvBoxedBoolObj( qvBoxedBoolCreate( QV_FALSE ) ), true, false, true, false },
        { "", qvBoxedIntObj( qvBoxedIntCreate( 1 ) ), false, false, true, true },
        { "", qvBoxedIntObj( qvBoxedIntCreate( 0 ) ), false, false, true, false },
        { "", realObj( 0 ), false, false, true, false },
        { "", qvBoxedNullObj( qvBoxedNullCreate() ), false, false, false, false },
    };
    for ( const auto &row : rows )
    {
        Sequence seq = sequenceOf( { row.text, row.object, false, 0, false, 0 } );
        std::string name = shown( seq );
        EXPECT_EQ( qvOptSeqArgIsBool( seq, QV_FALSE ), row.isBool ) << name;
        EXPECT_EQ( qvOptSeqArgBool( seq, QV_FALSE ), row.value ) << name;
        EXPECT_EQ( qvOptSeqArgIsBool( seq, QV_TRUE ), row.isNumericBool ) << name;
        EXPECT_EQ( qvOptSeqArgBool( seq, QV_TRUE ), row.numericValue ) << name;
    }
}

TEST( OptSeq, NoArgument )
{
    Sequence seq( qvOptSeqCreate( definition( true ), arguments( { "-a" } ) ) );
    qvOptSeqNext( seq );
    EXPECT_EQ( qvOptSeqArgObj( seq ), nullptr );
    EXPECT_EQ( qvOptSeqArgString( seq ), nullptr );
    EXPECT_EQ( qvOptSeqError( seq ), nullptr );
    EXPECT_FALSE( qvOptSeqArgIsReal( seq ) || qvOptSeqArgIsInt( seq ) || qvOptSeqArgIsBool( seq, QV_TRUE ) );
    EXPECT_EQ( qvOptSeqArgReal( seq ), 0.0 );
    EXPECT_EQ( qvOptSeqArgInt( seq ), 0 );
    EXPECT_FALSE( qvOptSeqArgBool( seq, QV_TRUE ) );
}

TEST( OptDef, LongNames )
{
    Definition def = definition( false );
    struct
    {
        const char *name;
        QV_INT exact, abbreviated;
        bool isAbbreviated;
    } const rows[] = {
        { "file", idFile, idFile, false },
        { "filen", -1, idFile, true },
        { "fil", -1, QV_OPT_ID_AMBIGUOUS, true }, // two names of one id
        { "na", -1, QV_OPT_ID_AMBIGUOUS, true },
        { "nam", -1, idPlain, true },
        { "names", -1, -1, false },
        { "Name", -1, -1, false },
        { "", -1, QV_OPT_ID_AMBIGUOUS, true },
    };
    for ( const auto &row : rows )
    {
        QV_BOOL abbreviated = QV_TRUE;
        auto name = text( std::string_view( row.name ) );
        EXPECT_EQ( qvOptDefLongOpt( def, name, QV_FALSE, &abbreviated ), row.exact ) << row.name;
        EXPECT_FALSE( abbreviated ) << row.name;
        EXPECT_EQ( qvOptDefLongOpt( def, name, QV_TRUE, &abbreviated ), row.abbreviated ) << row.name;
        EXPECT_EQ( abbreviated, row.isAbbreviated ) << row.name;
        EXPECT_EQ( qvOptDefLongOpt( def, name, QV_TRUE, nullptr ), row.abbreviated ) << row.name;
    }
}

TEST( OptDef, EditsKeepSharedDefinitions )
{
    Definition before = definition( false );
    auto after = Definition::share( before );
    qvOptDefSetShortOpt( after.edit(), 'a', 7 );
    qvOptDefSetLongOpt( after.edit(), text( "name" ), 7 );
    qvOptDefSetFlags( after.edit(), idFile, 0 );
    qvOptDefSetArgOnly( after.edit(), 8 );
    qvOptDefSetReorder( after.edit(), 5 );
    qvOptDefSetStringize( after.edit(), 5 );
    EXPECT_EQ( qvOptDefShortOpt( after, 'a' ), 7 );
    EXPECT_EQ( qvOptDefLongOpt( after, text( "name" ), QV_FALSE, nullptr ), 7 );
    EXPECT_EQ( qvOptDefFlags( after, idFile ), 0 );
    EXPECT_EQ( qvOptDefArgOnly( after ), 8 );
    EXPECT_EQ( qvOptDefReorder( after ), QV_TRUE );
    EXPECT_EQ( qvOptDefStringize( after ), QV_TRUE );

    EXPECT_EQ( qvOptDefShortOpt( before, 'a' ), idPlain );
    EXPECT_EQ( qvOptDefShortOpt( before, 'z' ), QV_OPT_ID_UNDEFINED );
    EXPECT_EQ( qvOptDefLongOpt( before, text( "name" ), QV_FALSE, nullptr ), idPlain );
    EXPECT_EQ( qvOptDefFlags( before, idFile ), QV_OPT_FLAG_ARGUMENT );
    EXPECT_EQ( qvOptDefFlags( before, 77 ), 0 );
    EXPECT_EQ( qvOptDefArgOnly( before ), QV_OPT_ID_NON_OPTION );
    EXPECT_FALSE( qvOptDefReorder( before ) || qvOptDefStringize( before ) );
}

TEST( OptFlags, Names )
{
    EXPECT_EQ( takeUtf8( qvOptFlagsToString( 0 ) ), "" );
    EXPECT_EQ( takeUtf8( qvOptFlagsToString( 15 ) ), "ARGUMENT|IGNORE|ONCE|NO_ABBREV" );
    EXPECT_EQ( takeUtf8( qvOptFlagsToString( QV_INT_MIN | 0x14 ) ), "ONCE" );
}

TEST( OptDefDeath, FaultsOfTheCaller )
{
    Definition def( qvOptDefCreate() );
    EXPECT_DEATH( qvOptDefSetShortOpt( def.edit(), 'a', -1 ), "optId >= 0" );
    EXPECT_DEATH( qvOptDefSetLongOptCstr( def.edit(), "a", -1, -1 ), "optId >= 0" );
    EXPECT_DEATH( qvOptDefSetFlags( def.edit(), -1, 0 ), "optId >= 0" );
    EXPECT_DEATH( qvOptDefSetArgOnly( def.edit(), -7 ), "optId >= 0" );
    EXPECT_DEATH( qvOptDefSetLongOptCstr( def.edit(), "", 0, 1 ), "Length" );
    EXPECT_DEATH( qvOptSeqCreate( def, nullptr ), "argv" );
}

} // namespace
