#ifndef QV_BASE_QV_GENERATION_H
#define QV_BASE_QV_GENERATION_H

/* Generations: a tree of creation stamps. The path of a generation, "3:0:2" for the third child of the first
 * child of the fourth top-level generation, is its order and its text: a parent is older than its children,
 * an older sibling older than a younger one. A registry keeps out the descendants of what it holds. All
 * functions are safe from any thread. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_GENERATION, qvGeneration )

/* A new top-level generation with the next number of the process. */
QV_API QV_GENERATION *qvGenerationCreate( void );

/* A new generation with the next number among the children of a parent, which it retains. */
QV_API QV_GENERATION *qvGenerationCreateWithParent( QV_GENERATION *parentGeneration );

/* The parent, which the caller must release; null at the top level. */
QV_API QV_GENERATION *qvGenerationParent( QV_GENERATION *generation );
QV_API QV_BOOL qvGenerationHasParent( QV_GENERATION *generation );

/* Whether generation is the direct parent of otherGeneration, and the other way round. */
QV_API QV_BOOL qvGenerationIsParent( QV_GENERATION *generation, QV_GENERATION *otherGeneration );
QV_API QV_BOOL qvGenerationIsChild( QV_GENERATION *generation, QV_GENERATION *otherGeneration );

/* Whether generation stands above otherGeneration at any distance, and the other way round. Nobody is above
 * himself. */
QV_API QV_BOOL qvGenerationIsAncestor( QV_GENERATION *generation, QV_GENERATION *otherGeneration );
QV_API QV_BOOL qvGenerationIsDescendant( QV_GENERATION *generation, QV_GENERATION *otherGeneration );

/* Whether generation comes after otherGeneration in the order of the paths, or before it. */
QV_API QV_BOOL qvGenerationIsYounger( QV_GENERATION *generation, QV_GENERATION *otherGeneration );
QV_API QV_BOOL qvGenerationIsOlder( QV_GENERATION *generation, QV_GENERATION *otherGeneration );

QV_SORT_FUNCTIONS( QV_GENERATION_MUTEX, qvGenerationMutex )

/* A new, empty registry. */
QV_API QV_GENERATION_MUTEX *qvGenerationMutexCreate( void );

/* Registers a generation, retaining it. False, and no change, if it or one of its ancestors is registered
 * already. */
QV_API QV_BOOL qvGenerationMutexTryRegister( QV_GENERATION_MUTEX *mutex, QV_GENERATION *generation );

/* Removes a generation, if it is registered. */
QV_API void qvGenerationMutexUnregister( QV_GENERATION_MUTEX *mutex, QV_GENERATION *generation );

QV_END_DECLS

#endif
