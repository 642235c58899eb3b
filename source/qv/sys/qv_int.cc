#include <qv/sys/qv_int.h>

#include <qv/sys/qv_check.hh>

namespace
{

// Number of set bits of each byte value.
struct BitCounts
{
    unsigned char of[256];
};

constexpr BitCounts countBits()
{
    BitCounts counts = {};
    for ( int byte = 1; byte < 256; byte++ )
    {
        counts.of[byte] = static_cast<unsigned char>( counts.of[byte >> 1] + ( byte & 1 ) );
    }
    return counts;
}

constexpr BitCounts bitCounts = countBits();

QV_INT signedOf( QV___INT_UNSIGNED bits )
{
    return static_cast<QV_INT>( bits );
}

QV___INT_UNSIGNED bitsOf( QV_INT value )
{
    return static_cast<QV___INT_UNSIGNED>( value );
}

// A mask of the given number, 0 to 64, of the least significant bits.
QV___INT_UNSIGNED lowestBits( QV_INT count )
{
    return count == QV_INT_BITS ? ~QV___INT_UNSIGNED( 0 ) : ( QV___INT_UNSIGNED( 1 ) << count ) - 1;
}

QV___INT_UNSIGNED rangeBits( QV_INT first, QV_INT last )
{
    return lowestBits( last + 1 ) & ~lowestBits( first );
}

} // namespace

void qvIntSortPair( QV_INT *a, QV_INT *b )
{
    QV_CHECK( a );
    QV_CHECK( b );
    if ( *a > *b )
    {
        qvIntExchange( a, b );
    }
}

void qvIntExchange( QV_INT *a, QV_INT *b )
{
    QV_CHECK( a );
    QV_CHECK( b );
    QV_INT kept = *a;
    *a = *b;
    *b = kept;
}

QV_INT qvIntMin( QV_INT a, QV_INT b )
{
    return a < b ? a : b;
}

QV_INT qvIntMax( QV_INT a, QV_INT b )
{
    return a > b ? a : b;
}

QV_INT qvIntConstrain( QV_INT value, QV_INT a, QV_INT b )
{
    qvIntSortPair( &a, &b );
    return value < a ? a : value > b ? b : value;
}

QV_INT qvIntMid( QV_INT a, QV_INT b )
{
    QV_INT lo = qvIntMin( a, b );
    QV_INT hi = qvIntMax( a, b );
    if ( lo >= 0 )
        return lo + ( hi - lo ) / 2;
    // Halves of both, plus the rounding up where exactly one is odd, plus the carry where both are.
    QV_INT halves = ( lo >> 1 ) + ( hi >> 1 );
    return halves + ( ( lo | hi ) & 1 );
}

QV_BOOL qvIntAddOk( QV_INT a, QV_INT b )
{
    return QV_INT_ADD_OK( a, b );
}

QV_BOOL qvIntSubOk( QV_INT a, QV_INT b )
{
    return QV_INT_SUB_OK( a, b );
}

QV_BOOL qvIntMulOk( QV_INT a, QV_INT b )
{
    return QV_INT_MUL_OK( a, b );
}

QV_BOOL qvIntDivOk( QV_INT a, QV_INT b )
{
    return b != 0 && !( a == QV_INT_MIN && b == -1 );
}

QV_INT qvIntAbs( QV_INT value )
{
    QV_CHECK( qvIntMulOk( value, -1 ) );
    return value < 0 ? -value : value;
}

QV_INT qvIntAbsSaturating( QV_INT value )
{
    return value == QV_INT_MIN ? QV_INT_MAX : qvIntAbs( value );
}

QV_INT qvIntAddSaturating( QV_INT a, QV_INT b )
{
    return QV_INT_ADD_OK( a, b ) ? a + b : b < 0 ? QV_INT_MIN : QV_INT_MAX;
}

QV_INT qvIntSubSaturating( QV_INT a, QV_INT b )
{
    return QV_INT_SUB_OK( a, b ) ? a - b : b < 0 ? QV_INT_MAX : QV_INT_MIN;
}

QV_INT qvIntMulSaturating( QV_INT a, QV_INT b )
{
    return QV_INT_MUL_OK( a, b ) ? a * b : ( a < 0 ) != ( b < 0 ) ? QV_INT_MIN : QV_INT_MAX;
}

QV_INT qvIntDivSaturating( QV_INT a, QV_INT b )
{
    QV_CHECK( b != 0 );
    return qvIntDivOk( a, b ) ? a / b : QV_INT_MAX;
}

QV_BOOL qvIntBitIsSet( QV_INT value, QV_INT bit )
{
    QV_CHECK( bit >= 0 );
    QV_CHECK( bit < QV_INT_BITS );
    return ( bitsOf( value ) >> bit & 1 ) != 0;
}

QV_INT qvIntBitSet( QV_INT value, QV_INT bit )
{
    return qvIntBitSetRange( value, bit, bit );
}

QV_INT qvIntBitClear( QV_INT value, QV_INT bit )
{
    return qvIntBitClearRange( value, bit, bit );
}

QV_INT qvIntBitSetRange( QV_INT value, QV_INT a, QV_INT b )
{
    qvIntSortPair( &a, &b );
    QV_CHECK( a >= 0 );
    QV_CHECK( b < QV_INT_BITS );
    return signedOf( bitsOf( value ) | rangeBits( a, b ) );
}

QV_INT qvIntBitClearRange( QV_INT value, QV_INT a, QV_INT b )
{
    qvIntSortPair( &a, &b );
    QV_CHECK( a >= 0 );
    QV_CHECK( b < QV_INT_BITS );
    return signedOf( bitsOf( value ) & ~rangeBits( a, b ) );
}

QV_INT qvIntBitSetHighest( QV_INT value, QV_INT highest )
{
    QV_CHECK( highest >= 0 );
    QV_CHECK( highest <= QV_INT_BITS );
    return signedOf( bitsOf( value ) | ~lowestBits( QV_INT_BITS - highest ) );
}

QV_INT qvIntBitClearHighest( QV_INT value, QV_INT highest )
{
    QV_CHECK( highest >= 0 );
    QV_CHECK( highest <= QV_INT_BITS );
    return signedOf( bitsOf( value ) & lowestBits( QV_INT_BITS - highest ) );
}

QV_INT qvIntBitSetLowest( QV_INT value, QV_INT lowest )
{
    QV_CHECK( lowest >= 0 );
    QV_CHECK( lowest <= QV_INT_BITS );
    return signedOf( bitsOf( value ) | lowestBits( lowest ) );
}

QV_INT qvIntBitClearLowest( QV_INT value, QV_INT lowest )
{
    QV_CHECK( lowest >= 0 );
    QV_CHECK( lowest <= QV_INT_BITS );
    return signedOf( bitsOf( value ) & ~lowestBits( lowest ) );
}

QV_INT qvIntBitHighest( QV_INT value )
{
    return value == 0 ? -1 : QV_INT_BITS - 1 - __builtin_clzll( bitsOf( value ) );
}

QV_INT qvIntBitLowest( QV_INT value )
{
    return value == 0 ? -1 : __builtin_ctzll( bitsOf( value ) );
}

QV_INT qvIntBitCount( QV_INT value )
{
    QV_INT count = 0;
    for ( QV___INT_UNSIGNED bits = bitsOf( value ); bits != 0; bits >>= 8 )
    {
        count += bitCounts.of[bits & 0xFF];
    }
    return count;
}
