#ifndef QV_BASE_QV_KEYED_HASH_HH
#define QV_BASE_QV_KEYED_HASH_HH

// The hash of names that come from outside. It is SipHash-1-3 under a key that every process draws anew, so that no document
// can be made whose names all fall into one place of a hash table. Hashes stay inside the process and decide about no
// output.

#include <qv/sys/qv_int.h>

namespace qv
{

struct HashKey
{
    uint64_t words[2];
};

// Drawn when the runtime starts.
extern constinit HashKey hashKey;

class SipState
{
  public:
    explicit SipState( const HashKey &key )
        : v0_( key.words[0] ^ 0x736F6D6570736575u ), v1_( key.words[1] ^ 0x646F72616E646F6Du ),
          v2_( key.words[0] ^ 0x6C7967656E657261u ), v3_( key.words[1] ^ 0x7465646279746573u )
    {
    }

    void take( uint64_t word )
    {
        v3_ ^= word;
        round();
        v0_ ^= word;
    }

    uint64_t end()
    {
        v2_ ^= 0xFF;
        round();
        round();
        round();
        return v0_ ^ v1_ ^ v2_ ^ v3_;
    }

  private:
    static uint64_t rotated( uint64_t word, int count )
    {
        return word << count | word >> ( 64 - count );
    }

    void round()
    {
        v0_ += v1_;
        v2_ += v3_;
        v1_ = rotated( v1_, 13 ) ^ v0_;
        v3_ = rotated( v3_, 16 ) ^ v2_;
        v0_ = rotated( v0_, 32 ) + v3_;
        v2_ += v1_;
        v3_ = rotated( v3_, 21 ) ^ v0_;
        v1_ = rotated( v1_, 17 ) ^ v2_;
        v2_ = rotated( v2_, 32 );
    }

    uint64_t v0_, v1_, v2_, v3_;
};

// Two characters are a word; the last word has the length above the character that is left over, if there is one.
inline uint64_t hashChars( const QV_CHAR *chs, QV_INT length )
{
    SipState state( hashKey );
    QV_INT idx = 0;
    for ( ; idx + 2 <= length; idx += 2 )
    {
        state.take( chs[idx] | static_cast<uint64_t>( chs[idx + 1] ) << 32 );
    }
    uint64_t last = static_cast<uint64_t>( length ) << 32;
    state.take( idx < length ? last | chs[idx] : last );
    return state.end();
}

} // namespace qv

#endif
