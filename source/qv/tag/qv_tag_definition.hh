#ifndef QV_TAG_QV_TAG_DEFINITION_HH
#define QV_TAG_QV_TAG_DEFINITION_HH

#include <qv/runtime/qv_obj.hh>
#include <qv/tag/qv_tag_definition.h>

// Invariant: tag is a tag; color is -1 or a colour.
struct qv___TagDefinition : qv___Obj
{
    QV_STRING *tag;
    QV_STRING *comment; // may be null
    QV_TAG_COLOR color;
};

extern QV_ENUM *qv___TagColorEnum;

void qv___TagDefinitionFreeFunc( qvObj thisObj );
QV_INT qv___TagDefinitionCompareFunc( qvObj thisObj, qvObj thatObj );

void qv___TagColorStartup();
void qv___TagColorShutdown();

#endif
