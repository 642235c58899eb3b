#ifndef QV_BASE_QV_OPT_DEF_HH
#define QV_BASE_QV_OPT_DEF_HH

#include <qv/base/qv_opt_def.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: all ids in the maps are 0 or above, and no name is empty. The maps are shared between copies; theirs
// is the copy-on-write that keeps two definitions apart.
struct qv___OptDef : qv___Obj
{
    QV_RANGE_MAP *flagsForId; // auto-collapsing: ids to boxed integers
    QV_DICT *idForShortOpt;   // characters, as integer keys, to boxed integers
    QV_DICT *idForLongOpt;    // names without dashes to boxed integers
    QV_INT argOnly;           // id of an argument that is no option, or QV_OPT_ID_NON_OPTION
    QV_BOOL reorder;
    QV_BOOL stringize;
};

void qv___OptDefFreeFunc( qvObj thisObj );

#endif
