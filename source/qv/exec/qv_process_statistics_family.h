#ifndef QV_EXEC_QV_PROCESS_STATISTICS_FAMILY_H
#define QV_EXEC_QV_PROCESS_STATISTICS_FAMILY_H

/* The statistics of all processes of one name: up to four sums, and snapshots of living processes by their identifiers.
 * Copy-on-write: functions that edit take the address of the caller's handle. The caller owns what a function returns. Null
 * handles, a name that fails qvNameOk( name, QV_TRUE ) and a position outside the family stop the process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PROCESS_STATISTICS_FAMILY, qvProcessStatisticsFamily )

/* A new family of a name without anything, or a copy. */
QV_API QV_PROCESS_STATISTICS_FAMILY *qvProcessStatisticsFamilyCreate( QV_STRING *name );
QV_API QV_PROCESS_STATISTICS_FAMILY *
qvProcessStatisticsFamilyCreateFrom( QV_PROCESS_STATISTICS_FAMILY *source );

/* The name. */
QV_API QV_STRING *qvProcessStatisticsFamilyName( QV_PROCESS_STATISTICS_FAMILY *family );
QV_API void qvProcessStatisticsFamilySetName( QV_PROCESS_STATISTICS_FAMILY **family, QV_STRING *name );

/* The sum of the processes that have ended; null if absent. */
QV_API QV_PROCESS_STATISTICS_GROUP *
qvProcessStatisticsFamilyGroupPast( QV_PROCESS_STATISTICS_FAMILY *family );
QV_API QV_BOOL qvProcessStatisticsFamilyHasGroupPast( QV_PROCESS_STATISTICS_FAMILY *family );
QV_API void qvProcessStatisticsFamilySetGroupPast( QV_PROCESS_STATISTICS_FAMILY **family,
                                                   QV_PROCESS_STATISTICS_GROUP *group );
QV_API void qvProcessStatisticsFamilyDelGroupPast( QV_PROCESS_STATISTICS_FAMILY **family );

/* The sum of the processes that have ended since the reset; null if absent. */
QV_API QV_PROCESS_STATISTICS_GROUP *
qvProcessStatisticsFamilyGroupPastSinceReset( QV_PROCESS_STATISTICS_FAMILY *family );
QV_API QV_BOOL qvProcessStatisticsFamilyHasGroupPastSinceReset( QV_PROCESS_STATISTICS_FAMILY *family );
QV_API void qvProcessStatisticsFamilySetGroupPastSinceReset( QV_PROCESS_STATISTICS_FAMILY **family,
                                                             QV_PROCESS_STATISTICS_GROUP *group );
QV_API void qvProcessStatisticsFamilyDelGroupPastSinceReset( QV_PROCESS_STATISTICS_FAMILY **family );

/* The sum of the living processes; null if absent. */
QV_API QV_PROCESS_STATISTICS_GROUP *
qvProcessStatisticsFamilyGroupCurrentSinceCreation( QV_PROCESS_STATISTICS_FAMILY *family );
QV_API QV_BOOL qvProcessStatisticsFamilyHasGroupCurrentSinceCreation( QV_PROCESS_STATISTICS_FAMILY *family );
QV_API void qvProcessStatisticsFamilySetGroupCurrentSinceCreation( QV_PROCESS_STATISTICS_FAMILY **family,
                                                                   QV_PROCESS_STATISTICS_GROUP *group );
QV_API void qvProcessStatisticsFamilyDelGroupCurrentSinceCreation( QV_PROCESS_STATISTICS_FAMILY **family );

/* The sum of the living processes since their reset; null if absent. */
QV_API QV_PROCESS_STATISTICS_GROUP *
qvProcessStatisticsFamilyGroupCurrentSinceReset( QV_PROCESS_STATISTICS_FAMILY *family );
QV_API QV_BOOL qvProcessStatisticsFamilyHasGroupCurrentSinceReset( QV_PROCESS_STATISTICS_FAMILY *family );
QV_API void qvProcessStatisticsFamilySetGroupCurrentSinceReset( QV_PROCESS_STATISTICS_FAMILY **family,
                                                                QV_PROCESS_STATISTICS_GROUP *group );
QV_API void qvProcessStatisticsFamilyDelGroupCurrentSinceReset( QV_PROCESS_STATISTICS_FAMILY **family );

/* The snapshots in the order of their identifiers: their number, all of them as a new vector, and one at a position. */
QV_API QV_INT qvProcessStatisticsFamilyProcessesLength( QV_PROCESS_STATISTICS_FAMILY *family );
QV_API QV_VECTOR *qvProcessStatisticsFamilyProcessesVector( QV_PROCESS_STATISTICS_FAMILY *family );
QV_API QV_IDENTIFIER *qvProcessStatisticsFamilyProcessIdentifierAt( QV_PROCESS_STATISTICS_FAMILY *family,
                                                                    QV_INT idx );
QV_API QV_PROCESS_STATISTICS *qvProcessStatisticsFamilyProcessAt( QV_PROCESS_STATISTICS_FAMILY *family,
                                                                  QV_INT idx );

/* The snapshot of an identifier; null if absent. */
QV_API QV_PROCESS_STATISTICS *qvProcessStatisticsFamilyProcess( QV_PROCESS_STATISTICS_FAMILY *family,
                                                                QV_IDENTIFIER *identifier );
QV_API QV_BOOL qvProcessStatisticsFamilyHasProcess( QV_PROCESS_STATISTICS_FAMILY *family,
                                                    QV_IDENTIFIER *identifier );

/* Adds a snapshot, or replaces the one of the same identifier; removes one, if it is there. */
QV_API void qvProcessStatisticsFamilySetProcess( QV_PROCESS_STATISTICS_FAMILY **family,
                                                 QV_PROCESS_STATISTICS *statistics );
QV_API void qvProcessStatisticsFamilyDelProcess( QV_PROCESS_STATISTICS_FAMILY **family,
                                                 QV_IDENTIFIER *identifier );

/* Removes all snapshots; puts those of a vector in their place. An element that is no snapshot stops the process. */
QV_API void qvProcessStatisticsFamilyClearProcesses( QV_PROCESS_STATISTICS_FAMILY **family );
QV_API void qvProcessStatisticsFamilySetProcessesVector( QV_PROCESS_STATISTICS_FAMILY **family,
                                                         QV_VECTOR *vec );

/* The family as a new store with the key "name" and, where present, "past", "pastSinceReset", "currentSinceCreation",
 * "currentSinceReset" and the array "processes". */
QV_API QV_STORE *qvProcessStatisticsFamilyStore( QV_PROCESS_STATISTICS_FAMILY *family );

/* A new family from a store; null if the name is missing or anything in it is wrong. */
QV_API QV_PROCESS_STATISTICS_FAMILY *qvProcessStatisticsFamilyTryRestore( QV_STORE *store );

QV_END_DECLS

#endif
