#include <qv/base/qv_release.hh>

namespace qv
{

thread_local constinit PendingReleases pendingReleases = { 0, nullptr, nullptr };

namespace
{

void setNext( qvObj dying, qvObj next )
{
    dying->type = static_cast<QV_INT>( reinterpret_cast<intptr_t>( next ) );
}

qvObj nextOf( qvObj dying )
{
    return reinterpret_cast<qvObj>( static_cast<intptr_t>( dying->type ) );
}

} // namespace

void pendReleaseOf( PendingReleases *pending, qvObj dying )
{
    // Sort and module records are never freed, whatever their count reads.
    if ( dying->type != QV___OBJ_TYPE_OBJECT )
        return;
    setNext( dying, nullptr );
    if ( pending->first )
        setNext( pending->last, dying );
    else
        pending->first = dying;
    pending->last = dying;
}

void destroyPending( PendingReleases *pending )
{
    while ( pending->first )
    {
        // What comes to be pending while this object is destroyed belongs in front of the rest.
        qvObj dying = pending->first;
        qvObj rest = nextOf( dying );
        qvObj restLast = pending->last;
        pending->first = nullptr;
        dying->type = QV___OBJ_TYPE_OBJECT;
        qv___ObjFree( dying );
        if ( !rest )
            continue;
        if ( pending->first )
            setNext( pending->last, rest );
        else
            pending->first = rest;
        pending->last = restLast;
    }
}

} // namespace qv
