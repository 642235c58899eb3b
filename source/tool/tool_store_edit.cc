// qv store get, set and del.

#include "tool_store.hh"

#include <algorithm>

namespace
{

using tool::Arguments;
using tool::DataFile;
using tool::Owner;
using tool::Place;
using tool::String;
using tool::Tool;

// ---- Walking ----

std::string pathOfSteps( const Place &place, size_t count )
{
    std::string text;
    for ( size_t idx = 0; idx < count; idx++ )
        text += ( idx ? "/" : "" ) + place.steps[idx];
    return text;
}

// "no entry c in a/b", at the place of that store in the file where it is known.
void reportMissing( Tool &tool, const DataFile &file, QV_STORE *store, const Place &place, size_t step )
{
    std::string text = "no entry \"" + place.steps[step] + "\"";
    if ( step > 0 )
        text += " in \"" + pathOfSteps( place, step ) + "\"";
    if ( qvStoreHints( store ) & QV_STORE_HINT_ARRAY_MANAGED )
        text += ", which is an array of " + tool::counted( qvStoreLength( store ), "item" );
    Owner found( qvStoreLocation( store ) );
    if ( step == 0 || !found )
        found = tool::locationOf( file.name );
    tool.error( found, text );
}

void reportValue( Tool &tool, const DataFile &file, const Place &place, size_t step )
{
    tool.error( tool::locationOf( file.name ), "\"" + pathOfSteps( place, step + 1 ) +
                                                   "\" is a value and has no entry \"" +
                                                   place.steps[step + 1] + "\"" );
}

// ---- Get ----

void printEntry( Tool &tool, QV_STORE *store, QV_INT index )
{
    if ( Owner sub( qvStoreStoreAt( store, index ) ); sub )
        tool::printContent( tool.out, sub );
    else if ( qvStoreValueNullAt( store, index ) )
        tool.out.write( "null\n" );
    else
        tool.out.write( tool::textOf( String( qvStoreValueAt( store, index ) ) ) + "\n" );
}

void getEntry( Tool &tool, const DataFile &file, const Place &place )
{
    Owner store( qvStoreCreateFrom( file.store ) );
    for ( size_t step = 0;; step++ )
    {
        QV_INT index = tool::indexOf( store, place.steps[step] );
        if ( index < 0 )
            return reportMissing( tool, file, store, place, step );
        if ( step + 1 == place.steps.size() )
            return printEntry( tool, store, index );
        Owner sub( qvStoreStoreAt( store, index ) );
        if ( !sub )
            return reportValue( tool, file, place, step );
        store = std::move( sub );
    }
}

void runGet( Tool &tool, const Arguments &arguments )
{
    QV_STORE_ENCODING from;
    Place place;
    if ( !tool::takeFrom( tool, arguments, from ) )
        return;
    for ( size_t idx = 1; idx < arguments.operands.size(); idx++ )
    {
        if ( !tool::takePlace( tool, arguments.operand( idx ), place ) )
            return;
    }
    std::optional<DataFile> file = tool::loadData( tool, arguments.operand( 0 ), from );
    for ( size_t idx = 1; file && idx < arguments.operands.size(); idx++ )
    {
        tool::takePlace( tool, arguments.operand( idx ), place );
        getEntry( tool, *file, place );
    }
}

// ---- Set ----

enum class Kind
{
    text,
    integer,
    real,
    boolean,
    null
};

struct Value
{
    Kind kind = Kind::text;
    String text;
    QV_INT integer = 0;
    double real = 0;
    QV_BOOL boolean = QV_FALSE;
};

const std::pair<const char *, Kind> kindOptions[] = {
    { "int", Kind::integer },
    { "real", Kind::real },
    { "bool", Kind::boolean },
    { "null", Kind::null },
};

bool scan( Value &value )
{
    QV_INT consumed = 0;
    bool good = true;
    if ( value.kind == Kind::integer )
        good = qvStringScanInt( value.text, 0, -1, -1, &value.integer, &consumed );
    else if ( value.kind == Kind::real )
        good = qvStringScanReal( value.text, 0, -1, -1, &value.real, &consumed );
    else if ( value.kind == Kind::boolean )
        good = qvStringScanBool( value.text, 0, -1, QV_TRUE, &value.boolean, &consumed );
    else
        return true;
    return good && consumed == qvStringLength( value.text );
}

bool takeValue( Tool &tool, const Arguments &arguments, Value &value )
{
    const char *kindName = nullptr;
    for ( const auto &[name, kind] : kindOptions )
    {
        if ( !arguments.has( name ) )
            continue;
        if ( kindName )
        {
            tool::usageExclusive( tool, kindName, name );
            return false;
        }
        kindName = name;
        value.kind = kind;
    }
    bool given = arguments.operands.size() == 3;
    if ( given == ( value.kind == Kind::null ) )
    {
        tool.usage( given ? "--null takes no VALUE"
                          : "missing argument, expected: FILE ADDRESS[/ADDRESS...] VALUE" );
        return false;
    }
    if ( given )
        value.text = tool::stringOf( arguments.operand( 2 ) );
    if ( scan( value ) )
        return true;
    tool.usage( "\"" + arguments.operand( 2 ) + "\" doesn't read as --" + kindName );
    return false;
}

void setAt( QV_STORE **store, QV_INT index, const Value &value )
{
    switch ( value.kind )
    {
    case Kind::text:
        return qvStoreSetValueAt( store, index, value.text );
    case Kind::integer:
        return qvStoreSetValueIntAt( store, index, value.integer );
    case Kind::real:
        return qvStoreSetValueRealAt( store, index, value.real );
    case Kind::boolean:
        return qvStoreSetValueBoolAt( store, index, value.boolean );
    case Kind::null:
        return qvStoreSetValueNullAt( store, index );
    }
}

// A new entry: an item behind the last one of an array, or an address. It begins as null.
QV_INT addEntry( QV_STORE **store, const std::string &step )
{
    if ( qvStoreHints( *store ) & QV_STORE_HINT_ARRAY_MANAGED )
    {
        qvStoreAppendValueNull( store );
        return qvStoreLength( *store ) - 1;
    }
    qvStoreSetValueNull( store, tool::stringOf( step ) );
    return tool::indexOf( *store, step );
}

// An array grows by an item behind its last one, by its position, and in no other way.
bool canAdd( QV_STORE *store, const std::string &step )
{
    return !( qvStoreHints( store ) & QV_STORE_HINT_ARRAY_MANAGED ) ||
           step == std::to_string( qvStoreLength( store ) );
}

// Changes what stands at a place, from the root down; each store on the way is replaced by its changed copy.
// False after an error message.
class Edit
{
  public:
    Edit( Tool &runningTool, const DataFile &data, const Place &where )
        : tool( runningTool ), file( data ), place( where )
    {
    }
    virtual ~Edit() = default;

