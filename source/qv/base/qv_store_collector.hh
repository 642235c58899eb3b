#ifndef QV_BASE_QV_STORE_COLLECTOR_HH
#define QV_BASE_QV_STORE_COLLECTOR_HH

// Gathers the entries of stores that are being read. All open stores share one stack, a nested store's entries above those
// of the store around it, so that each store gets its dictionary or vector at once and in its final size, and reading
// takes no memory per store but that.

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>

namespace qv
{

// The stack. Invariant: it owns a reference to each key and value; items of arrays have no key, and the last entry of an
// open store has no value while that is being read.
class EntryCollector
{
  public:
    EntryCollector() = default;
    EntryCollector( const EntryCollector & ) = delete;
    EntryCollector &operator=( const EntryCollector & ) = delete;
    ~EntryCollector();

  private:
    friend class EntryLevel;
    qv___DictPair *pairs_ = nullptr;
    QV_INT count_ = 0;
    QV_INT alloc_ = 0;

    void push( qvObj key, qvObj val );
};

// The entries of one open store: those above first. Addresses that ascend, as in text that was written by this library,
// are compared with the one before only. The first that doesn't makes a hash table of them all, and taking the dictionary
// sorts them.
class EntryLevel
{
  public:
    explicit EntryLevel( EntryCollector *entries ) : entries_( entries ), first_( entries->count_ ) {}
    EntryLevel( const EntryLevel & ) = delete;
    EntryLevel &operator=( const EntryLevel & ) = delete;
    ~EntryLevel();

    // Adds an address, whose value must follow before the next; false and no effect if it is there already.
    bool addAddress( const QV_CHAR *chs, QV_INT length );
    // The value of the address that was added last, handed over.
    void setValue( qvObj given );
    // Adds an item of an array, handed over.
    void addItem( qvObj given );

    // The same for encodings where an address may come again: the value of an address, borrowed, null if it isn't there;
    // and an entry that is added or takes the place of the one before, the value handed over.
    qvObj valueOf( QV_STRING *address );
    void set( QV_STRING *address, qvObj given );

    // The entries as a new dictionary or vector. The level is empty then.
    QV_DICT *takeDict();
    QV_VECTOR *takeItems();

  private:
    struct Slot
    {
        uint64_t hash;
        QV_INT pair; // index in the stack, -1 for none
    };

    EntryCollector *entries_;
    QV_INT first_;
    Slot *slots_ = nullptr; // null while the addresses ascend
    QV_INT slotCount_ = 0;  // a power of 2, more than twice the number of addresses

    QV_INT count() const
    {
        return entries_->count_ - first_;
    }

    QV_INT find( const QV_CHAR *chs, QV_INT length, uint64_t *hash );
    void enterHash( uint64_t hash, QV_INT pair );
    void rehash();
};

} // namespace qv

#endif
