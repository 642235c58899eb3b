#ifndef QV_BASE_QV_FLAGSET_HH
#define QV_BASE_QV_FLAGSET_HH

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_flagset.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: a name in names[bit] is the latest one that was set for that bit.
struct qv___Flagset : qv___Obj
{
    QV_DICT *namesToValues;        // strings to boxed integers, shared between copies
    QV_STRING *names[QV_INT_BITS]; // by bit, null where the bit has no name
};

namespace qv
{

// A new flag set from a component's table. A name that stands there twice stops the process.
QV_FLAGSET *flagsetFromTable( const EnumName *names, QV_INT count );

} // namespace qv

#endif
