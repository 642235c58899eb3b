#ifndef QV_TAG_QV_TAG_REWRITE_HH
#define QV_TAG_QV_TAG_REWRITE_HH

#include <qv/runtime/qv_obj.hh>
#include <qv/tag/qv_tag_rewrite.h>

struct qv___TagRewriteOperation : qv___Obj
{
    QV_TAG_REWRITE_OPERATION_TYPE type;
    QV_STRING *tag;
};

// Invariant: each operation stands under its own tag. The dictionary is shared between copies.
struct qv___TagRewrite : qv___Obj
{
    QV_BOOL clear;
    QV_DICT *operations;
};

extern QV_ENUM *qv___TagRewriteOperationTypeEnum;

void qv___TagRewriteOperationFreeFunc( qvObj thisObj );
QV_INT qv___TagRewriteOperationCompareFunc( qvObj thisObj, qvObj thatObj );
void qv___TagRewriteFreeFunc( qvObj thisObj );
QV_INT qv___TagRewriteCompareFunc( qvObj thisObj, qvObj thatObj );

void qv___TagRewriteOperationTypeStartup();
void qv___TagRewriteOperationTypeShutdown();

#endif
