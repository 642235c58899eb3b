#ifndef QV_TEST_SUPPORT_SMALL_STACK_HH
#define QV_TEST_SUPPORT_SMALL_STACK_HH

// Runs a function on a thread with a stack of 256 KiB, where unbounded recursion shows at once.

#include <functional>
#include <pthread.h>

namespace test
{

inline bool runOnSmallStack( std::function<void()> body )
{
    pthread_attr_t attributes;
    pthread_attr_init( &attributes );
    pthread_attr_setstacksize( &attributes, 256 * 1024 );
    pthread_t thread;
    auto start = []( void *arg ) -> void * {
        ( *static_cast<std::function<void()> *>( arg ) )();
        return nullptr;
    };
    bool isStarted = pthread_create( &thread, &attributes, start, &body ) == 0;
    pthread_attr_destroy( &attributes );
    return isStarted && pthread_join( thread, nullptr ) == 0;
}

} // namespace test

#endif
