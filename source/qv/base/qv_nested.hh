#ifndef QV_BASE_QV_NESTED_HH
#define QV_BASE_QV_NESTED_HH

// Order of vectors, dictionaries and stores, and text form of vectors and dictionaries. Those that lie directly
// inside one another are walked with a stack in memory, so that their depth costs no stack of the thread;
// contents of other sorts go through their sort's own functions.

#include <qv/runtime/qv_obj.hh>

namespace qv
{

// The order of two vectors, of two dictionaries or of two stores. Vectors and dictionaries: content by content
// (of dictionaries key, value, key, value), then the shorter one first. Stores: hints, contents, location.
// -1, 0, 1, or what a content's compare function gives.
QV_INT compareNested( qvObj thisObj, qvObj thatObj );

// The order of two objects that may be absent: an absent one stands first.
QV_INT compareOptional( qvObj objA, qvObj objB );

// The text form of a vector, "<a, b>", or of a dictionary, "{a=b, c=d}", owned by the caller.
QV_STRING *nestedToString( qvObj container );

} // namespace qv

#endif
