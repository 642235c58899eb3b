#ifndef QV_RUNTIME_QV_MODULE_HH
#define QV_RUNTIME_QV_MODULE_HH

#include <qv/runtime/qv_module.h>
#include <qv/runtime/qv_obj.hh>

QV_INT qv___ModuleCompareFunc( qvObj thisObj, qvObj thatObj );

// A pure test whether a module object was built for this library and for this product, and is well formed.
QV_BOOL qv___ModuleCheckCompatibility( QV_MODULE *module );

#endif
