#ifndef QV_TAG_QV_TAG_MATCH_HH
#define QV_TAG_QV_TAG_MATCH_HH

#include <qv/runtime/qv_obj.hh>
#include <qv/tag/qv_tag_match.h>

struct qv___TagMatch : qv___Obj
{
    QV_TAG_MATCH_TYPE type;
    QV_TAG_SET *tagSet;
};

extern QV_ENUM *qv___TagMatchTypeEnum;

void qv___TagMatchFreeFunc( qvObj thisObj );
QV_INT qv___TagMatchCompareFunc( qvObj thisObj, qvObj thatObj );

void qv___TagMatchTypeStartup();
void qv___TagMatchTypeShutdown();

#endif
