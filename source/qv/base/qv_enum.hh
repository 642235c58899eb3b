#ifndef QV_BASE_QV_ENUM_HH
#define QV_BASE_QV_ENUM_HH

#include <qv/base/qv_enum.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: each name of valuesToNames is a key of namesToValues with that value. Both dictionaries are
// shared between copies; theirs is the copy-on-write that keeps two enumerations apart.
struct qv___Enum : qv___Obj
{
    QV_DICT *namesToValues; // strings to boxed integers
    QV_DICT *valuesToNames; // boxed integers to strings
};

namespace qv
{

// One line of the table that a component fills its enumeration or flag set from.
struct EnumName
{
    QV_INT value;
    const char *name;
};

// A new enumeration from a component's table. A name that stands there twice stops the process.
QV_ENUM *enumFromTable( const EnumName *names, QV_INT count );

} // namespace qv

#endif
