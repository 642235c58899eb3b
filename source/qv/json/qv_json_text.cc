#include <qv/json/qv_json_text.hh>

namespace
{

bool isContinuation( unsigned char byte )
{
    return ( byte & 0xC0 ) == 0x80;
}

// Length of the sequence of several bytes at the start of a text, 0 for none or one that isn't the shortest.
QV_INT sequenceLength( const unsigned char *bytes, QV_INT length )
{
    unsigned char head = bytes[0];
    QV_INT count = head < 0xE0 ? 2 : head < 0xF0 ? 3 : 4;
    if ( head < 0xC2 || head > 0xF4 || length < count )
        return 0;
    for ( QV_INT idx = 1; idx < count; idx++ )
    {
        if ( !isContinuation( bytes[idx] ) )
            return 0;
    }
    if ( ( head == 0xE0 && bytes[1] < 0xA0 ) || ( head == 0xF0 && bytes[1] < 0x90 ) ||
         ( head == 0xF4 && bytes[1] > 0x8F ) )
        return 0;
    return count;
}

} // namespace

bool qv::jsonIsCanonicalUtf8( const unsigned char *bytes, QV_INT length )
{
    if ( length >= 3 && std::memcmp( bytes, "\xEF\xBB\xBF", 3 ) == 0 )
        return false;
    QV_INT idx = 0;
    while ( idx < length )
    {
        if ( length - idx >= 8 && !( jsonLoadWord( bytes + idx ) & jsonTopBits ) )
        {
            idx += 8;
            continue;
        }
        QV_INT count = bytes[idx] < 0x80 ? 1 : sequenceLength( bytes + idx, length - idx );
        if ( count == 0 )
            return false;
        idx += count;
    }
    return true;
}
