#ifndef QV_JSON_QV_JSON_COLLECTOR_HH
#define QV_JSON_QV_JSON_COLLECTOR_HH

// Gathers the members and elements of values that are being decoded. All open objects and arrays share one stack, a nested
// one's entries above those of the one around it, so that each gets its dictionary or vector at once and in its final
// size. Nothing here recurses, whatever the depth.

#include <qv/json/qv_json_value.hh>

namespace qv
{

// An object or array that is open. Invariant: its entries are those from first up to the first entry of the next level.
struct JsonLevel
{
    QV_INT first;
    QV_INT begin; // place of its opening bracket in the text
    bool isObject;
    bool isAscending; // the names so far ascend
    bool isDuplicate; // the name that was added last was there already
    int32_t
        *slots; // hash table of the names, entries counted from first, -1 for none; null while there are few
    QV_INT slotCount; // a power of 2, more than twice the number of names
};

class JsonCollector
{
  public:
    JsonCollector() = default;
    JsonCollector( const JsonCollector & ) = delete;
    JsonCollector &operator=( const JsonCollector & ) = delete;
    ~JsonCollector();

    void open( bool isObject, QV_INT begin );

    QV_INT depth() const
    {
        return depth_;
    }

    JsonLevel *top()
    {
        return &levels_[depth_ - 1];
    }

    // Members or elements of the innermost level so far.
    QV_INT count() const
    {
        return count_ - levels_[depth_ - 1].first;
    }

    // The next member's name, handed over, with a hash of it, which needn't be a good one; its value must follow.
    void addName( QV_STRING *given, uint32_t hash );
    // The value of the name that was added last, or an element of an array; handed over.
    void addValue( QV_JSON_VALUE *given );

    // Ends the innermost level: a new object or array with its entries.
    QV_JSON_VALUE *close();

  private:
    struct Entry
    {
        QV_STRING *name;      // null for an element
        QV_JSON_VALUE *value; // null while it is being read
        uint64_t front;       // the name's first characters, in its order
        uint32_t hash;        // of the name: the given one, or the keyed one in a level with slots
    };

    static uint64_t frontOf( QV_STRING *name );
    static bool isBefore( const Entry &entryA, const Entry &entryB );
    void push( const Entry &entry );
    bool isKnown( const JsonLevel *level, const Entry &entry ) const;
    void enterSlot( JsonLevel *level, QV_INT idx );
    void beginSlots( JsonLevel *level );
    void rehash( JsonLevel *level );
    QV_DICT *takeDict( JsonLevel *level );
    QV_VECTOR *takeVector( JsonLevel *level );

    Entry *entries_ = nullptr;
    QV_INT count_ = 0;
    QV_INT alloc_ = 0;
    JsonLevel *levels_ = nullptr;
    QV_INT depth_ = 0;
    QV_INT levelsAlloc_ = 0;
};

} // namespace qv

#endif
