#ifndef QV_TAG_QV_TAG_SET_HH
#define QV_TAG_QV_TAG_SET_HH

#include <qv/base/qv_dict.hh>
#include <qv/runtime/qv_obj.hh>
#include <qv/tag/qv_tag_set.h>

// Invariant: each key of tags is a tag and its own value. The dictionary is shared between copies.
struct qv___TagSet : qv___Obj
{
    QV_DICT *tags;
};

// The one shared empty set, from startup to shutdown.
extern QV_TAG_SET *qv___TagSetEmpty;

void qv___TagSetFreeFunc( qvObj thisObj );
QV_INT qv___TagSetCompareFunc( qvObj thisObj, qvObj thatObj );
QV_STRING *qv___TagSetToStringFunc( qvObj thisObj );

void qv___TagSetStartup();
void qv___TagSetShutdown();

namespace qv
{

// The tag at a position that is known to be good, borrowed.
inline QV_STRING *tagAt( const QV_TAG_SET *ts, QV_INT idx )
{
    return reinterpret_cast<QV_STRING *>( dictPairs( ts->tags )[idx].key );
}

} // namespace qv

#endif
