#ifndef QV_BASE_QV_BOXED_POINTER_HH
#define QV_BASE_QV_BOXED_POINTER_HH

// A plain pointer as an object, for closures. Ordered by address.

#include <qv/runtime/qv_obj.hh>

typedef void ( *qv___BoxedPointerDestroyFunc )( void *value );

struct qv___BoxedPointer : qv___Obj
{
    void *value;
    qv___BoxedPointerDestroyFunc destroy; // called with the value when the object goes, may be null
};

typedef struct qv___BoxedPointer QV___BOXED_POINTER;

QV_BEGIN_DECLS
QV_SORT_FUNCTIONS_INTERNAL( QV___BOXED_POINTER, qv___BoxedPointer )
QV_END_DECLS

// A new object; destroy( value ) runs at its end, if destroy isn't null.
QV___BOXED_POINTER *qv___BoxedPointerCreate( void *value, qv___BoxedPointerDestroyFunc destroy );

void *qv___BoxedPointerValue( QV___BOXED_POINTER *bptr );

#endif
