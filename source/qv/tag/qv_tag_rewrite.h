#ifndef QV_TAG_QV_TAG_REWRITE_H
#define QV_TAG_QV_TAG_REWRITE_H

/* Rules that make a tag set from another one: operations, one a tag, and the rewrite that applies them. Both are
 * copy-on-write.
 *
 * Functions that edit take the address of the caller's handle and may replace the handle by a private copy. Arguments are
 * borrowed; the caller owns what a function returns. Null handles, types out of range, positions outside 0 to length - 1,
 * and strings for which qvTagOk doesn't hold where a tag is asked for, stop the process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* What an operation does to its tag in the output: adds it, removes it, or makes it stand there exactly when it stands in
 * the input. */
typedef QV_INT QV_TAG_REWRITE_OPERATION_TYPE;
#define QV_TAG_REWRITE_OPERATION_TYPE_SET         0
#define QV_TAG_REWRITE_OPERATION_TYPE_DELETE      1
#define QV_TAG_REWRITE_OPERATION_TYPE_PASSTHROUGH 2
#define QV_TAG_REWRITE_OPERATION_TYPE_OK( type )  ( ( type ) >= 0 && ( type ) <= 2 )

QV_BEGIN_DECLS

/* The type of a name such as "QV_TAG_REWRITE_OPERATION_TYPE_SET", -1 for none. */
QV_API QV_TAG_REWRITE_OPERATION_TYPE qvTagRewriteOperationTypeFromString( QV_STRING *text );

/* The name of a type. */
QV_API QV_STRING *qvTagRewriteOperationTypeToString( QV_TAG_REWRITE_OPERATION_TYPE type );

QV_SORT_FUNCTIONS( QV_TAG_REWRITE_OPERATION, qvTagRewriteOperation )

/* A new operation. */
QV_API QV_TAG_REWRITE_OPERATION *qvTagRewriteOperationCreate( QV_TAG_REWRITE_OPERATION_TYPE type,
                                                              QV_STRING *tag );

/* A new operation with the fields of source. */
QV_API QV_TAG_REWRITE_OPERATION *qvTagRewriteOperationCreateFrom( QV_TAG_REWRITE_OPERATION *source );

/* The type. */
QV_API QV_TAG_REWRITE_OPERATION_TYPE qvTagRewriteOperationType( QV_TAG_REWRITE_OPERATION *op );

/* Sets the type. */
QV_API void qvTagRewriteOperationSetType( QV_TAG_REWRITE_OPERATION **op, QV_TAG_REWRITE_OPERATION_TYPE type );

/* The tag, never null. */
QV_API QV_STRING *qvTagRewriteOperationTag( QV_TAG_REWRITE_OPERATION *op );

/* Sets the tag. */
QV_API void qvTagRewriteOperationSetTag( QV_TAG_REWRITE_OPERATION **op, QV_STRING *tag );

/* The operation as a store with the values "type" and "tag". */
QV_API QV_STORE *qvTagRewriteOperationStore( QV_TAG_REWRITE_OPERATION *op );

/* The operation that a store describes, null if one of the values is missing or unfit. */
QV_API QV_TAG_REWRITE_OPERATION *qvTagRewriteOperationTryRestore( QV_STORE *store );

QV_SORT_FUNCTIONS( QV_TAG_REWRITE, qvTagRewrite )

/* A new rewrite that changes nothing: no operations, clear false. */
QV_API QV_TAG_REWRITE *qvTagRewriteCreate( void );

/* A new rewrite with the fields of source. */
QV_API QV_TAG_REWRITE *qvTagRewriteCreateFrom( QV_TAG_REWRITE *source );

/* True if the output starts empty, false if it starts as the input. */
QV_API QV_BOOL qvTagRewriteClear( QV_TAG_REWRITE *rewrite );

/* Sets what the output starts as. */
QV_API void qvTagRewriteSetClear( QV_TAG_REWRITE **rewrite, QV_BOOL clear );

/* Removes all operations. */
QV_API void qvTagRewriteClearOperations( QV_TAG_REWRITE **rewrite );

/* Number of operations. */
QV_API QV_INT qvTagRewriteOperationsLength( QV_TAG_REWRITE *rewrite );

/* The operation at a position. */
QV_API QV_TAG_REWRITE_OPERATION *qvTagRewriteOperationAt( QV_TAG_REWRITE *rewrite, QV_INT idx );

/* The operations in tag order. */
QV_API QV_VECTOR *qvTagRewriteOperationsVector( QV_TAG_REWRITE *rewrite );

/* Replaces all operations by those of a vector, of which a later one of the same tag counts. An item that is no operation
 * stops the process. */
QV_API void qvTagRewriteSetOperationsVector( QV_TAG_REWRITE **rewrite, QV_VECTOR *vec );

/* The operation of a tag, or null. */
QV_API QV_TAG_REWRITE_OPERATION *qvTagRewriteOperation( QV_TAG_REWRITE *rewrite, QV_STRING *tag );

/* True if there is an operation of the tag. */
QV_API QV_BOOL qvTagRewriteHasOperation( QV_TAG_REWRITE *rewrite, QV_STRING *tag );

/* Enters an operation under its tag, in place of an earlier one. */
QV_API void qvTagRewriteSetOperation( QV_TAG_REWRITE **rewrite, QV_TAG_REWRITE_OPERATION *op );

/* Removes the operation of a tag, if there is one. */
QV_API void qvTagRewriteDelOperation( QV_TAG_REWRITE **rewrite, QV_STRING *tag );

/* Removes the operation at a position. */
QV_API void qvTagRewriteDelOperationAt( QV_TAG_REWRITE **rewrite, QV_INT idx );

/* The rewrite as a store with the value "clear" and the array "operations", which is there also when it is empty. */
QV_API QV_STORE *qvTagRewriteStore( QV_TAG_REWRITE *rewrite );

/* The rewrite that a store describes; what is missing or unfit is passed over. Never null. */
QV_API QV_TAG_REWRITE *qvTagRewriteRestore( QV_STORE *store );

/* The output for an input. */
QV_API QV_TAG_SET *qvTagRewriteApply( QV_TAG_REWRITE *rewrite, QV_TAG_SET *tagSet );

QV_END_DECLS

#endif
