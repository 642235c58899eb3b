#ifndef QV_IO_QV_PATH_HH
#define QV_IO_QV_PATH_HH

// The path's record and its components.

#include <qv/io/qv_path.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: flags are normalized, up is at least 0, components holds only strings, the designator is 0 or a
// letter.
struct qv___Path : qv___Obj
{
    QV_PATH_FLAGS flags;
    QV_INT up;
    QV_VECTOR *components;
    QV_CHAR windowsVolumeDesignator; // 0 for none
    QV_STRING *windowsUncServer;     // may be null
};

extern QV_FLAGSET *qv___PathFlagsFlagset;

void qv___PathFreeFunc( qvObj thisObj );
QV_INT qv___PathCompareFunc( qvObj thisObj, qvObj thatObj );
QV_STRING *qv___PathToStringFunc( qvObj thisObj );

void qv___PathFlagsStartup();
void qv___PathFlagsShutdown();
void qv___PathStartup();
void qv___PathShutdown();

namespace qv
{

// A new private path with normalized flags and without Windows parts; it takes over the components.
QV_PATH *pathCreateFresh( QV_PATH_FLAGS flags, QV_INT up, QV_VECTOR *components );

} // namespace qv

#endif
