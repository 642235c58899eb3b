#ifndef QV_BASE_QV_LISTENERS_HH
#define QV_BASE_QV_LISTENERS_HH

// The objects attached to a signal or alert: a slot for the first, and a dictionary that exists only from the second on
// and maps each object to itself. The owner's lock guards it.

#include <qv/base/qv_dict.h>
#include <qv/runtime/qv_local.hh>

namespace qv
{

struct Listeners
{
    qvObj slot;
    QV_DICT *others;

    bool any() const
    {
        return slot || ( others && qvDictLength( others ) > 0 );
    }

    void add( qvObj listener )
    {
        if ( !slot )
        {
            slot = retained( listener );
        }
        else if ( slot != listener )
        {
            if ( !others )
            {
                others = qvDictCreate();
            }
            qvDictSetObjKey( &others, listener, listener );
        }
    }

    void remove( qvObj listener )
    {
        if ( slot == listener )
        {
            replaceWith( &slot, qvObj( nullptr ) );
        }
        if ( others )
        {
            qvDictDelObjKey( &others, listener );
        }
    }

    // Fires each listener and lets go of it, the slot first, then the others in dictionary order.
    template <typename Fire> void fire( Fire fireOne )
    {
        if ( slot )
        {
            fireOne( slot );
            replaceWith( &slot, qvObj( nullptr ) );
        }
        if ( others )
        {
            for ( QV_INT idx = 0; idx < qvDictLength( others ); idx++ )
            {
                Local<qv___Obj> listener( qvDictKeyAt( others, idx ) );
                fireOne( static_cast<qvObj>( listener ) );
            }
            replaceWith( &others, static_cast<QV_DICT *>( nullptr ) );
        }
    }

    void drop()
    {
        replaceWith( &slot, qvObj( nullptr ) );
        replaceWith( &others, static_cast<QV_DICT *>( nullptr ) );
    }
};

} // namespace qv

#endif
