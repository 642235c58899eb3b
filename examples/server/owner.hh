#ifndef SERVER_OWNER_HH
#define SERVER_OWNER_HH

// References to objects of the library, and its strings as those of C++.

#include <qv/qv.h>

#include <string>
#include <string_view>
#include <utility>

namespace server
{

// One reference, adopted at creation and released at the end; may be null.
template <typename T> class Owner
{
  public:
    Owner() = default;
    explicit Owner( T *adopted ) : handle( adopted ) {}
    Owner( Owner &&other ) noexcept : handle( std::exchange( other.handle, nullptr ) ) {}
    Owner &operator=( Owner &&other ) noexcept
    {
        std::swap( handle, other.handle );
        return *this;
    }
    ~Owner()
    {
        if ( handle )
            qvObjRelease( asObj( handle ) );
    }
    // A further reference to what somebody else owns.
    static Owner share( T *handle )
    {
        qvObjRetain( asObj( handle ) );
        return Owner( handle );
    }
    operator T *() const
    {
        return handle;
    }
    // For functions that edit, which may replace the handle.
    T **edit()
    {
        return &handle;
    }

  private:
    // Every record begins with the header of an object.
    static qvObj asObj( T *handle )
    {
        return reinterpret_cast<qvObj>( handle );
    }

    T *handle = nullptr;
};

using String = Owner<QV_STRING>;

inline String stringOf( std::string_view text )
{
    return String( qvStringCreateFromUtf8( text.data(), static_cast<QV_INT>( text.size() ) ) );
}

inline std::string textOf( QV_STRING *string )
{
    QV_INT length;
    char *bytes = qvStringConvertToUtf8( string, QV_FALSE, &length );
    if ( !bytes )
        return {};
    std::string text( bytes, static_cast<size_t>( length ) );
    qvMemFree( bytes );
    return text;
}

} // namespace server

#endif
