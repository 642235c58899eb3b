#ifndef QV_RUNTIME_QV_SHARED_OBJECT_HH
#define QV_RUNTIME_QV_SHARED_OBJECT_HH

namespace qv
{

// Whether a file starts as a shared object of the library's own kind and ends before all that its program headers ask for,
// as a copy does that was interrupted. The dynamic loader maps such a file without a word, and the process then dies of the
// first access behind its end. Any other fault of a file the loader tells by itself.
bool isSharedObjectCut( const char *file );

} // namespace qv

#endif
