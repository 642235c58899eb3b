#ifndef QV_TEST_SUPPORT_STREAM_HH
#define QV_TEST_SUPPORT_STREAM_HH

// Streams whose other end is in the hands of a test.

#include "support/test.hh"

#include <qv/base/qv_boxed_pointer.hh>

namespace test
{

// The far end of a stream: what it delivers, when it fails, and what reached it.
template <typename UNIT> struct Tap
{
    // A source.
    std::vector<UNIT> data;
    QV_INT position = 0;
    QV_INT failAt = -1;           // a request beyond this position delivers up to it and fails; -1 never
    std::vector<QV_INT> requests; // the maximum of each call

    // A sink.
    std::vector<std::vector<UNIT>> writes;
    int goodWrites = -1; // number of writes that succeed, -1 all
    bool flushFails = false;
    int flushes = 0;

    bool freed = false; // the closure is gone

    QV_BOOL deliver( UNIT *units, QV_INT maximum, QV_INT *count )
    {
        requests.push_back( maximum );
        auto left = static_cast<QV_INT>( data.size() ) - position;
        *count = std::min( left, maximum );
        bool fails = failAt >= 0 && position + *count >= failAt && maximum > failAt - position;
        if ( fails )
            *count = std::max<QV_INT>( 0, failAt - position );
        if ( units )
            std::copy_n( data.begin() + position, *count, units );
        position += *count;
        return !fails;
    }

    QV_BOOL take( const UNIT *units, QV_INT count )
    {
        writes.emplace_back( units, units + count );
        return goodWrites < 0 || static_cast<int>( writes.size() ) <= goodWrites;
    }

    // A closure for the stream's functions. The tap outlives it.
    Local<QV___BOXED_POINTER> closure()
    {
        return Local<QV___BOXED_POINTER>(
            qv___BoxedPointerCreate( this, []( void *tap ) { static_cast<Tap *>( tap )->freed = true; } ) );
    }

    static Tap *of( qvObj closure )
    {
        return static_cast<Tap *>( qv___BoxedPointerValue( static_cast<QV___BOXED_POINTER *>( closure ) ) );
    }

    static QV_BOOL readFunc( qvObj closure, UNIT *units, QV_INT maximum, QV_INT *count )
    {
        return of( closure )->deliver( units, maximum, count );
    }

    static QV_BOOL skipFunc( qvObj closure, QV_INT maximum, QV_INT *count )
    {
        return of( closure )->deliver( nullptr, maximum, count );
    }

    static QV_BOOL writeFunc( qvObj closure, const UNIT *units, QV_INT count )
    {
        return of( closure )->take( units, count );
    }

    static QV_BOOL flushFunc( qvObj closure )
    {
        of( closure )->flushes++;
        return !of( closure )->flushFails;
    }
};

// The byte and the character streams under the same names, so that one test drives both.
template <typename UNIT, typename SINK, typename SOURCE, typename VALUE, auto CREATE_SINK, auto CREATE_VALUE,
          auto BACKING, auto LENGTH>
struct Streams
{
    using Unit = UNIT;
    using Sink = SINK;
    using Source = SOURCE;
    using Value = VALUE;

    static Local<SINK> sink( Tap<UNIT> &tap )
    {
        return Local<SINK>(
            CREATE_SINK( tap.writeFunc, tap.flushFunc, qv::objOf<QV___BOXED_POINTER>( tap.closure() ) ) );
    }

    static Local<VALUE> value( const std::vector<UNIT> &units )
    {
        return Local<VALUE>( CREATE_VALUE( units.data(), lengthOf( units ) ) );
    }

    static std::vector<UNIT> units( VALUE *value )
    {
        return std::vector<UNIT>( BACKING( value ), BACKING( value ) + LENGTH( value ) );
    }
};

struct Bytes : Streams<unsigned char, QV_BYTE_SINK, QV_BYTE_SOURCE, QV_BUFFER, qv___ByteSinkCreate,
                       qvBufferCreateFromBytesCopy, qvBufferBacking, qvBufferLength>
{
    static Local<Source> source( Tap<Unit> &tap )
    {
        return Local<Source>(
            qv___ByteSourceCreate( tap.readFunc, nullptr, qv::objOf<QV___BOXED_POINTER>( tap.closure() ) ) );
    }

    static constexpr auto write = qvByteSinkWrite;
    static constexpr auto writeLeading = qvByteSinkWriteLeading;
    static constexpr auto writeTrailing = qvByteSinkWriteTrailing;
    static constexpr auto writeInner = qvByteSinkWriteInner;
    static constexpr auto writeOuter = qvByteSinkWriteOuter;
    static constexpr auto writeUnits = qvByteSinkWriteBytes;
    static constexpr auto flush = qvByteSinkFlush;
    static constexpr auto sinkError = qvByteSinkError;
    static constexpr auto read = qvByteSourceRead;
    static constexpr auto readUnits = qvByteSourceReadBytes;
    static constexpr auto end = qvByteSourceEnd;
    static constexpr auto sourceError = qvByteSourceError;
};

struct Chars : Streams<QV_CHAR, QV_CHAR_SINK, QV_CHAR_SOURCE, QV_STRING, qv___CharSinkCreate,
                       qvStringCreateFromCharsCopy, qvStringBacking, qvStringLength>
{
    static Local<Source> source( Tap<Unit> &tap )
    {
        return Local<Source>(
            qv___CharSourceCreate( tap.readFunc, qv::objOf<QV___BOXED_POINTER>( tap.closure() ) ) );
    }

    static constexpr auto write = qvCharSinkWrite;
    static constexpr auto writeLeading = qvCharSinkWriteLeading;
    static constexpr auto writeTrailing = qvCharSinkWriteTrailing;
    static constexpr auto writeInner = qvCharSinkWriteInner;
    static constexpr auto writeOuter = qvCharSinkWriteOuter;
    static constexpr auto writeUnits = qvCharSinkWriteChars;
    static constexpr auto flush = qvCharSinkFlush;
    static constexpr auto sinkError = qvCharSinkError;
    static constexpr auto read = qvCharSourceRead;
    static constexpr auto readUnits = qvCharSourceReadChars;
    static constexpr auto end = qvCharSourceEnd;
    static constexpr auto sourceError = qvCharSourceError;
};

// Units that differ from their neighbours.
template <typename UNIT> std::vector<UNIT> countingUnits( QV_INT count, UNIT first = 0 )
{
    std::vector<UNIT> units;
    for ( QV_INT idx = 0; idx < count; idx++ )
        units.push_back( static_cast<UNIT>( ( first + idx * 7 ) % 251 ) );
    return units;
}

} // namespace test

#endif
