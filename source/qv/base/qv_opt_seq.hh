#ifndef QV_BASE_QV_OPT_SEQ_HH
#define QV_BASE_QV_OPT_SEQ_HH

#include <qv/base/qv_opt_seq.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: argv is never the string "--" alone, and id and idSecondary are the same.
struct qv___OptSeq : qv___Obj
{
    QV_OPT_DEF *def;
    QV_VECTOR *argv; // what hasn't been used yet
    QV_INT id;
    QV_INT idSecondary;
    QV_STRING *opt;     // may be null
    qvObj arg;          // may be null
    QV_STRING *error;   // may be null
    QV_RANGE_MAP *once; // auto-collapsing: the ids met that may occur once
    QV_BOOL options;    // elements can still be options
};

void qv___OptSeqFreeFunc( qvObj thisObj );

#endif
