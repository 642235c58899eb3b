#ifndef QV_TAG_QV_TAG_DEFINITION_SET_H
#define QV_TAG_QV_TAG_DEFINITION_SET_H

/* Sets of tag definitions, one a tag, in tag order. Copy-on-write.
 *
 * Functions that edit take the address of the caller's handle and may replace the handle by a private copy. Arguments are
 * borrowed; the caller owns what a function returns. Null handles, positions outside 0 to length - 1, and strings for which
 * qvTagOk doesn't hold where a tag is asked for, stop the process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_TAG_DEFINITION_SET, qvTagDefinitionSet )

/* A new empty set. */
QV_API QV_TAG_DEFINITION_SET *qvTagDefinitionSetCreate( void );

/* A new set with the definitions of source. */
QV_API QV_TAG_DEFINITION_SET *qvTagDefinitionSetCreateFrom( QV_TAG_DEFINITION_SET *source );

/* Number of definitions. */
QV_API QV_INT qvTagDefinitionSetDefinitionsLength( QV_TAG_DEFINITION_SET *ds );

/* The definition at a position. */
QV_API QV_TAG_DEFINITION *qvTagDefinitionSetDefinitionAt( QV_TAG_DEFINITION_SET *ds, QV_INT idx );

/* The definitions in tag order. */
QV_API QV_VECTOR *qvTagDefinitionSetDefinitionsVector( QV_TAG_DEFINITION_SET *ds );

/* Replaces all definitions by those of a vector, of which a later one of the same tag counts. An item that is no definition
 * stops the process. */
QV_API void qvTagDefinitionSetSetDefinitionsVector( QV_TAG_DEFINITION_SET **ds, QV_VECTOR *vec );

/* The definition of a tag, or null. */
QV_API QV_TAG_DEFINITION *qvTagDefinitionSetDefinition( QV_TAG_DEFINITION_SET *ds, QV_STRING *tag );

/* True if there is a definition of the tag. */
QV_API QV_BOOL qvTagDefinitionSetHasDefinition( QV_TAG_DEFINITION_SET *ds, QV_STRING *tag );

/* Enters a definition under its tag, in place of an earlier one. */
QV_API void qvTagDefinitionSetSetDefinition( QV_TAG_DEFINITION_SET **ds, QV_TAG_DEFINITION *def );

/* Removes the definition of a tag, if there is one. */
QV_API void qvTagDefinitionSetDelDefinition( QV_TAG_DEFINITION_SET **ds, QV_STRING *tag );

/* Removes the definition at a position. */
QV_API void qvTagDefinitionSetDelDefinitionAt( QV_TAG_DEFINITION_SET **ds, QV_INT idx );

/* Removes all definitions. */
QV_API void qvTagDefinitionSetClearDefinitions( QV_TAG_DEFINITION_SET **ds );

/* The set as a store with the array "definitions", which is there also when it is empty. */
QV_API QV_STORE *qvTagDefinitionSetStore( QV_TAG_DEFINITION_SET *ds );

/* The set of the definitions that a store describes; what is none is passed over. Never null. */
QV_API QV_TAG_DEFINITION_SET *qvTagDefinitionSetRestore( QV_STORE *store );

QV_END_DECLS

#endif
