#include <qv/base/qv_opt_seq.hh>

#include <qv/base/qv_boxed_bool.h>
#include <qv/base/qv_opt_def.hh>
#include <qv/base/qv_range_map.h>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV_OPT_SEQ, qvOptSeq, { .freeFunc = qv___OptSeqFreeFunc } )

namespace
{

enum class Element
{
    deferred, // no string, to come out behind the options
    argument,
    endOfOptions,
    longOption,
    shortOption,
};

// The element as a string, borrowed; null if it is none.
QV_STRING *stringAt( QV_VECTOR *argv, QV_INT idx )
{
    qvObj element = qv::vectorAt( argv, idx );
    return qvObjSort( element ) == qvStringSort() ? qvStringFrom( element ) : nullptr;
}

bool isDashes( QV_STRING *element )
{
    return element && qv::stringLength( element ) == 2 && qv::stringCharAt( element, 0 ) == '-' &&
           qv::stringCharAt( element, 1 ) == '-';
}

Element classify( const QV_OPT_SEQ *seq, QV_INT idx )
{
    QV_STRING *element = stringAt( seq->argv, idx );
    if ( !element && seq->options && seq->def->reorder )
        return Element::deferred;
    if ( !element || !seq->options || qv::stringLength( element ) < 2 ||
         qv::stringCharAt( element, 0 ) != '-' )
        return Element::argument;
    if ( isDashes( element ) )
        return Element::endOfOptions;
    return qv::stringCharAt( element, 1 ) == '-' ? Element::longOption : Element::shortOption;
}

void dropFinalDashes( QV_OPT_SEQ *seq )
{
    if ( qv::vectorLength( seq->argv ) == 1 && isDashes( stringAt( seq->argv, 0 ) ) )
        qvVectorClear( &seq->argv );
}

// Removes the element from the vector and hands it over.
qvObj takeAt( QV_OPT_SEQ *seq, QV_INT idx )
{
    qvObj element = qvVectorObjAt( seq->argv, idx );
    qvVectorDelAt( &seq->argv, idx );
    return element;
}

void clearFound( QV_OPT_SEQ *seq )
{
    qv::replaceWith<QV_STRING>( &seq->opt, nullptr );
    qv::replaceWith<qv___Obj>( &seq->arg, nullptr );
}

// Sets the error text that belongs to the id, and returns the id.
QV_INT fail( QV_OPT_SEQ *seq, QV_INT id )
{
    const char *format = nullptr;
    switch ( id )
    {
    case QV_OPT_ID_UNDEFINED:
        format = "%s: option undefined";
        break;
    case QV_OPT_ID_AMBIGUOUS:
        format = "%s: ambiguous";
        break;
    case QV_OPT_ID_ARG_MISSING:
        format = "%s: argument missing";
        break;
    case QV_OPT_ID_ARG_DISALLOWED:
        format = "%s: argument disallowed";
        break;
    case QV_OPT_ID_MULTIPLE:
        format = "%s: multiple options disallowed";
        break;
    case QV_OPT_ID_ABBREVIATED:
        format = "%s: abbreviated option disallowed";
        break;
    default:
        qv::replaceWith( &seq->error, qvStringCreateFromCstr( "non-option argument disallowed", -1 ) );
        return id;
    }
    qv::replaceWith( &seq->error, qvStringCreateFromFormatCstr( format, -1, seq->opt ) );
    return id;
}

QV_INT takeArgument( QV_OPT_SEQ *seq, QV_INT idx )
{
    qv::Local<qv___Obj> element( takeAt( seq, idx ) );
    if ( seq->def->argOnly < 0 )
        return fail( seq, QV_OPT_ID_NON_OPTION );
    seq->arg = element.give();
    return seq->def->argOnly;
}

// The argument of an option is the next element, whatever it looks like; false if there is none.
bool takeNextAsArg( QV_OPT_SEQ *seq, QV_INT idx )
{
    if ( idx == qv::vectorLength( seq->argv ) )
        return false;
    seq->arg = takeAt( seq, idx );
    return true;
}

QV_INT takeLongOption( QV_OPT_SEQ *seq, QV_INT idx )
{
    seq->opt = qvStringFrom( takeAt( seq, idx ) );
    QV_INT equalsSign = qvStringFindChar( seq->opt, 0, '=' );
    if ( equalsSign >= 0 )
    {
        QV_INT behind = qvStringLength( seq->opt ) - equalsSign - 1;
        seq->arg = qvStringObj( qvStringCreateFromTrailing( seq->opt, behind ) );
        qvStringDelTrailing( &seq->opt, behind + 1 );
    }
    qv::Local<QV_STRING> name( qvStringCreateFromTrailing( seq->opt, qvStringLength( seq->opt ) - 2 ) );

    QV_BOOL abbreviated = QV_FALSE;
    QV_INT id = qvOptDefLongOpt( seq->def, name, QV_TRUE, &abbreviated );
    if ( id < 0 )
        return fail( seq, id );
    QV_OPT_FLAGS flags = qvOptDefFlags( seq->def, id );
    if ( ( flags & QV_OPT_FLAG_ARGUMENT ) && !seq->arg && !takeNextAsArg( seq, idx ) )
        return fail( seq, QV_OPT_ID_ARG_MISSING );
    if ( ( flags & QV_OPT_FLAG_NO_ABBREV ) && abbreviated )
        return fail( seq, QV_OPT_ID_ABBREVIATED );
    if ( !( flags & QV_OPT_FLAG_ARGUMENT ) && seq->arg )
        return fail( seq, QV_OPT_ID_ARG_DISALLOWED );
    return id;
}

QV_INT takeShortOption( QV_OPT_SEQ *seq, QV_INT idx )
{
    qv::Local<QV_STRING> element( qvStringFrom( qvVectorObjAt( seq->argv, idx ) ) );
    QV_CHAR optChar = qvStringCharAt( element, 1 );
    QV_INT behind = qvStringLength( element ) - 2;
    seq->opt = qvStringCreateFromFormatCstr( "-%c", -1, optChar );

    QV_INT id = qvOptDefShortOpt( seq->def, optChar );
    bool takesArg = id >= 0 && ( qvOptDefFlags( seq->def, id ) & QV_OPT_FLAG_ARGUMENT );
    if ( behind > 0 && !takesArg )
    {
        // What follows are further options, which come out one a call.
        qvStringDelInner( element.edit(), 1, 1 );
        qvVectorSetStringAt( &seq->argv, idx, element );
        return id < 0 ? fail( seq, id ) : id;
    }
    qvVectorDelAt( &seq->argv, idx );
    if ( id < 0 )
        return fail( seq, id );
    if ( takesArg && behind > 0 )
        seq->arg = qvStringObj( qvStringCreateFromTrailing( element, behind ) );
    else if ( takesArg && !takeNextAsArg( seq, idx ) )
        return fail( seq, QV_OPT_ID_ARG_MISSING );
    return id;
}

// False if the id may occur once and has occurred.
bool admitOnce( QV_OPT_SEQ *seq, QV_INT id, QV_OPT_FLAGS flags )
{
    if ( !( flags & QV_OPT_FLAG_ONCE ) )
        return true;
    if ( qvRangeMapHasIntKey( seq->once, id ) )
        return false;
    qv::Local<QV_BOXED_BOOL> met( qvBoxedBoolCreate( QV_TRUE ) );
    qvRangeMapSetIntKey( &seq->once, id, qvBoxedBoolObj( met ) );
    return true;
}

QV_INT takeNext( QV_OPT_SEQ *seq )
{
    QV_INT idx = 0;
    for ( ;; )
    {
        if ( idx == qv::vectorLength( seq->argv ) )
        {
            if ( idx == 0 )
                return QV_OPT_ID_END;
            // Only deferred elements are left: now they come out.
            seq->options = QV_FALSE;
            idx = 0;
        }
        Element kind = classify( seq, idx );
        if ( kind == Element::argument )
            return takeArgument( seq, idx );
        if ( kind == Element::deferred )
        {
            idx++;
            continue;
        }
        if ( kind == Element::endOfOptions )
        {
            seq->options = QV_FALSE;
            qvVectorDelAt( &seq->argv, idx );
            idx = 0;
            continue;
        }

        QV_INT id = kind == Element::longOption ? takeLongOption( seq, idx ) : takeShortOption( seq, idx );
        if ( id < 0 )
            return id;
        QV_OPT_FLAGS flags = qvOptDefFlags( seq->def, id );
        if ( !admitOnce( seq, id, flags ) )
            return fail( seq, QV_OPT_ID_MULTIPLE );
        if ( !( flags & QV_OPT_FLAG_IGNORE ) )
            return id;
        clearFound( seq );
    }
}

} // namespace

