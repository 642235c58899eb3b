// A module of C++ with a sort of its own, one object of which it keeps while it is loaded.

#include <qv/qv.h>

typedef struct Kept KEPT;

QV_BEGIN_DECLS
QV_SORT_FUNCTIONS( KEPT, kept )
QV_END_DECLS

struct Kept : qv___Obj
{
    QV_STRING *text;
};

static void freeKept( qvObj thisObj )
{
    qvStringRelease( keptFrom( thisObj )->text );
}

QV_SORT_DEFINE( KEPT, kept, { freeKept, nullptr, nullptr } )

static KEPT *theOne = nullptr;

static QV_BOOL start()
{
    theOne = static_cast<KEPT *>( qv___ObjCreate( sizeof( KEPT ), keptSort() ) );
    theOne->text = qvStringCreateFromCstr( "kept", -1 );
    return QV_BOOL_FROM( qvSortModule( keptSort() ) == &kept_one___module );
}

static void end()
{
    keptRelease( theOne );
}

QV_MODULE_DEFINE( kept_one, start, nullptr, end, nullptr, nullptr )
