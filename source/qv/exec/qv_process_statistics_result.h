#ifndef QV_EXEC_QV_PROCESS_STATISTICS_RESULT_H
#define QV_EXEC_QV_PROCESS_STATISTICS_RESULT_H

/* The result of a query of process statistics: families by name. Copy-on-write: functions that edit take the address of the
 * caller's handle. The caller owns what a function returns. Null handles and a position outside the result stop the
 * process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PROCESS_STATISTICS_RESULT, qvProcessStatisticsResult )

/* A new result without families, or a copy. */
QV_API QV_PROCESS_STATISTICS_RESULT *qvProcessStatisticsResultCreate( void );
QV_API QV_PROCESS_STATISTICS_RESULT *
qvProcessStatisticsResultCreateFrom( QV_PROCESS_STATISTICS_RESULT *source );

/* The families in the order of their names: their number, all of them as a new vector, and one at a position. */
QV_API QV_INT qvProcessStatisticsResultFamiliesLength( QV_PROCESS_STATISTICS_RESULT *result );
QV_API QV_VECTOR *qvProcessStatisticsResultFamiliesVector( QV_PROCESS_STATISTICS_RESULT *result );
QV_API QV_STRING *qvProcessStatisticsResultFamilyNameAt( QV_PROCESS_STATISTICS_RESULT *result, QV_INT idx );
QV_API QV_PROCESS_STATISTICS_FAMILY *qvProcessStatisticsResultFamilyAt( QV_PROCESS_STATISTICS_RESULT *result,
                                                                        QV_INT idx );

/* The family of a name; null if absent. */
QV_API QV_PROCESS_STATISTICS_FAMILY *qvProcessStatisticsResultFamily( QV_PROCESS_STATISTICS_RESULT *result,
                                                                      QV_STRING *name );
QV_API QV_BOOL qvProcessStatisticsResultHasFamily( QV_PROCESS_STATISTICS_RESULT *result, QV_STRING *name );

/* Adds a family, or replaces the one of the same name; removes one, if it is there. */
QV_API void qvProcessStatisticsResultSetFamily( QV_PROCESS_STATISTICS_RESULT **result,
                                                QV_PROCESS_STATISTICS_FAMILY *family );
QV_API void qvProcessStatisticsResultDelFamily( QV_PROCESS_STATISTICS_RESULT **result, QV_STRING *name );

/* Removes all families; puts those of a vector in their place. An element that is no family stops the process. */
QV_API void qvProcessStatisticsResultClearFamilies( QV_PROCESS_STATISTICS_RESULT **result );
QV_API void qvProcessStatisticsResultSetFamiliesVector( QV_PROCESS_STATISTICS_RESULT **result,
                                                        QV_VECTOR *vec );

/* The result as a new store with the array "families", which is left out when empty. */
QV_API QV_STORE *qvProcessStatisticsResultStore( QV_PROCESS_STATISTICS_RESULT *result );

/* A new result from a store. What isn't a family is passed over. */
QV_API QV_PROCESS_STATISTICS_RESULT *qvProcessStatisticsResultRestore( QV_STORE *store );

QV_END_DECLS

#endif