    bool apply( QV_STORE **store, size_t step = 0 )
    {
        QV_INT index = tool::indexOf( *store, place.steps[step] );
        bool last = step + 1 == place.steps.size();
        if ( index < 0 && ( !adds() || !canAdd( *store, place.steps[step] ) ) )
        {
            reportMissing( tool, file, *store, place, step );
            return false;
        }
        if ( index >= 0 && !last && !qvStoreHasStoreAt( *store, index ) )
        {
            reportValue( tool, file, place, step );
            return false;
        }
        bool fresh = index < 0;
        if ( fresh )
            index = addEntry( store, place.steps[step] );
        if ( last )
        {
            change( store, index );
            return true;
        }
        Owner sub( fresh ? qvStoreCreate() : qvStoreStoreAt( *store, index ) );
        if ( !apply( sub.edit(), step + 1 ) )
            return false;
        qvStoreSetStoreAt( store, index, sub );
        return true;
    }

  protected:
    virtual bool adds() const = 0;
    virtual void change( QV_STORE **store, QV_INT index ) = 0;

  private:
    Tool &tool;
    const DataFile &file;
    const Place &place;
};

class SetEdit : public Edit
{
  public:
    SetEdit( Tool &runningTool, const DataFile &data, const Place &where, const Value &newValue )
        : Edit( runningTool, data, where ), value( newValue )
    {
    }

