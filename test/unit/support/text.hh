#ifndef QV_TEST_SUPPORT_TEXT_HH
#define QV_TEST_SUPPORT_TEXT_HH

// Strings for tests: from literals, and back to what GoogleTest can print and compare.

#include <string>
#include <string_view>

#include <qv/base/qv_string.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_mem.h>

namespace test
{

// A string from UTF-8, for example text( "größe" ).
inline qv::Local<QV_STRING> text( std::string_view utf8 )
{
    return qv::Local<QV_STRING>( qvStringCreateFromUtf8( utf8.data(), static_cast<QV_INT>( utf8.size() ) ) );
}

// A string from code points, for example text( U"a\x10FFFF" ).
inline qv::Local<QV_STRING> text( std::u32string_view chars )
{
    return qv::Local<QV_STRING>( qvStringCreateFromCharsCopy(
        reinterpret_cast<const QV_CHAR *>( chars.data() ), static_cast<QV_INT>( chars.size() ) ) );
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

// The text of a string that the caller hands over, for results: EXPECT_EQ( "ab", takeUtf8( qvThingToString( x
// ) ) ).
inline std::string takeUtf8( QV_STRING *given )
{
    qv::Local<QV_STRING> owner( given );
    return toUtf8( owner );
}

} // namespace test

#endif