void qv___OptSeqFreeFunc( qvObj thisObj )
{
    QV_OPT_SEQ *seq = qvOptSeqFrom( thisObj );
    QV_CHECK( seq );
    qvOptDefRelease( seq->def );
    qvVectorRelease( seq->argv );
    qv::releaseOptional( seq->opt );
    qv::releaseOptional( seq->arg );
    qv::releaseOptional( seq->error );
    qvRangeMapRelease( seq->once );
}

QV_OPT_SEQ *qvOptSeqCreate( QV_OPT_DEF *def, QV_VECTOR *argv )
{
    QV_CHECK( def );
    QV_CHECK( argv );
    auto *seq = qv::create<QV_OPT_SEQ>( qvOptSeqSort() );
    seq->def = qv::retained( def );
    seq->argv = qv::retained( argv );
    seq->id = QV_OPT_ID_UNDEFINED;
    seq->idSecondary = QV_OPT_ID_UNDEFINED;
    seq->opt = nullptr;
    seq->arg = nullptr;
    seq->error = nullptr;
    seq->once = qvRangeMapCreateAutoCollapsing();
    seq->options = QV_TRUE;
    if ( def->stringize )
        qvVectorStringize( &seq->argv );
    dropFinalDashes( seq );
    return seq;
}

QV_BOOL qvOptSeqHasNext( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return QV_BOOL_FROM( qv::vectorLength( seq->argv ) > 0 );
}

QV_INT qvOptSeqNext( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    QV_CHECK( qvOptSeqHasNext( seq ) );
    clearFound( seq );
    qv::replaceWith<QV_STRING>( &seq->error, nullptr );
    seq->id = takeNext( seq );
    seq->idSecondary = seq->id;
    dropFinalDashes( seq );
    return seq->id;
}

QV_VECTOR *qvOptSeqRemainingArgv( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return qv::retained( seq->argv );
}

QV_INT qvOptSeqId( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return seq->id;
}

QV_INT qvOptSeqIdSecondary( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return seq->idSecondary;
}

QV_BOOL qvOptSeqHasOpt( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return QV_BOOL_FROM( seq->opt );
}

QV_STRING *qvOptSeqOpt( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return qv::retainedOptional( seq->opt );
}

QV_BOOL qvOptSeqHasError( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return QV_BOOL_FROM( seq->error );
}

QV_STRING *qvOptSeqError( QV_OPT_SEQ *seq )
{
    QV_CHECK( seq );
    return qv::retainedOptional( seq->error );
}
