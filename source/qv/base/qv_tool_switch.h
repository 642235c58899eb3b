#ifndef QV_BASE_QV_TOOL_SWITCH_H
#define QV_BASE_QV_TOOL_SWITCH_H

/* The front of a program that bundles several tools: a table from name to function, and a call that runs the tool
 * that the first argument names. A value with copy-on-write: functions that edit take the address of the caller's
 * handle and put a private copy there if the record is shared. Null handles and names stop the process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

/* A tool: gets the arguments behind its name and the sink for its messages, both borrowed for the time of the
 * call, and the closure given to qvToolSwitchRunTool. True on success. */
typedef QV_BOOL ( *qvToolSwitchToolFunc )( QV_VECTOR *argv, QV_MESSAGE_SINK *out, void *closure );

QV_SORT_FUNCTIONS( QV_TOOL_SWITCH, qvToolSwitch )

/* A new switch without tools. */
QV_API QV_TOOL_SWITCH *qvToolSwitchCreate( void );

/* A new switch with the tools of ts. */
QV_API QV_TOOL_SWITCH *qvToolSwitchCreateFrom( QV_TOOL_SWITCH *ts );

/* The names of the tools in ascending order of code points, a vector of strings. The caller owns it. */
QV_API QV_VECTOR *qvToolSwitchToolsVector( QV_TOOL_SWITCH *ts );

/* In all forms below byte text is UTF-8, and toolLength is in bytes or wide characters, -1 up to the
 * terminator. */

/* True if there is a tool of exactly this name. */
QV_API QV_BOOL qvToolSwitchHasTool( QV_TOOL_SWITCH *ts, QV_STRING *tool );
QV_API QV_BOOL qvToolSwitchHasToolCstr( QV_TOOL_SWITCH *ts, const char *tool, QV_INT toolLength );
QV_API QV_BOOL qvToolSwitchHasToolWcstr( QV_TOOL_SWITCH *ts, const wchar_t *tool, QV_INT toolLength );

/* Adds a tool, or replaces its function. A tool whose function is null does nothing and succeeds. */
QV_API void qvToolSwitchSetTool( QV_TOOL_SWITCH **ts, QV_STRING *tool, qvToolSwitchToolFunc func );
QV_API void qvToolSwitchSetToolCstr( QV_TOOL_SWITCH **ts, const char *tool, QV_INT toolLength,
                                     qvToolSwitchToolFunc func );
QV_API void qvToolSwitchSetToolWcstr( QV_TOOL_SWITCH **ts, const wchar_t *tool, QV_INT toolLength,
                                      qvToolSwitchToolFunc func );

/* Removes a tool, if it is there. */
QV_API void qvToolSwitchDelTool( QV_TOOL_SWITCH **ts, QV_STRING *tool );
QV_API void qvToolSwitchDelToolCstr( QV_TOOL_SWITCH **ts, const char *tool, QV_INT toolLength );
QV_API void qvToolSwitchDelToolWcstr( QV_TOOL_SWITCH **ts, const wchar_t *tool, QV_INT toolLength );

/* Runs the tool whose name is the text of the first element of argv, or the only one whose name begins with it,
 * and returns its result. If there is no such tool, an error goes to out, then the list of tools if there are
 * any, and the result is false; failures of out change nothing. argv itself stays as it is. The caller's
 * reference to ts must last until the tool returns. */
QV_API QV_BOOL qvToolSwitchRunTool( QV_TOOL_SWITCH *ts, QV_VECTOR *argv, QV_MESSAGE_SINK *out,
                                    void *closure );

QV_END_DECLS

#endif
