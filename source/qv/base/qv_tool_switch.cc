#include <qv/base/qv_tool_switch.hh>

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/io/qv_message_sink.h>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV___TOOL_SWITCH_TOOL, qv___ToolSwitchTool, {} )
QV_SORT_DEFINE( QV_TOOL_SWITCH, qvToolSwitch, { .freeFunc = qv___ToolSwitchFreeFunc } )

namespace
{

QV_TOOL_SWITCH *createWith( QV_DICT *toolsGiven )
{
    auto *ts = qv::create<QV_TOOL_SWITCH>( qvToolSwitchSort() );
    ts->tools = toolsGiven;
    return ts;
}

// What a text stands for: the tool at idx, or with -1 none, perhaps because several names begin with it.
struct Choice
{
    QV_INT idx;
    bool isAmbiguous;
};

Choice chooseTool( QV_TOOL_SWITCH *ts, QV_STRING *text )
{
    QV_INT exact = qvDictIndexOfStringKey( ts->tools, text );
    if ( exact >= 0 )
        return { exact, false };
    Choice choice = { -1, false };
    const qv___DictPair *pairs = qv::dictPairs( ts->tools );
    for ( QV_INT idx = 0; idx < qv::dictLength( ts->tools ); idx++ )
    {
        if ( !qvStringBeginsWith( qvStringFrom( pairs[idx].key ), text ) )
            continue;
        if ( choice.idx >= 0 )
            return { -1, true };
        choice.idx = idx;
    }
    return choice;
}

// How a run fails after its error has gone out: with the list of tools, if there are any.
QV_BOOL failWithTools( QV_TOOL_SWITCH *ts, QV_MESSAGE_SINK *out )
{
    if ( qv::dictLength( ts->tools ) > 0 )
    {
        qvMessageSinkWriteFormatCstr( out, QV_MESSAGE_LEVEL_NORMAL, nullptr, "%~o", -1,
                                      qvVectorObj( qvToolSwitchToolsVector( ts ) ) );
    }
    return QV_FALSE;
}

} // namespace

void qv___ToolSwitchFreeFunc( qvObj thisObj )
{
    QV_TOOL_SWITCH *ts = qvToolSwitchFrom( thisObj );
    QV_CHECK( ts );
    qvDictRelease( ts->tools );
}

QV_TOOL_SWITCH *qvToolSwitchCreate( void )
{
    return createWith( qvDictCreate() );
}

QV_TOOL_SWITCH *qvToolSwitchCreateFrom( QV_TOOL_SWITCH *ts )
{
    QV_CHECK( ts );
    return createWith( qv::retained( ts->tools ) );
}

QV_VECTOR *qvToolSwitchToolsVector( QV_TOOL_SWITCH *ts )
{
    QV_CHECK( ts );
    return qvDictKeysVector( ts->tools );
}

QV_BOOL qvToolSwitchHasTool( QV_TOOL_SWITCH *ts, QV_STRING *tool )
{
    QV_CHECK( ts );
    QV_CHECK( tool );
    return qvDictHasStringKey( ts->tools, tool );
}

QV_BOOL qvToolSwitchHasToolCstr( QV_TOOL_SWITCH *ts, const char *tool, QV_INT toolLength )
{
    qv::Local<QV_STRING> name( qvStringCreateFromCstr( tool, toolLength ) );
    return qvToolSwitchHasTool( ts, name );
}

QV_BOOL qvToolSwitchHasToolWcstr( QV_TOOL_SWITCH *ts, const wchar_t *tool, QV_INT toolLength )
{
    qv::Local<QV_STRING> name( qvStringCreateFromWcstr( tool, toolLength ) );
    return qvToolSwitchHasTool( ts, name );
}

void qvToolSwitchSetTool( QV_TOOL_SWITCH **ts, QV_STRING *tool, qvToolSwitchToolFunc func )
{
    QV_CHECK( ts );
    QV_CHECK( *ts );
    QV_CHECK( tool );
    qv::makePrivate( ts, qvToolSwitchCreateFrom );
    qv::Local<QV___TOOL_SWITCH_TOOL> record( qv::create<QV___TOOL_SWITCH_TOOL>( qv___ToolSwitchToolSort() ) );
    record->func = func;
    qvDictSetStringKey( &( *ts )->tools, tool, qv___ToolSwitchToolObj( record ) );
}

void qvToolSwitchSetToolCstr( QV_TOOL_SWITCH **ts, const char *tool, QV_INT toolLength,
                              qvToolSwitchToolFunc func )
{
    qv::Local<QV_STRING> name( qvStringCreateFromCstr( tool, toolLength ) );
    qvToolSwitchSetTool( ts, name, func );
}

void qvToolSwitchSetToolWcstr( QV_TOOL_SWITCH **ts, const wchar_t *tool, QV_INT toolLength,
                               qvToolSwitchToolFunc func )
{
    qv::Local<QV_STRING> name( qvStringCreateFromWcstr( tool, toolLength ) );
    qvToolSwitchSetTool( ts, name, func );
}

void qvToolSwitchDelTool( QV_TOOL_SWITCH **ts, QV_STRING *tool )
{
    QV_CHECK( ts );
    QV_CHECK( *ts );
    QV_CHECK( tool );
    qv::makePrivate( ts, qvToolSwitchCreateFrom );
    qvDictDelStringKey( &( *ts )->tools, tool );
}

void qvToolSwitchDelToolCstr( QV_TOOL_SWITCH **ts, const char *tool, QV_INT toolLength )
{
    qv::Local<QV_STRING> name( qvStringCreateFromCstr( tool, toolLength ) );
    qvToolSwitchDelTool( ts, name );
}

void qvToolSwitchDelToolWcstr( QV_TOOL_SWITCH **ts, const wchar_t *tool, QV_INT toolLength )
{
    qv::Local<QV_STRING> name( qvStringCreateFromWcstr( tool, toolLength ) );
    qvToolSwitchDelTool( ts, name );
}

QV_BOOL qvToolSwitchRunTool( QV_TOOL_SWITCH *ts, QV_VECTOR *argv, QV_MESSAGE_SINK *out, void *closure )
{
    QV_CHECK( ts );
    QV_CHECK( argv );
    QV_CHECK( out );
    auto args = qv::Local<QV_VECTOR>::share( argv );
    if ( qv::vectorLength( args ) == 0 )
    {
        qvMessageSinkWriteCstr( out, QV_MESSAGE_LEVEL_ERROR, nullptr, "missing argument", -1 );
        return failWithTools( ts, out );
    }
    qv::Local<qv___Obj> first( qvVectorUnshift( args.edit() ) );
    qv::Local<QV_STRING> text( qvObjToString( first ) );
    Choice choice = chooseTool( ts, text );
    if ( choice.idx < 0 )
    {
        const char *format = choice.isAmbiguous ? "%s: ambiguous" : "%s: invalid argument";
        qvMessageSinkWriteFormatCstr( out, QV_MESSAGE_LEVEL_ERROR, nullptr, format, -1,
                                      static_cast<QV_STRING *>( text ) );
        return failWithTools( ts, out );
    }
    qvObj record = qv::dictPairs( ts->tools )[choice.idx].val;
    qvToolSwitchToolFunc func = qv___ToolSwitchToolFrom( record )->func;
    return func ? func( args, out, closure ) : QV_TRUE;
}
