// What the library's cases of all areas share: the runtime, which starts once and stays up, and handles that
// release what they hold.
#pragma once
#include "bench.hpp"
#include <qv/qv.h>
#include <memory>

// A handle with one reference.
template <class T, void ( *release )( T * )> struct Held
{
    T *it;

    Held() : it( nullptr ) {}
    explicit Held( T *given ) : it( given ) {}
    Held( const Held & ) = delete;
    Held &operator=( const Held & ) = delete;
    ~Held()
    {
        if ( it )
        {
            release( it );
        }
    }
    operator T *() const
    {
        return it;
    }
    T **edit()
    {
        return &it;
    }
};

using String = Held<QV_STRING, qvStringRelease>;
using Buffer = Held<QV_BUFFER, qvBufferRelease>;
using Store = Held<QV_STORE, qvStoreRelease>;
using Path = Held<QV_PATH, qvPathRelease>;

// For captures: the functions of cases are copied.
template <class H, class T> std::shared_ptr<H> held( T *given )
{
    return std::make_shared<H>( given );
}

inline void start_library()
{
    qvRuntimeStartup( 0, -1, nullptr, nullptr, nullptr, nullptr );
}

inline QV_STRING *string_of( const std::string &text )
{
    return qvStringCreateFromUtf8( text.data(), QV_INT( text.size() ) );
}

inline QV_STRING *string_of( const std::u32string &text )
{
    return qvStringCreateFromCharsCopy( reinterpret_cast<const QV_CHAR *>( text.data() ),
                                        QV_INT( text.size() ) );
}

inline QV_BUFFER *buffer_of( const std::string &bytes )
{
    return qvBufferCreateFromBytesCopy( reinterpret_cast<const unsigned char *>( bytes.data() ),
                                        QV_INT( bytes.size() ) );
}
