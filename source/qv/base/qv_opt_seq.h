#ifndef QV_BASE_QV_OPT_SEQ_H
#define QV_BASE_QV_OPT_SEQ_H

/* A walk along an argument vector, which yields one option or argument a call:
 *
 *     while ( qvOptSeqHasNext( seq ) )
 *     {
 *         switch ( qvOptSeqNext( seq ) )
 *         {
 *             ...
 *         }
 *     }
 *
 * A string of two characters or more that begins with "-" is an option. "--name" and "--name=argument" are long
 * options; names may be abbreviated. "-x" is a short one, and "-xyz" stands for "-x" and "-yz"; where x takes an
 * argument, "yz" is it. An argument that isn't attached is the next element, whatever it looks like. "--" ends
 * the options: all behind it are arguments, as is a lone "-".
 *
 * What users may get wrong ends in a negative id with an error text, and the walk can go on. A sequence is
 * changed in place and belongs to one thread. A null handle stops the process; the caller owns the objects that a
 * function returns. */

#include <qv/base/qv_opt_def.h>
#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_OPT_SEQ, qvOptSeq )

/* A new walk along argv, which has no program name in front. The caller's vector doesn't change. */
QV_API QV_OPT_SEQ *qvOptSeqCreate( QV_OPT_DEF *def, QV_VECTOR *argv );

/* True while elements are left; a last "--" doesn't count. */
QV_API QV_BOOL qvOptSeqHasNext( QV_OPT_SEQ *seq );

/* Takes the next option or argument and returns its id, which is below 0 for an error. QV_OPT_ID_END is none: there
 * were only options to ignore. Stops the process if nothing is left. */
QV_API QV_INT qvOptSeqNext( QV_OPT_SEQ *seq );

/* The elements that haven't been used yet. */
QV_API QV_VECTOR *qvOptSeqRemainingArgv( QV_OPT_SEQ *seq );

/* The result of the last qvOptSeqNext, QV_OPT_ID_UNDEFINED before the first; both are always the same. */
QV_API QV_INT qvOptSeqId( QV_OPT_SEQ *seq );
QV_API QV_INT qvOptSeqIdSecondary( QV_OPT_SEQ *seq );

/* The option as it was written, "-x" or "--name" without "=" and argument; null for an argument on its own. */
QV_API QV_BOOL qvOptSeqHasOpt( QV_OPT_SEQ *seq );
QV_API QV_STRING *qvOptSeqOpt( QV_OPT_SEQ *seq );

/* The argument of the option, or the one on its own, as an object or as its text; null if there is none. */
QV_API QV_BOOL qvOptSeqHasArg( QV_OPT_SEQ *seq );
QV_API qvObj qvOptSeqArgObj( QV_OPT_SEQ *seq );
QV_API QV_STRING *qvOptSeqArgString( QV_OPT_SEQ *seq );

/* The argument as a number: of a boxed real or integer its value, of anything else what its whole text reads as
 * (a prefix such as 0x gives the base), otherwise 0. A boxed real counts as an integer if it is one and in
 * range. */
QV_API QV_BOOL qvOptSeqArgIsReal( QV_OPT_SEQ *seq );
QV_API double qvOptSeqArgReal( QV_OPT_SEQ *seq );
QV_API QV_BOOL qvOptSeqArgIsInt( QV_OPT_SEQ *seq );
QV_API QV_INT qvOptSeqArgInt( QV_OPT_SEQ *seq );

/* The argument as a truth value: of a boxed bool its value, of anything else what its whole text reads as by
 * qvStringScanBool, otherwise false. Numbers count with allowNumeric only. */
QV_API QV_BOOL qvOptSeqArgIsBool( QV_OPT_SEQ *seq, QV_BOOL allowNumeric );
QV_API QV_BOOL qvOptSeqArgBool( QV_OPT_SEQ *seq, QV_BOOL allowNumeric );

/* What is wrong, for the user to read; null unless the id is that of an error. */
QV_API QV_BOOL qvOptSeqHasError( QV_OPT_SEQ *seq );
QV_API QV_STRING *qvOptSeqError( QV_OPT_SEQ *seq );

QV_END_DECLS

#endif
