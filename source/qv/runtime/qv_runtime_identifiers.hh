#ifndef QV_RUNTIME_QV_RUNTIME_IDENTIFIERS_HH
#define QV_RUNTIME_QV_RUNTIME_IDENTIFIERS_HH

// What operating systems, hardware and variants have in common: beside its name in the code, each value has a short
// identifier for files and a friendly name for people. The value is the row's index.

#include <qv/runtime/qv_handles.h>

namespace qv
{

struct IdentifiedValue
{
    const char *name;
    const char *identifier;
    const char *friendlyName;
};

// New tables from the rows: the enumeration of the names, value to identifier, and identifier to value.
QV_ENUM *enumOfValues( const IdentifiedValue *rows, QV_INT count );
QV_DICT *identifiersOfValues( const IdentifiedValue *rows, QV_INT count );
QV_DICT *valuesOfIdentifiers( const IdentifiedValue *rows, QV_INT count );

// The value of an identifier in the last of these tables, -1 if it is unknown.
QV_INT valueOfIdentifier( QV_DICT *values, QV_STRING *identifier );

} // namespace qv

#endif
