// Bit buffers against a naive model, a string of '0' and '1', and the decisions about room row by row.

#include "support/test.hh"

#include <deque>

namespace
{

using Buffer = qv::Local<QV_BUFFER>;
using Bits = QV___INT_UNSIGNED;

std::string bitsOf( QV_BUFFER *buf )
{
    std::string bits;
    for ( QV_INT idx = 0; idx < qvBufferBitLength( buf ); idx++ )
        bits += qvBufferBitReadBits( buf, idx, 1 ) ? '1' : '0';
    return bits;
}

std::string bitsOf( Bits value, QV_INT bitCount )
{
    std::string bits;
    while ( bitCount-- > 0 )
        bits += value >> bitCount & 1 ? '1' : '0';
    return bits;
}

Buffer bufferOf( const std::string &bits )
{
    Buffer buf( qvBufferCreate() );
    for ( char bit : bits )
        qvBufferBitAppendBits( buf.edit(), bit == '1', 1 );
    return buf;
}

std::string randomBits( std::mt19937_64 &random, size_t count )
{
    std::string bits( count, '0' );
    for ( char &bit : bits )
        bit = static_cast<char>( '0' + ( random() & 1 ) );
    return bits;
}

// A buffer of its own with given spares, whose content is bits.
Buffer bufferWithSpares( const std::string &bits, Bits bitFspace, Bits bitBspace )
{
    Buffer buf( qv::bufferCreateRecord() );
    buf->bitLength = bits.size();
    buf->bitFspace = bitFspace;
    buf->bitBspace = bitBspace;
    buf->bytes =
        static_cast<unsigned char *>( qvMemAlloc( std::max<QV_INT>( 1, qv::bufferStorageSize( buf ) ) ) );
    for ( size_t idx = 0; idx < bits.size(); idx++ )
        qv___BufferBitWriteBits( buf, idx, bits[idx] == '1', 1 );
    return buf;
}

void expectSound( QV_BUFFER *buf )
{
    ASSERT_TRUE( BIT_AT_BOUND( buf->bitFspace ) );
    ASSERT_TRUE( BIT_AT_BOUND( buf->bitFspace + buf->bitLength + buf->bitBspace ) );
    if ( buf->bytes && !buf->ref )
    {
        ASSERT_EQ( qv___ObjDbgAllocationSize( buf ), static_cast<QV_INT>( qv::bufferStorageSize( buf ) ) );
    }
    ASSERT_TRUE( buf->bytes || qv::bufferStorageSize( buf ) == 0 );
}

// ---- Room ----

constexpr Bits front = QV_BUFFER_FSPACE;
constexpr Bits back = 1280;

const struct
{
    const char *name;
    Bits bitLength, bitFspace, bitBspace, atBit, bitCount;
    bool rebuild, reallocated;
    Bits fspaceAfter, bspaceAfter; // of a rebuild: those of the new storage
} roomRows[] = {
    { "end: spare behind", 16, 0, 8, 16, 8, false, false, 0, 0 },
    { "end: spare behind, by bits", 13, 8, 11, 13, 5, false, false, 8, 6 },
    { "end: grows, the front stays", 16, 1000, 8, 16, 16, false, true, 1000, back },
    { "end: grows by bits", 13, 0, 3, 13, 6, false, true, 0, back + 5 },
    { "end: grows to long content", 0x800000 - 8, 0, 0, 0x800000 - 8, 8, false, true, 0, 0x100000 },
    { "end: one less is not long", 0x800000 - 16, 0, 0, 0x800000 - 16, 8, false, true, 0, back },
    { "between: tail up", 24, 8, 16, 8, 16, false, false, 8, 0 },
    { "between: tail up, partial byte at the end", 27, 8, 13, 8, 8, false, false, 8, 5 },
    { "between: both parts", 32, 16, 8, 16, 24, false, false, 0, 0 },
    { "between: both parts, partial byte at the end", 29, 16, 11, 16, 16, false, false, 8, 3 },
    { "between: grows, front spare smaller", 32, 8, 8, 16, 24, false, true, front, back },
    { "between: grows, no spare at all", 35, 0, 5, 16, 24, false, true, front, back + 5 },
    { "between: position inside a byte", 32, 64, 64, 5, 8, true, true, front, back },
    { "between: count inside a byte", 32, 64, 64, 8, 3, true, true, front, back + 5 },
    { "front: count inside a byte", 32, 64, 64, 0, 7, true, true, front, back + 1 },
    { "front: spare in front", 21, 16, 3, 0, 16, false, false, 0, 3 },
    { "front: both spares", 21, 8, 19, 0, 24, false, false, 0, 3 },
    { "front: grows", 21, 8, 3, 0, 16, false, true, front, back + 3 },
    { "front: empty content on own storage", 0, 0, 8, 0, 8, false, false, 0, 0 },
    { "front: empty content by bits", 0, 0, 16, 0, 3, true, true, front, back + 5 },
};

TEST( BufferRoom, EachRowMovesAsPlanned )
{
    std::mt19937_64 random( 1 );
    for ( const auto &row : roomRows )
    {
        SCOPED_TRACE( row.name );
        std::string bits = randomBits( random, row.bitLength );
        Buffer buf = bufferWithSpares( bits, row.bitFspace, row.bitBspace );
        qv::BufferRoom room = qv::bufferPlanRoom( buf, row.atBit, row.bitCount );
        EXPECT_EQ( room.rebuild, row.rebuild );
        if ( !row.rebuild )
        {
            EXPECT_EQ( room.sizeBytes > 0, row.reallocated );
        }

        qv___BufferMakeRoom( buf.edit(), row.atBit, row.bitCount );
        EXPECT_EQ( buf->bitFspace, row.fspaceAfter );
        EXPECT_EQ( buf->bitBspace, row.bspaceAfter );
        EXPECT_EQ( buf->bitLength, row.bitLength + row.bitCount );
        if ( row.reallocated )
            expectSound( buf );
        if ( row.bitLength < 1000 )
        {
            std::string after = bitsOf( buf );
            EXPECT_EQ( after.substr( 0, row.atBit ), bits.substr( 0, row.atBit ) );
            EXPECT_EQ( after.substr( row.atBit + row.bitCount ), bits.substr( row.atBit ) );
        }
    }
}

TEST( BufferRoom, FirstAppendTakesTheUsualSpares )
{
    Buffer buf( qvBufferCreate() );
    qvBufferAppendBits( buf.edit(), 5, 3 );
    EXPECT_EQ( buf->bitFspace, front );
    EXPECT_EQ( buf->bitBspace, back + 5 );
    EXPECT_EQ( qvBufferBacking( buf )[0] & 0xE0, 0xA0 );
    EXPECT_EQ( qvBufferLength( buf ), 0 );
    qvBufferAppendBits( buf.edit(), 0, 5 );
    EXPECT_EQ( qvBufferLength( buf ), 1 );
    EXPECT_TRUE( qvBufferBitIsAligned( buf ) );
}

TEST( BufferRoom, CompactsBeyondTwiceTheUsualSpares )
{
    const struct
    {
        Bits bitLength, bitFspace, bitBspace;
        bool compacts;
    } rows[] = {
        { 24, 1280, 2560, false },       { 24, 1288, 0, true },           { 21, 0, 2563, true },
        { 24, 0, 2560, false },          { 21, 5000, 5003, true },        { 0x800000, 0, 0x200000, false },
        { 0x800000, 0, 0x200008, true }, { 0x7FFFF8, 0, 0x200000, true },
    };
    std::mt19937_64 random( 2 );
    for ( const auto &row : rows )
    {
        std::string bits = randomBits( random, row.bitLength );
        Buffer buf = bufferWithSpares( bits, row.bitFspace, row.bitBspace );
        qv___BufferCompact( buf );
        if ( row.compacts )
        {
            EXPECT_EQ( buf->bitFspace, front );
            EXPECT_EQ( buf->bitBspace / 8, qv::bufferBackSpare( row.bitLength ) / 8 );
            expectSound( buf );
        }
        else
        {
            EXPECT_EQ( buf->bitFspace, row.bitFspace );
            EXPECT_EQ( buf->bitBspace, row.bitBspace );
        }
        if ( row.bitLength < 100 )
        {
            EXPECT_EQ( bitsOf( buf ), bits );
        }
    }
    Buffer emptied = bufferWithSpares( "", 2000, 0 );
    qv___BufferCompact( emptied );
    EXPECT_EQ( emptied->bytes, nullptr );
    expectSound( emptied );
}

// ---- Random edits ----

enum Verb
{
    writing,
    inserting,
    prepending,
    appending,
    verbs,
};

// Calls the function of a family in the chosen verb and form; arguments are in the form's units.
#define EDIT_VERB( verb, family, ... )                                                                       \
    ( unit == 8 ? qvBuffer##verb##family( buf.edit(), __VA_ARGS__ )                                          \
                : qvBufferBit##verb##family( buf.edit(), __VA_ARGS__ ) )
#define EDIT( family, ... )                                                                                  \
    ( verb == writing      ? EDIT_VERB( Write, family, at, __VA_ARGS__ )                                     \
      : verb == inserting  ? EDIT_VERB( Insert, family, at, __VA_ARGS__ )                                    \
      : verb == prepending ? EDIT_VERB( Prepend, family, __VA_ARGS__ )                                       \
                           : EDIT_VERB( Append, family, __VA_ARGS__ ) )

class Editor
{
  public:
    explicit Editor( unsigned seed ) : random_( seed ), buf( qvBufferCreate() ) {}

    void step()
    {
        unit = random_() % 2 ? 8 : 1;
        verb = static_cast<Verb>( random_() % verbs );
        if ( below( 20 ) == 0 )
            restart();
        else if ( below( 20 ) == 0 )
            align();
        else if ( model.size() > 3000 || below( 4 ) == 0 )
            remove();
        else
            add();
        if ( below( 8 ) == 0 )
            snapshot();
    }

    void verify()
    {
        expectSound( buf );
        ASSERT_EQ( bitsOf( buf ), model );
        if ( snapshots.empty() )
            return;
        Snapshot &old = snapshots[below( snapshots.size() )];
        ASSERT_EQ( bitsOf( old.buf ), old.model );
    }

    Bits below( Bits limit )
    {
        return limit == 0 ? 0 : random_() % limit;
    }

  private:
    struct Snapshot
    {
        Buffer buf;
        std::string model;
    };

    // Where the edit goes: in bits for the model, in units for the call.
    bool place( const std::string &object )
    {
        if ( verb == writing && object.size() > model.size() )
            return false;
        Bits last = verb == writing ? model.size() - object.size() : model.size();
        at = static_cast<QV_INT>( below( last / unit + 1 ) );
        Bits atBit = static_cast<Bits>( at ) * unit;
        if ( verb == prepending )
            atBit = 0;
        if ( verb == appending )
            atBit = model.size();
        if ( verb == writing )
            model.replace( atBit, object.size(), object );
        else
            model.insert( atBit, object );
        return true;
    }

    void add()
    {
        bool self = below( 5 ) == 0;
        std::string source = self ? model : randomBits( random_, below( 300 ) );
        Buffer other = self ? Buffer() : bufferOf( source );
        QV_BUFFER *src = self ? static_cast<QV_BUFFER *>( buf ) : static_cast<QV_BUFFER *>( other );
        QV_INT units = static_cast<QV_INT>( source.size() / unit );
        QV_INT count = static_cast<QV_INT>( below( static_cast<Bits>( units ) + 1 ) );
        QV_INT offset = static_cast<QV_INT>( below( static_cast<Bits>( units - count ) + 1 ) );
        Bits countBits = static_cast<Bits>( count ) * unit;
        Bits offsetBits = static_cast<Bits>( offset ) * unit;
        auto value = static_cast<unsigned char>( random_() );
        std::string run;
        std::vector<unsigned char> bytes;
        QV_INT valueBits = static_cast<QV_INT>( below( 65 ) );
        auto word = static_cast<QV_INT>( random_() );
        switch ( below( 11 ) )
        {
        case 0:
            if ( place( source ) )
                EDIT(, src );
            break;
        case 1:
            if ( place( source.substr( offsetBits, countBits ) ) )
                EDIT( Inner, src, offset, count );
            break;
        case 2:
            if ( place( source.substr( 0, countBits ) ) )
                EDIT( Leading, src, count );
            break;
        case 3:
            if ( place( source.substr( source.size() - countBits ) ) )
                EDIT( Trailing, src, count );
            break;
        case 4:
            if ( place( std::string( source ).erase( offsetBits, countBits ) ) )
                EDIT( Outer, src, offset, count );
            break;
        case 5:
            if ( place( bitsOf( static_cast<Bits>( word ), valueBits ) ) )
                EDIT( Bits, word, valueBits );
            break;
        case 6:
            if ( place( bitsOf( value, 8 ) ) )
                EDIT( Byte, value );
            break;
        case 7:
            for ( QV_INT idx = 0; idx < count / 8; idx++ )
                run += bitsOf( value, 8 );
            if ( place( run ) )
                EDIT( ByteRun, value, count / 8 );
            break;
        case 8:
            for ( QV_INT idx = 0; idx < count / 8; idx++ )
            {
                bytes.push_back( static_cast<unsigned char>( random_() ) );
                run += bitsOf( bytes.back(), 8 );
            }
            if ( place( run ) )
                EDIT( Bytes, bytes.data(), count / 8 );
            break;
        case 9:
            if ( place( std::string( countBits, '0' ) ) )
                EDIT( Zero, count );
            break;
        default:
            if ( place( std::string( countBits, '1' ) ) )
                EDIT( One, count );
        }
    }

    void align()
    {
        std::string zeros( -model.size() & 7, '0' );
        if ( verb == writing )
            verb = inserting;
        place( zeros );
        if ( verb == prepending )
            unit == 8 ? qvBufferPrependAlignment( buf.edit() ) : qvBufferBitPrependAlignment( buf.edit() );
        else if ( verb == appending )
            unit == 8 ? qvBufferAppendAlignment( buf.edit() ) : qvBufferBitAppendAlignment( buf.edit() );
        else
            unit == 8 ? qvBufferInsertAlignment( buf.edit(), at )
                      : qvBufferBitInsertAlignment( buf.edit(), at );
    }

    void remove()
    {
        QV_INT units = static_cast<QV_INT>( model.size() / unit );
        QV_INT count = static_cast<QV_INT>( below( static_cast<Bits>( units ) + 1 ) );
        QV_INT offset = static_cast<QV_INT>( below( static_cast<Bits>( units - count ) + 1 ) );
        Bits countBits = static_cast<Bits>( count ) * unit;
        Bits offsetBits = static_cast<Bits>( offset ) * unit;
        switch ( below( 4 ) )
        {
        case 0:
            model.erase( offsetBits, countBits );
            unit == 8 ? qvBufferDelInner( buf.edit(), offset, count )
                      : qvBufferBitDelInner( buf.edit(), offset, count );
            break;
        case 1:
            model.erase( 0, countBits );
            unit == 8 ? qvBufferDelLeading( buf.edit(), count ) : qvBufferBitDelLeading( buf.edit(), count );
            break;
        case 2:
            model.erase( model.size() - countBits );
            unit == 8 ? qvBufferDelTrailing( buf.edit(), count )
                      : qvBufferBitDelTrailing( buf.edit(), count );
            break;
        default:
            model = model.substr( offsetBits, countBits );
            unit == 8 ? qvBufferDelOuter( buf.edit(), offset, count )
                      : qvBufferBitDelOuter( buf.edit(), offset, count );
        }
    }

    // Another record with the same content: a copy of a range, or memory handed over, exact and without spare.
    void restart()
    {
        QV_INT length = test::lengthOf( model );
        if ( below( 2 ) == 0 || length < 8 )
        {
            buf.take( qvBufferBitRead( buf, 0, length ) );
            return;
        }
        model.resize( model.size() & ~static_cast<size_t>( 7 ) );
        auto *bytes = static_cast<unsigned char *>( qvMemAlloc( length / 8 ) );
        qvBufferReadBytes( buf, 0, bytes, length / 8 );
        buf.take( qvBufferCreateFromBytesUse( bytes, length / 8 ) );
    }

    void snapshot()
    {
        if ( snapshots.size() > 4 )
            snapshots.pop_front();
        snapshots.push_back( { Buffer::share( buf ), model } );
    }

    std::mt19937_64 random_;
    Buffer buf;
    std::string model;
    std::deque<Snapshot> snapshots;
    Bits unit = 1;
    Verb verb = appending;
    QV_INT at = 0;
};

TEST( Buffer, RandomEditsFollowTheModel )
{
    for ( unsigned seed = 0; seed < 60; seed++ )
    {
        SCOPED_TRACE( seed );
        Editor editor( seed );
        for ( int count = 0; count < 150 && !HasFatalFailure(); count++ )
        {
            editor.step();
            editor.verify();
        }
    }
}

// ---- Reading, order and text ----

TEST( Buffer, ReadsEveryRangeUpToTheEndOfTheStorage )
{
    std::mt19937_64 random( 3 );
    std::string bits = randomBits( random, 152 );
    unsigned char bytes[19];
    Buffer built = bufferOf( bits );
    qvBufferReadBytes( built, 0, bytes, 19 );
    // Storage without a byte to spare.
    Buffer buf( qvBufferCreateFromBytesUse( static_cast<unsigned char *>( qvMemDup( bytes, 19 ) ), 19 ) );
    for ( QV_INT idx = 0; idx <= 152; idx++ )
    {
        for ( QV_INT count = 0; count <= 64 && idx + count <= 152; count++ )
        {
            auto value = static_cast<Bits>( qvBufferBitReadBits( buf, idx, count ) );
            ASSERT_EQ( bitsOf( value, count ), bits.substr( idx, count ) ) << idx << ", " << count;
            Buffer written( qvBufferCreateFrom( buf ) );
            qvBufferBitWriteBits( written.edit(), idx, static_cast<QV_INT>( ~value ), count );
            Buffer part( qvBufferBitRead( written, idx, count ) );
            ASSERT_EQ( bitsOf( part ), bitsOf( ~value, count ) ) << idx << ", " << count;
        }
        QV_INT byteCount = ( 152 - idx ) / 8;
        std::vector<unsigned char> read( static_cast<size_t>( byteCount ) );
        qvBufferBitReadBytes( buf, idx, read.data(), byteCount );
        for ( QV_INT at = 0; at < byteCount; at++ )
            ASSERT_EQ( read[static_cast<size_t>( at )], qvBufferBitReadByte( buf, idx + at * 8 ) );
    }
    EXPECT_EQ( qvBufferReadByte( buf, 18 ), bytes[18] );
    EXPECT_EQ( qvBufferReadBits( buf, 18, 3 ), bytes[18] >> 5 );
}

TEST( Buffer, OrderIsThatOfBitStrings )
{
    const char *samples[] = {
        "", "0", "1", "101", "10100000", "101000001", "10100001", "1010000011111111", "00000000" };
    for ( const char *left : samples )
        for ( const char *right : samples )
        {
            Buffer bufA = bufferOf( left );
            Buffer bufB = bufferOf( right );
            int order = std::string( left ).compare( right );
            EXPECT_EQ( qvBufferCompare( bufA, bufB ), ( order > 0 ) - ( order < 0 ) ) << left << " " << right;
        }
    // The unused low bits of a partial byte don't count.
    Buffer bufA( qvBufferCreateFromByte( 0xA0 ) );
    Buffer bufB( qvBufferCreateFromByte( 0xBF ) );
    qvBufferBitDelTrailing( bufA.edit(), 5 );
    qvBufferBitDelTrailing( bufB.edit(), 5 );
    EXPECT_TRUE( qvBufferEquals( bufA, bufB ) );
}

TEST( Buffer, TextForm )
{
    const std::pair<const char *, const char *> rows[] = {
        { "", "[]" },
        { "00001111", "[0f]" },
        { "0000111110101011", "[0f ab]" },
        { "101", "[a0/3]" },
        { "1111111100010010101", "[ff 12 a0/3]" },
    };
    for ( auto [bits, text] : rows )
    {
        Buffer buf = bufferOf( bits );
        EXPECT_EQ( test::takeUtf8( qvBufferToString( buf ) ), text );
    }
}

// ---- Sharing and foreign memory ----

TEST( Buffer, ForeignMemoryIsNeverWritten )
{
    const unsigned char memory[] = { 1, 2, 3, 4, 5, 6, 7, 8 };
    unsigned char before[8];
    qvMemCopy( before, memory, 8 );
    auto owner = test::text( "owner" );
    auto foreign = [&] {
        return Buffer( qvBufferCreateFromBytesUseWithRef( memory, 8, qvStringObj( owner ) ) );
    };

    Buffer view = foreign();
    EXPECT_EQ( qvBufferBacking( view ), memory );
    qvBufferDelTrailing( view.edit(), 1 );
    qvBufferDelLeading( view.edit(), 2 );
    qvBufferDelOuter( view.edit(), 1, 3 );
    EXPECT_EQ( qvBufferBacking( view ), memory + 3 ) << "the ends go without a copy";
    EXPECT_EQ( test::takeUtf8( qvBufferToString( view ) ), "[04 05 06]" );

    void ( *const edits[] )( QV_BUFFER ** ) = {
        []( QV_BUFFER **buf ) { qvBufferWriteByte( buf, 0, 99 ); },
        []( QV_BUFFER **buf ) { qvBufferAppendByte( buf, 99 ); },
        []( QV_BUFFER **buf ) { qvBufferPrependByte( buf, 99 ); },
        []( QV_BUFFER **buf ) { qvBufferDelInner( buf, 1, 1 ); },
        []( QV_BUFFER **buf ) { qvBufferBitDelLeading( buf, 3 ); },
        []( QV_BUFFER **buf ) { qvBufferDelTrailing( buf, 1 ), qvBufferAppendByte( buf, 99 ); },
    };
    for ( auto edit : edits )
    {
        Buffer buf = foreign();
        edit( buf.edit() );
        EXPECT_EQ( buf->ref, nullptr );
        EXPECT_EQ( qvMemCompare( memory, before, 8 ), 0 );
    }
    Buffer whole = foreign();
    qvBufferDelLeading( whole.edit(), 8 );
    EXPECT_EQ( whole, qv___BufferEmpty );
}

TEST( Buffer, EmptyOnes )
{
    Buffer taken( qvBufferCreateFromBytesUse( static_cast<unsigned char *>( qvMemAlloc( 4 ) ), 0 ) );
    Buffer none( qvBufferCreateFromBytesUse( nullptr, 0 ) );
    Buffer bits( qvBufferCreateFromBits( 1, 0 ) );
    EXPECT_TRUE( qvBufferEquals( taken, none ) && qvBufferEquals( none, bits ) );
    qvBufferAppendBits( taken.edit(), 5, 3 );
    EXPECT_EQ( bitsOf( taken ), "101" );
    EXPECT_EQ( qvBufferBitSpace( taken ), QV_INT_MAX - 3 );
    EXPECT_EQ( qvBufferSpace( none ), QV_INT_MAX / 8 );
}

TEST( BufferDeathTest, RangesOutsideStop )
{
    Buffer buf = bufferOf( "1010101010" );
    EXPECT_DEATH( qvBufferBitWriteByte( buf.edit(), 5, 1 ), "bitIdx \\+ bitCount <= " );
    EXPECT_DEATH( qvBufferWriteByte( buf.edit(), 1, 1 ), "bitIdx \\+ bitCount <= " );
    EXPECT_DEATH( qvBufferBitReadBits( buf, 0, 65 ), "bitCount <= 64" );
    EXPECT_DEATH( qvBufferReadBits( buf, 0, 11 ), "bitIdx \\+ bitCount <= " );
    EXPECT_DEATH( qvBufferInsertByte( buf.edit(), 2, 1 ), "bitIdx <= " );
    EXPECT_DEATH( qvBufferBitDelInner( buf.edit(), 8, 3 ), "bitIdx \\+ bitCount <= " );
    EXPECT_DEATH( qvBufferAppendZero( buf.edit(), 0x2000000000000000 ), "BYTES_TO_BITS_OK" );
    EXPECT_DEATH( qvBufferAppendZero( buf.edit(), 0x0FFFFFFFFFFFFFFF ), "TO_QV_INT_CONV_OK" );
    EXPECT_DEATH( qvBufferBitDelLeading( buf.edit(), -1 ), "FROM_QV_INT_CONV_OK" );
    EXPECT_DEATH( qvBufferAppendBytes( buf.edit(), nullptr, 1 ), "bytes \\|\\| " );
    EXPECT_DEATH( qvBufferAppend( buf.edit(), nullptr ), "Expression: buf" );
}

} // namespace