  protected:
    bool adds() const override
    {
        return true;
    }
    void change( QV_STORE **store, QV_INT index ) override
    {
        setAt( store, index, value );
    }

  private:
    const Value &value;
};

class DelEdit : public Edit
{
  public:
    using Edit::Edit;

  protected:
    bool adds() const override
    {
        return false;
    }
    void change( QV_STORE **store, QV_INT index ) override
    {
        qvStoreDelAt( store, index );
    }
};

void runSet( Tool &tool, const Arguments &arguments )
{
    QV_STORE_ENCODING from;
    Place place;
    Value value;
    if ( !tool::takeFrom( tool, arguments, from ) ||
         !tool::takePlace( tool, arguments.operand( 1 ), place ) || !takeValue( tool, arguments, value ) )
        return;
    std::optional<DataFile> file = tool::loadData( tool, arguments.operand( 0 ), from );
    if ( file && SetEdit( tool, *file, place, value ).apply( file->store.edit() ) )
        tool::saveData( tool, *file, file->name );
}

void runDel( Tool &tool, const Arguments &arguments )
{
    QV_STORE_ENCODING from;
    Place place;
    if ( !tool::takeFrom( tool, arguments, from ) )
        return;
    for ( size_t idx = 1; idx < arguments.operands.size(); idx++ )
    {
        if ( !tool::takePlace( tool, arguments.operand( idx ), place ) )
            return;
    }
    std::optional<DataFile> file = tool::loadData( tool, arguments.operand( 0 ), from );
    for ( size_t idx = 1; file && idx < arguments.operands.size(); idx++ )
    {
        tool::takePlace( tool, arguments.operand( idx ), place );
        if ( !DelEdit( tool, *file, place ).apply( file->store.edit() ) )
            return;
    }
    if ( file )
        tool::saveData( tool, *file, file->name );
}

// ---- Tables ----

const tool::Option getOptions[] = { tool::fromOption };
const tool::Example getExamples[] = {
    { "qv store get server.qv port", "one value" },
    { "qv store get server.qv tls/certificate tls/key", "entries of nested stores" },
    { "qv store get inventory.qv devices/0", "the first item of an array" },
};

const tool::Option setOptions[] = {
    { 'i', "int", nullptr, "VALUE is an integer." },
    { 'r', "real", nullptr, "VALUE is a real number." },
    { 'b', "bool", nullptr, "VALUE is true or false, or a number of which only 0 is false." },
    { 'n', "null", nullptr, "The null value; there is no VALUE." },
    tool::fromOption,
};
const tool::Example setExamples[] = {
    { "qv store set server.qv port 5061 --int", "an integer" },
    { "qv store set server.qv tls/certificate /etc/ssl/server.pem", "a text in a nested store" },
    { "qv store set - limits/rate 2.5 --real < server.qv > changed.qv", "as a filter" },
};

const tool::Option delOptions[] = { tool::fromOption };
const tool::Example delExamples[] = {
    { "qv store del server.qv tls/key", "an entry of a nested store" },
    { "qv store del inventory.qv devices/3", "an item of an array; those behind it move up" },
};

} // namespace

namespace tool
{

const Command storeGet = {
    "store get",
    "FILE ADDRESS[/ADDRESS...]...",
    2,
    noLimit,
    "Print entries of a data file",
    "A value is printed as its text, a store as standard text. In an array a position, from 0, is an "
    "address.",
    getOptions,
    getExamples,
    runGet,
};

const Command storeSet = {
    "store set",
    "FILE ADDRESS[/ADDRESS...] VALUE",
    2,
    3,
    "Set a value in a data file",
    "VALUE is a text unless an option says otherwise. Stores on the way are made where they are missing; an "
    "array "
    "grows by the position behind its last item. Header and all other entries stay; comments and layout "
    "don't. With "
    "\"-\" as FILE the changed file is printed.",
    setOptions,
    setExamples,
    runSet,
};

const Command storeDel = {
    "store del",
    "FILE ADDRESS[/ADDRESS...]...",
    2,
    noLimit,
    "Delete entries of a data file",
    "An entry that isn't there is an error, and the file then stays as it is.",
    delOptions,
    delExamples,
    runDel,
};

} // namespace tool
