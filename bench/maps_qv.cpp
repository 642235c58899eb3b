// The library's cases of the area maps: dictionaries with integer and string keys. The values are the integers'
// boxed objects, made beforehand as the keys are, so that an insert shares both.
#include "qv_case.hpp"

namespace
{

struct IntKey
{
    QV_INT value;
};

struct StringKey
{
    std::shared_ptr<String> text;
};

IntKey to( int64_t value, IntKey * )
{
    return { value };
}

StringKey to( const std::string &text, StringKey * )
{
    return { held<String>( string_of( text ) ) };
}

// Boxed integers 0 to 99999.
qvObj boxed( int64_t value )
{
    static const std::vector<qvObj> objects = [] {
        std::vector<qvObj> objects;
        for ( int64_t i = 0; i < 100000; ++i )
        {
            objects.push_back( qvBoxedIntObj( qvBoxedIntCreate( i ) ) );
        }
        return objects;
    }();
    return objects[size_t( value )];
}

int64_t unboxed( qvObj value )
{
    int64_t number = qvBoxedIntValue( qvBoxedIntFrom( value ) );
    qvObjRelease( value );
    return number;
}

struct Dict
{
    Held<QV_DICT, qvDictRelease> dict{ qvDictCreate() };

    int64_t walk() const
    {
        int64_t sum = 0;
        QV_INT length = qvDictLength( dict );
        for ( QV_INT idx = 0; idx < length; ++idx )
        {
            sum += unboxed( qvDictValueAt( dict, idx ) );
        }
        return sum;
    }
};

struct IntDict : Dict
{
    using K = IntKey;

    void put( K key, int64_t value )
    {
        qvDictSetIntKey( dict.edit(), key.value, boxed( value ) );
    }
    int64_t get( K key ) const
    {
        qvObj value = qvDictIntKey( dict, key.value );
        return value ? unboxed( value ) : -1;
    }
};

struct StringDict : Dict
{
    using K = StringKey;

    void put( const K &key, int64_t value )
    {
        qvDictSetStringKey( dict.edit(), *key.text, boxed( value ) );
    }
    int64_t get( const K &key ) const
    {
        qvObj value = qvDictStringKey( dict, *key.text );
        return value ? unboxed( value ) : -1;
    }
};

} // namespace

#include "maps.hpp"

void register_library( Bench &b )
{
    start_library();
    static auto ints = wl::int_keys( 200000, 301 );
    static auto strs = wl::string_keys( 200000, 302 );
    for ( size_t n : { 16, 32, 1000, 100000 } )
    {
        map_case<IntDict>( b, "int", "qv", ints, n );
        map_case<StringDict>( b, "str", "qv", strs, n );
    }
}
