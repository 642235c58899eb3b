#include <qv/sys/qv_unique.hh>

#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_mem.hh>

namespace
{

constexpr QV_INT IN_USE = -2;
constexpr QV_INT ENLARGE = 4096;

// The token table: an entry holds the number of the next free entry, QV___UNIQUE_INVALID at the end of the free list, or
// IN_USE. Freed numbers are reused first, so numbers stay small and dense. uniLock guards all of it.
constinit QV_INT *uniList = nullptr;
constinit QV_INT uniListSize = 0;
constinit QV_INT uniFirstFree = QV___UNIQUE_INVALID;
constinit QV_INT uniUsed = 0;
constinit qv___Lock uniLock = {};

void enlarge()
{
    QV_CHECK( uniListSize <= QV___UNIQUE_MAX - ENLARGE );
    QV_INT newSize = uniListSize + ENLARGE;
    uniList = qv::reallocArray( uniList, newSize );
    for ( QV_INT entry = uniListSize; entry < newSize - 1; entry++ )
    {
        uniList[entry] = entry + 1;
    }
    uniList[newSize - 1] = QV___UNIQUE_INVALID;
    uniFirstFree = uniListSize;
    uniListSize = newSize;
}

} // namespace

void qv___UniqueStartup()
{
    qv___LockInitialize( &uniLock );
}

void qv___UniqueShutdown()
{
    qv___LockFinalize( &uniLock );
    qvMemFree( uniList );
    uniList = nullptr;
    uniListSize = 0;
    uniFirstFree = QV___UNIQUE_INVALID;
    uniUsed = 0;
}

QV_INT qv___UniqueGet()
{
    qv::Locked locked( &uniLock );
    if ( uniFirstFree == QV___UNIQUE_INVALID )
    {
        enlarge();
    }
    QV_INT uni = uniFirstFree;
    uniFirstFree = uniList[uni];
    uniList[uni] = IN_USE;
    uniUsed++;
    return uni;
}

void qv___UniquePut( QV_INT uni )
{
    qv::Locked locked( &uniLock );
    QV_CHECK( uniUsed > 0 );
    QV_CHECK( uni >= 0 );
    QV_CHECK( uni < uniListSize );
    QV_CHECK( uniList[uni] == IN_USE );
    uniUsed--;
    uniList[uni] = uniFirstFree;
    uniFirstFree = uni;
}
