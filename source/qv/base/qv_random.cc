// Random bytes come from a small pool, so that small requests cost no system call.

#include <qv/base/qv_random.hh>

#include <qv/base/qv_buffer.h>
#include <qv/base/qv_keyed_hash.hh>
#include <qv/base/qv_monitor.h>
#include <qv/sys/qv_int.h>

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <time.h>
#include <unistd.h>

constinit qv::HashKey qv::hashKey = {};

namespace
{

constexpr QV_INT poolSize = 128;

// Guards the two below.
constinit QV_MONITOR *qv___RandomMonitor = nullptr;
constinit QV_BUFFER *qv___RandomBuffer = nullptr;
constinit int qv___RandomFd = -1; // the device, -1 if it can't be opened

// Moves as much as is wanted and available from the pool, which is refilled when it is empty.
QV_INT takeFromPool( unsigned char *bytes, QV_INT byteCount )
{
    if ( qvBufferLength( qv___RandomBuffer ) == 0 )
        qv___RandomFillBuffer();
    QV_INT taken = qvIntMin( byteCount, qvBufferLength( qv___RandomBuffer ) );
    qvBufferReadBytes( qv___RandomBuffer, 0, bytes, taken );
    qvBufferDelLeading( &qv___RandomBuffer, taken );
    return taken;
}

} // namespace

void qv___RandomFillBuffer()
{
    QV_CHECK( qvBufferLength( qv___RandomBuffer ) == 0 );
    unsigned char bytes[poolSize];
    ssize_t byteCount = poolSize;
    if ( qv___RandomFd >= 0 )
    {
        byteCount = read( qv___RandomFd, bytes, sizeof bytes );
        QV_CHECK( byteCount > 0 );
    }
    else
    {
        for ( unsigned char &byte : bytes )
        {
            byte = static_cast<unsigned char>( rand() );
        }
    }
    qvBufferAppendBytes( &qv___RandomBuffer, bytes, byteCount );
}

void qvRandom( QV_BUFFER **buffer, QV_INT byteCount )
{
    QV_CHECK( buffer );
    QV_CHECK( byteCount >= 0 );
    QV_CHECK( *buffer || byteCount == 0 );
    unsigned char bytes[poolSize];
    while ( byteCount > 0 )
    {
        QV_INT count = qvIntMin( byteCount, poolSize );
        qvRandomBytes( bytes, count );
        qvBufferAppendBytes( buffer, bytes, count );
        byteCount -= count;
    }
}

void qvRandomBytes( unsigned char *bytes, QV_INT byteCount )
{
    QV_CHECK( byteCount >= 0 );
    QV_CHECK( bytes || byteCount == 0 );
    qvMonitorEnter( qv___RandomMonitor );
    while ( byteCount > 0 )
    {
        QV_INT taken = takeFromPool( bytes, byteCount );
        bytes += taken;
        byteCount -= taken;
    }
    qvMonitorLeave( qv___RandomMonitor );
}

unsigned char qvRandomByte( void )
{
    unsigned char byte;
    qvRandomBytes( &byte, 1 );
    return byte;
}

QV_INT qvRandomInt( void )
{
    unsigned char bytes[sizeof( QV_INT )];
    qvRandomBytes( bytes, sizeof bytes );
    QV_INT value;
    std::memcpy( &value, bytes, sizeof value );
    return value;
}

QV_INT qvRandomBits( QV_INT bitCount )
{
    QV_CHECK( bitCount >= 0 );
    QV_CHECK( bitCount <= QV_INT_BITS );
    if ( bitCount == 0 )
        return 0;
    return static_cast<QV_INT>( static_cast<uint64_t>( qvRandomInt() ) >> ( QV_INT_BITS - bitCount ) );
}

QV_INT qvRandomBit( void )
{
    return qvRandomBits( 1 );
}

QV_INT qvRandomNonNegativeInt( void )
{
    return qvRandomBits( QV_INT_BITS - 1 );
}

QV_INT qvRandomNonNegativeIntRange( QV_INT lowVal, QV_INT highVal )
{
    QV_CHECK( lowVal >= 0 );
    QV_CHECK( highVal >= 0 );
    if ( lowVal == highVal )
        return lowVal;
    qvIntSortPair( &lowVal, &highVal );
    if ( lowVal == 0 && highVal == QV_INT_MAX )
        return qvRandomNonNegativeInt();
    return lowVal + qvRandomNonNegativeInt() % ( highVal - lowVal + 1 );
}

void qv___RandomStartup()
{
    qv___RandomMonitor = qvMonitorCreate();
    qv___RandomBuffer = qvBufferCreate();
    qv___RandomFd = open( "/dev/urandom", O_RDONLY | O_CLOEXEC );
    srand( static_cast<unsigned>( time( nullptr ) ) );
    qv___RandomFillBuffer();
    qvRandomBytes( reinterpret_cast<unsigned char *>( qv::hashKey.words ), sizeof( qv::hashKey.words ) );
}

void qv___RandomShutdown()
{
    qv::retire( &qv___RandomBuffer );
    qv::retire( &qv___RandomMonitor );
    if ( qv___RandomFd >= 0 )
        close( qv___RandomFd );
    qv___RandomFd = -1;
}
