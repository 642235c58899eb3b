#ifndef QV_BASE_QV_TOOL_SWITCH_HH
#define QV_BASE_QV_TOOL_SWITCH_HH

#include <qv/base/qv_tool_switch.h>
#include <qv/runtime/qv_obj.hh>

typedef struct qv___ToolSwitchTool QV___TOOL_SWITCH_TOOL;

struct qv___ToolSwitchTool : qv___Obj
{
    qvToolSwitchToolFunc func; // may be null
};

// Invariant: the values of tools are tool records. The dictionary is shared between copies.
struct qv___ToolSwitch : qv___Obj
{
    QV_DICT *tools; // by name
};

QV_SORT_FUNCTIONS_INTERNAL( QV___TOOL_SWITCH_TOOL, qv___ToolSwitchTool )

void qv___ToolSwitchFreeFunc( qvObj thisObj );

#endif
