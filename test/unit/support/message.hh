#ifndef QV_TEST_SUPPORT_MESSAGE_HH
#define QV_TEST_SUPPORT_MESSAGE_HH

// A message sink that keeps the messages' texts, and fails on demand.

#include "support/test.hh"

#include <qv/base/qv_boxed_pointer.hh>

namespace test
{

struct KeptMessages
{
    std::vector<std::string> written;
    int flushes = 0;
    bool refuseWrites = false;
    bool refuseFlushes = false;

    // A sink that writes here, which must outlive it.
    Local<QV_MESSAGE_SINK> sink()
    {
        Local<QV___BOXED_POINTER> closure( qv___BoxedPointerCreate( this, nullptr ) );
        return Local<QV_MESSAGE_SINK>(
            qv___MessageSinkCreate( writeFunc, flushFunc, qv___BoxedPointerObj( closure ) ) );
    }

  private:
    static KeptMessages *of( qvObj closure )
    {
        return static_cast<KeptMessages *>(
            qv___BoxedPointerValue( static_cast<QV___BOXED_POINTER *>( closure ) ) );
    }

    static QV_BOOL writeFunc( qvObj closure, QV_MESSAGE *msg )
    {
        if ( !of( closure )->refuseWrites )
            of( closure )->written.push_back( takeUtf8( qvMessageToString( msg ) ) );
        return !of( closure )->refuseWrites;
    }

    static QV_BOOL flushFunc( qvObj closure )
    {
        of( closure )->flushes++;
        return !of( closure )->refuseFlushes;
    }
};

} // namespace test

#endif
