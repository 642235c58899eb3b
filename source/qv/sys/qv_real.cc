#include <qv/sys/qv_real.h>

#include <float.h>
#include <math.h>

namespace
{

constexpr double epsilon = 2.220446049250313e-16;
constexpr double intBound = 9223372036854775808.0; // 2^63

} // namespace

QV_BOOL qvRealIsFinite( double r )
{
    return fabs( r ) <= DBL_MAX;
}

QV_BOOL qvRealIsNan( double r )
{
    return r != r;
}

QV_BOOL qvRealOk( double r )
{
    return qvRealIsFinite( r );
}

QV_BOOL qvRealEquals( double a, double b )
{
    return b - epsilon <= a && b + epsilon >= a;
}

QV_INT qvRealCompare( double a, double b )
{
    return qvRealEquals( a, b ) ? 0 : a < b ? -1 : 1;
}

QV_BOOL qvRealEqualsInt( double r, QV_INT i )
{
    return qvRealEquals( r, static_cast<double>( i ) );
}

QV_INT qvRealCompareInt( double r, QV_INT i )
{
    return qvRealCompare( r, static_cast<double>( i ) );
}

double qvRealTrunc( double r )
{
    return r < 0 ? ceil( r ) : floor( r );
}

QV_INT qvRealToInt( double r )
{
    if ( r < -intBound )
        return QV_INT_MIN;
    if ( r >= intBound )
        return QV_INT_MAX;
    if ( r != r )
    {
        return QV_INT_MIN; // what the processor's truncation gives, without asking for it
    }
    return static_cast<QV_INT>( qvRealTrunc( r ) );
}
