#ifndef QV_TEST_SUPPORT_TEST_HH
#define QV_TEST_SUPPORT_TEST_HH

// What every test begins with: GoogleTest, the whole public interface, and texts, bytes and lists from literals. Compiled
// once for all programs.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <qv/base/qv_buffer.hh>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/qv.h>
#include <qv/runtime/qv_local.hh>

namespace test
{

using qv::Local;

// ---- What the interface takes of texts and lists ----

template <typename LIST> QV_INT lengthOf( const LIST &list )
{
    return static_cast<QV_INT>( list.size() );
}

inline const QV_CHAR *charsOf( std::u32string_view chars )
{
    return reinterpret_cast<const QV_CHAR *>( chars.data() );
}

// ---- Strings ----

// A string from UTF-8, for example text( "größe" ).
inline Local<QV_STRING> text( std::string_view utf8 )
{
    return Local<QV_STRING>( qvStringCreateFromUtf8( utf8.data(), lengthOf( utf8 ) ) );
}

// A string from code points, for example text( U"a\x10FFFF" ).
inline Local<QV_STRING> text( std::u32string_view chars )
{
    return Local<QV_STRING>( qvStringCreateFromCharsCopy( charsOf( chars ), lengthOf( chars ) ) );
}

inline std::u32string toU32( QV_STRING *qvs )
{
    return std::u32string( reinterpret_cast<const char32_t *>( qvStringBacking( qvs ) ),
                           static_cast<size_t>( qvStringLength( qvs ) ) );
}

inline std::string toUtf8( QV_STRING *qvs )
{
    QV_INT length = 0;
    char *bytes = qvStringConvertToUtf8( qvs, QV_FALSE, &length );
    std::string result( bytes ? bytes : "", static_cast<size_t>( length ) );
    qvMemFree( bytes );
    return result;
}

// The text of a string that the caller hands over, for results: EXPECT_EQ( "ab", takeUtf8( qvThingToString( x ) ) ).
inline std::string takeUtf8( QV_STRING *given )
{
    Local<QV_STRING> owner( given );
    return toUtf8( owner );
}

inline std::string times( size_t count, std::string_view piece )
{
    std::string all;
    for ( ; count > 0; count-- )
        all += piece;
    return all;
}

// ---- Bytes ----

inline Local<QV_BUFFER> bufferOf( std::string_view bytes )
{
    return Local<QV_BUFFER>( qvBufferCreateFromBytesCopy(
        reinterpret_cast<const unsigned char *>( bytes.data() ), lengthOf( bytes ) ) );
}

inline std::string bytesOf( QV_BUFFER *buffer )
{
    return std::string( reinterpret_cast<const char *>( qvBufferBacking( buffer ) ),
                        static_cast<size_t>( qvBufferLength( buffer ) ) );
}

// The bytes of a buffer that the caller hands over, "none" for null.
inline std::string takeBytes( QV_BUFFER *given )
{
    Local<QV_BUFFER> owner( given );
    return owner ? bytesOf( owner ) : "none";
}

// ---- Values of texts ----

inline Local<QV_VECTOR> vectorOf( const std::vector<std::string> &words )
{
    Local<QV_VECTOR> vec( qvVectorCreate() );
    for ( const std::string &word : words )
        qvVectorAppendObj( vec.edit(), qvStringObj( text( word ) ) );
    return vec;
}

// A store of texts by their addresses.
inline Local<QV_STORE> storeOf( const std::vector<std::pair<std::string, std::string>> &entries )
{
    Local<QV_STORE> store( qvStoreCreate() );
    for ( const auto &[address, value] : entries )
        qvStoreSetValueCstr( store.edit(), address.c_str(), -1, text( value ) );
    return store;
}

// The text of a location that the caller hands over, "none" for null.
inline std::string takeLocation( QV_LOCATION *given )
{
    Local<QV_LOCATION> location( given );
    return location ? takeUtf8( qvLocationToString( location ) ) : "none";
}

// ---- What tests do over and over ----

// Every two of an ascending list compare by their places.
template <typename LIST, typename COMPARE> void expectAscending( const LIST &list, COMPARE compare )
{
    for ( size_t one = 0; one < std::size( list ); one++ )
        for ( size_t two = 0; two < std::size( list ); two++ )
            EXPECT_EQ( ( one > two ) - ( one < two ), compare( list[one], list[two] ) )
                << one << " and " << two;
}

// Runs work( 0 ), work( 1 ) and so on at once, each on a thread of its own, and waits for them.
inline void runOnThreads( size_t count, const std::function<void( size_t )> &work )
{
    std::vector<std::thread> threads;
    for ( size_t idx = 0; idx < count; idx++ )
        threads.emplace_back( work, idx );
    for ( std::thread &thread : threads )
        thread.join();
}

} // namespace test

#endif
