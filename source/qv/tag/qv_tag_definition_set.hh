#ifndef QV_TAG_QV_TAG_DEFINITION_SET_HH
#define QV_TAG_QV_TAG_DEFINITION_SET_HH

#include <qv/runtime/qv_obj.hh>
#include <qv/tag/qv_tag_definition_set.h>

// Invariant: each definition stands under its own tag. The dictionary is shared between copies.
struct qv___TagDefinitionSet : qv___Obj
{
    QV_DICT *definitions;
};

void qv___TagDefinitionSetFreeFunc( qvObj thisObj );
QV_INT qv___TagDefinitionSetCompareFunc( qvObj thisObj, qvObj thatObj );

#endif
