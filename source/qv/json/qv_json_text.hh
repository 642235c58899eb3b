#ifndef QV_JSON_QV_JSON_TEXT_HH
#define QV_JSON_QV_JSON_TEXT_HH

// What the decoder and the encoder of JSON text have in common.

#include <qv/sys/qv_types.h>

namespace qv
{

// The characters that can't stand in a string of JSON text as they are.
inline bool jsonIsSpecial( QV_CHAR ch )
{
    return ( ch == '"' ) | ( ch == '\\' ) | ( ch < 0x20 );
}

// Length of the run at the start of a text that has no such character.
inline QV_INT jsonPlainRun( const QV_CHAR *chs, QV_INT length )
{
    QV_INT count = 0;
    // Whole blocks at a time, which the compiler turns into vector code.
    constexpr QV_INT block = 8;
    for ( ; count + block <= length; count += block )
    {
        bool special = false;
        for ( QV_INT idx = 0; idx < block; idx++ )
        {
            special |= jsonIsSpecial( chs[count + idx] );
        }
        if ( special )
            break;
    }
    while ( count < length && !jsonIsSpecial( chs[count] ) )
    {
        count++;
    }
    return count;
}

} // namespace qv

#endif
