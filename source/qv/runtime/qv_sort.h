#ifndef QV_RUNTIME_QV_SORT_H
#define QV_RUNTIME_QV_SORT_H

/* Sorts: the static descriptors of the types of objects. Sorts are objects too, ordered by name; they are never freed. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_SORT, qvSort )

/* The module that owns the sort, not retained; null if it has none. */
QV_API QV_MODULE *qvSortModule( QV_SORT *sort );
QV_API QV_BOOL qvSortHasModule( QV_SORT *sort );

/* The sort's name, such as "QV_STRING", owned by the caller. */
QV_API QV_STRING *qvSortName( QV_SORT *sort );

/* The number of live objects of the sort at this moment. */
QV_API QV_INT qvSortObjects( QV_SORT *sort );

/* All live objects of the sort in a new vector owned by the caller, which keeps them alive; null unless the object
 * database is on. Objects that are being freed, and the vector itself, are left out. */
QV_API QV_VECTOR *qvSortSnapshot( QV_SORT *sort );

QV_END_DECLS

#endif
