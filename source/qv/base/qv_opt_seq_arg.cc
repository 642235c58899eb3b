// The argument that an option sequence has found, as an object, a text, a number or a truth value.

#include <qv/base/qv_opt_seq.hh>

#include <qv/base/qv_boxed_bool.h>
#include <qv/base/qv_boxed_int.h>
#include <qv/base/qv_boxed_real.h>
#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_real.h>

namespace
{

bool isOf( qvObj arg, QV_SORT *sort )
{
    return arg && qvObjSort( arg ) == sort;
}

// What the argument is as a number or a truth value: whether it is one, and its value, 0 if it isn't.
template <typename VALUE> struct Reading
{
    bool ok;
    VALUE value;
};

template <typename VALUE> constexpr Reading<VALUE> noReading = { false, VALUE( 0 ) };

// Reads the argument's text by scan( text, &value, &consumed ), which must take all of it.
template <typename VALUE, typename SCAN> Reading<VALUE> readText( qvObj arg, SCAN scan )
{
    if ( !arg )
        return noReading<VALUE>;
    qv::Local<QV_STRING> text( qvObjToString( arg ) );
    VALUE value = VALUE( 0 );
    QV_INT consumed = 0;
    if ( !scan( text, &value, &consumed ) || consumed != qvStringLength( text ) )
        return noReading<VALUE>;
    return { true, value };
}

Reading<double> readReal( qvObj arg )
{
    if ( isOf( arg, qvBoxedRealSort() ) )
        return { true, qvBoxedRealValue( qvBoxedRealFrom( arg ) ) };
    if ( isOf( arg, qvBoxedIntSort() ) )
        return { true, static_cast<double>( qvBoxedIntValue( qvBoxedIntFrom( arg ) ) ) };
    return readText<double>( arg, []( QV_STRING *text, double *value, QV_INT *consumed ) {
        return qvStringScanReal( text, 0, -1, -1, value, consumed );
    } );
}

// A real as an integer, if it is one and in range. A NaN fails each comparison.
Reading<QV_INT> integerOf( double real )
{
    constexpr double limit = 9223372036854775808.0; // 2 to the power of 63
    bool isInRange = real >= -limit && real < limit;
    if ( !isInRange || qvRealTrunc( real ) != real )
        return noReading<QV_INT>;
    return { true, static_cast<QV_INT>( real ) };
}

Reading<QV_INT> readInt( qvObj arg )
{
    if ( isOf( arg, qvBoxedRealSort() ) )
        return integerOf( qvBoxedRealValue( qvBoxedRealFrom( arg ) ) );
    if ( isOf( arg, qvBoxedIntSort() ) )
        return { true, qvBoxedIntValue( qvBoxedIntFrom( arg ) ) };
    return readText<QV_INT>( arg, []( QV_STRING *text, QV_INT *value, QV_INT *consumed ) {
        return qvStringScanInt( text, 0, -1, -1, value, consumed );
    } );
}

Reading<QV_BOOL> readBool( qvObj arg, QV_BOOL allowNumeric )
{
    if ( isOf( arg, qvBoxedBoolSort() ) )
        return { true, qvBoxedBoolValue( qvBoxedBoolFrom( arg ) ) };
    return readText<QV_BOOL>( arg, [allowNumeric]( QV_STRING *text, QV_BOOL *value, QV_INT *consumed ) {
        return qvStringScanBool( text, 0, -1, allowNumeric, value, consumed );
    } );
}

} // namespace

QV_BOOL qvOptSeqHasArg( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return QV_BOOL_FROM( seq->arg );
}

qvObj qvOptSeqArgObj( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return qv::retainedOptional( seq->arg );
}

QV_STRING *qvOptSeqArgString( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return seq->arg ? qvObjToString( seq->arg ) : nullptr;
}

QV_BOOL qvOptSeqArgIsReal( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return QV_BOOL_FROM( readReal( seq->arg ).ok );
}

double qvOptSeqArgReal( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return readReal( seq->arg ).value;
}

QV_BOOL qvOptSeqArgIsInt( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return QV_BOOL_FROM( readInt( seq->arg ).ok );
}

QV_INT qvOptSeqArgInt( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return readInt( seq->arg ).value;
}

QV_BOOL qvOptSeqArgIsBool( QV_OPT_SEQ *seq, QV_BOOL allowNumeric )
{
    QV_CHECK( seq );
    bool isNumber = isOf( seq->arg, qvBoxedRealSort() ) || isOf( seq->arg, qvBoxedIntSort() );
    if ( isNumber )
        return QV_BOOL_FROM( allowNumeric );
    return QV_BOOL_FROM( readBool( seq->arg, allowNumeric ).ok );
}

QV_BOOL qvOptSeqArgBool( QV_OPT_SEQ *seq, QV_BOOL allowNumeric )
{
    QV_CHECK( seq );
    return readBool( seq->arg, allowNumeric ).value;
}
