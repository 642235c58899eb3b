// A C++ host of the installed library: streams, charsets and JSON-free data through the C interface.

#include <cstdio>
#include <string>

#include <qv/qv.h>

int main()
{
    qvRuntimeStartup( 0, -1, nullptr, nullptr, nullptr, nullptr );
    QV_STRING *text = qvStringCreateFromCstr( "gr\xC3\xBC\xC3\x9F", -1 );
    qvStringToUpper( &text );
    char *bytes = qvStringConvertToUtf8( text, QV_TRUE, nullptr );
    std::string upper( bytes );
    qvMemFree( bytes );
    qvStringRelease( text );
    qvRuntimeShutdown();
    std::puts( upper.c_str() );
    return upper.compare( 0, 4, "GR\xC3\x9C" ) == 0 ? 0 : 1;
}
