// Tool switches: which tool a first argument leads to, and what goes to the message sink when it leads to none.

#include "support/test.hh"
#include "support/message.hh"

#include <qv/base/qv_tool_switch.hh>

using namespace test;

namespace
{

using Switch = Local<QV_TOOL_SWITCH>;

// What a run leaves behind: the messages, and which tool ran with which arguments.
struct Record : KeptMessages
{
    std::string ran;
};

QV_BOOL note( const char *tool, QV_VECTOR *argv, void *closure )
{
    static_cast<Record *>( closure )->ran = tool + takeUtf8( qvVectorToString( argv ) );
    return QV_TRUE;
}

QV_BOOL runFirst( QV_VECTOR *argv, QV_MESSAGE_SINK *, void *closure )
{
    return note( "first", argv, closure );
}

QV_BOOL runSecond( QV_VECTOR *argv, QV_MESSAGE_SINK *, void *closure )
{
    return note( "second", argv, closure );
}

QV_BOOL runFailing( QV_VECTOR *argv, QV_MESSAGE_SINK *out, void *closure )
{
    note( "failing", argv, closure );
    qvMessageSinkWriteCstr( out, QV_MESSAGE_LEVEL_WARNING, nullptr, "from the tool", -1 );
    return QV_FALSE;
}

struct Tool
{
    const char *name;
    qvToolSwitchToolFunc func;
};

Switch switchOf( const std::vector<Tool> &tools )
{
    Switch ts( qvToolSwitchCreate() );
    for ( const Tool &tool : tools )
        qvToolSwitchSetToolCstr( ts.edit(), tool.name, -1, tool.func );
    return ts;
}

TEST( ToolSwitch, Runs )
{
    const std::vector<Tool> three = {
        { "beta", runSecond }, { "alpine", runFailing }, { "alpha", runFirst } };
    const std::vector<Tool> lists = { { "listall", runSecond }, { "list", runFirst } };
    const std::vector<Tool> nested = { { "a", runFirst }, { "abc", runSecond }, { "abd", runSecond } };
    const std::string listed = "<alpha, alpine, beta>";
    struct
    {
        std::vector<Tool> tools;
        std::vector<std::string> argv;
        bool result;
        std::string ran;
        std::vector<std::string> messages;
    } const cases[] = {
        { three, { "beta" }, true, "second<>", {} },
        { three, { "b", "x", "y" }, true, "second<x, y>", {} },
        { three, { "alph" }, true, "first<>", {} },
        { three, { "alpi", "x" }, false, "failing<x>", { "warning: from the tool" } },
        { three, { "al", "x" }, false, "", { "error: al: ambiguous", listed } },
        { three, { "x" }, false, "", { "error: x: invalid argument", listed } },
        { three, { "betas" }, false, "", { "error: betas: invalid argument", listed } },
        { three, { "Beta" }, false, "", { "error: Beta: invalid argument", listed } },
        { three, { "" }, false, "", { "error: : ambiguous", listed } },
        { three, {}, false, "", { "error: missing argument", listed } },
        { lists, { "list" }, true, "first<>", {} },
        { lists, { "lista" }, true, "second<>", {} },
        { lists, { "lis" }, false, "", { "error: lis: ambiguous", "<list, listall>" } },
        { nested, { "a" }, true, "first<>", {} },
        { nested, { "ab" }, false, "", { "error: ab: ambiguous", "<a, abc, abd>" } },
        { { { "only", runFirst } }, { "" }, true, "first<>", {} },
        { { { "only", runFirst }, { "", runSecond } }, { "" }, true, "second<>", {} },
        { { { "idle", nullptr } }, { "i" }, true, "", {} },
        { { { "twice", runFirst }, { "twice", runSecond } }, { "twice" }, true, "second<>", {} },
        { {}, { "x" }, false, "", { "error: x: invalid argument" } },
        { {}, {}, false, "", { "error: missing argument" } },
    };
    for ( const auto &c : cases )
    {
        std::string name = c.argv.empty() ? "no argument" : c.argv[0];
        for ( bool refuseWrites : { false, true } )
        {
            Record record;
            record.refuseWrites = refuseWrites;
            Local<QV_MESSAGE_SINK> out = record.sink();
            Local<QV_VECTOR> argv = vectorOf( c.argv );
            EXPECT_EQ( qvToolSwitchRunTool( switchOf( c.tools ), argv, out, &record ), c.result ) << name;
            EXPECT_EQ( record.ran, c.ran ) << name;
            if ( !refuseWrites )
            {
                EXPECT_EQ( record.written, c.messages ) << name;
            }
            EXPECT_EQ( qvVectorLength( argv ), lengthOf( c.argv ) ) << name;
        }
    }
}

TEST( ToolSwitch, AnyObjectNamesATool )
{
    Record record;
    Local<QV_MESSAGE_SINK> out = record.sink();
    Local<QV_VECTOR> argv( qvVectorCreate() );
    qvVectorAppendInt( argv.edit(), 42 );
    EXPECT_TRUE( qvToolSwitchRunTool( switchOf( { { "42", runFirst } } ), argv, out, &record ) );
    EXPECT_EQ( record.ran, "first<>" );
}

TEST( ToolSwitch, EditsKeepSharedSwitches )
{
    Switch before = switchOf( { { "b", runFirst }, { "a", runFirst } } );
    auto after = Switch::share( before );
    qvToolSwitchSetToolWcstr( after.edit(), L"ä", -1, runFirst );
    qvToolSwitchDelToolCstr( after.edit(), "axe", 1 );
    qvToolSwitchDelTool( after.edit(), text( "missing" ) );
    EXPECT_TRUE( qvToolSwitchHasToolCstr( after, "ä", -1 ) );
    EXPECT_FALSE( qvToolSwitchHasTool( after, text( "a" ) ) );
    Local<QV_VECTOR> names( qvToolSwitchToolsVector( before ) );
    EXPECT_EQ( takeUtf8( qvVectorToString( names ) ), "<a, b>" );

    Switch copy( qvToolSwitchCreateFrom( before ) );
    qvToolSwitchDelToolWcstr( copy.edit(), L"b", -1 );
    qvToolSwitchSetTool( copy.edit(), text( "a" ), nullptr );
    EXPECT_FALSE( qvToolSwitchHasToolWcstr( copy, L"b", -1 ) );
    EXPECT_TRUE( qvToolSwitchHasToolWcstr( before, L"b", -1 ) );
    Record record;
    Local<QV_MESSAGE_SINK> out = record.sink();
    EXPECT_TRUE( qvToolSwitchRunTool( before, vectorOf( { "a" } ), out, &record ) );
    EXPECT_EQ( record.ran, "first<>" ) << "the copy's tool has no function, this one's still has";
}

} // namespace
