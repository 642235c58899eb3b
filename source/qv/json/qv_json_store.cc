#include <qv/json/qv_json_store.hh>

#include <qv/base/qv_frame_stack.hh>
#include <qv/io/qv_byte_sink.h>
#include <qv/io/qv_location.h>
#include <qv/json/qv_json_decode.hh>
#include <qv/json/qv_json_encode.h>
#include <qv/json/qv_json_value.hh>
#include <qv/runtime/qv_local.hh>

#include <cmath>

namespace
{

// What is being converted and what comes of it.
template <typename SOURCE> struct Frame
{
    SOURCE *source; // borrowed
    QV_INT next;    // the entry to convert
    QV_INT length;
    QV_DICT *dict;  // what the entries go to, null for an array
    QV_VECTOR *vec; // the same, null for what has names
    QV_INT filled;  // entries that went there
};

template <typename SOURCE> using Frames = qv::FrameStack<Frame<SOURCE>>;

// Begins with the length entries of a source, room of which will come into the result.
template <typename SOURCE>
void open( Frames<SOURCE> *frames, SOURCE *source, QV_INT length, QV_INT room, bool isArray )
{
    Frame<SOURCE> frame = { source, 0, length, nullptr, nullptr, 0 };
    if ( isArray )
        frame.vec = room > 0 ? qv::vectorCreateUnfilled( room ) : qvVectorCreate();
    else
        frame.dict = room > 0 ? qv::dictCreateUnfilled( room ) : qvDictCreate();
    frames->push( frame );
}

// Adds an entry, which is handed over. name is borrowed.
template <typename SOURCE> void add( Frame<SOURCE> *frame, QV_STRING *name, qvObj given )
{
    if ( frame->vec )
        qv::vectorBacking( frame->vec )[frame->filled++] = given;
    else
        frame->dict->items[frame->filled++] = { qv::retained( name ), given };
}

// ---- Stores to values ----

using StoreFrames = Frames<QV_STORE>;

bool isArray( const QV_STORE *store )
{
    return ( store->hints & QV_STORE_HINT_ARRAY ) != 0;
}

QV_JSON_VALUE *locatedAt( QV_JSON_VALUE *given, QV_LOCATION *location )
{
    if ( location )
        qvJsonValueSetLocation( &given, location );
    return given;
}

void openStore( StoreFrames *frames, QV_STORE *store )
{
    QV_INT length = qv::storeLength( store );
    open( frames, store, length, length, isArray( store ) );
}

QV_JSON_VALUE *closeStore( StoreFrames *frames )
{
    Frame<QV_STORE> frame = frames->pop();
    QV_JSON_VALUE *val = qv::jsonCreate( frame.vec ? QV_JSON_TYPE_ARRAY : QV_JSON_TYPE_OBJECT );
    if ( frame.vec )
        val->array = frame.vec;
    else
        val->objectMembers = frame.dict;
    return locatedAt( val, frame.source->location );
}

// The address of the entry that was converted last; arrays have no use for theirs.
QV_STRING *lastAddress( const Frame<QV_STORE> *frame )
{
    if ( frame->vec )
        return nullptr;
    return static_cast<QV_STRING *>( qv::dictPairs( frame->source->dict )[frame->next - 1].key );
}

// ---- Values to stores ----

using ValueFrames = Frames<QV_JSON_VALUE>;

// Members whose names can be addresses.
QV_INT addressableMembers( const QV_JSON_VALUE *object )
{
    QV_INT count = 0;
    for ( QV_INT idx = 0; idx < qv::jsonLength( object ); idx++ )
    {
        count += qvStoreAddressOk( qv::jsonNameAt( object, idx ) );
    }
    return count;
}

void openValue( ValueFrames *frames, QV_JSON_VALUE *val )
{
    QV_INT length = qv::jsonLength( val );
    bool isArray = val->type == QV_JSON_TYPE_ARRAY;
    open( frames, val, length, isArray ? length : addressableMembers( val ), isArray );
}

QV_STORE *closeValue( ValueFrames *frames )
{
    Frame<QV_JSON_VALUE> frame = frames->pop();
    QV_STORE_HINTS hints = frame.vec ? QV_STORE_HINT_ARRAY | QV_STORE_HINT_ARRAY_MANAGED : 0;
    return qv::storeFromParts( hints, frame.dict, frame.vec, qv::retainedOptional( frame.source->location ) );
}

QV_STRING *lastName( const Frame<QV_JSON_VALUE> *frame )
{
    return frame->vec ? nullptr : qv::jsonNameAt( frame->source, frame->next - 1 );
}

// Moves to the next entry that the store will have; null at the end.
QV_JSON_VALUE *nextValue( Frame<QV_JSON_VALUE> *frame )
{
    while ( frame->next < frame->length )
    {
        QV_INT idx = frame->next++;
        if ( frame->vec )
            return qv::jsonItemAt( frame->source, idx );
        if ( qvStoreAddressOk( qv::jsonNameAt( frame->source, idx ) ) )
            return qv::jsonMemberAt( frame->source, idx );
    }
    return nullptr;
}

} // namespace

QV_JSON_VALUE *qv___JsonConvertValueFromStoreValue( QV___STORE_VALUE *value )
{
    QV___STORE_VALUE_HINTS hints = value->hints;
    QV_BOOL truth;
    QV_INT integer;
    double real;
    QV_JSON_VALUE *val = nullptr;
    if ( hints & QV___STORE_VALUE_HINT_NULL )
        val = qvJsonValueCreateNull();
    else if ( ( hints & QV___STORE_VALUE_HINT_BOOL ) && qv___StoreValueValueBool( value, &truth ) )
        val = qvJsonValueCreateBool( truth );
    else if ( ( hints & QV___STORE_VALUE_HINT_INT ) && qv___StoreValueValueInt( value, &integer ) )
        val = qvJsonValueCreateInt( integer );
    else if ( ( hints & QV___STORE_VALUE_HINT_REAL ) && qv___StoreValueValueReal( value, &real ) &&
              std::isfinite( real ) )
        val = qvJsonValueCreateReal( real );
    else
        val = qvJsonValueCreateString( value->value );
    return locatedAt( val, value->location );
}

QV_JSON_VALUE *qvJsonConvertFromStore( QV_STORE *store )
{
    QV_CHECK( store );
    StoreFrames frames;
    openStore( &frames, store );
    for ( ;; )
    {
        Frame<QV_STORE> *frame = &frames.top();
        if ( frame->next == frame->length )
        {
            QV_JSON_VALUE *val = closeStore( &frames );
            if ( frames.isEmpty() )
                return val;
            add( &frames.top(), lastAddress( &frames.top() ), val );
            continue;
        }
        qvObj entry = qv::storeEntryBacking( frame->source, frame->next++ );
        if ( qv::isStore( entry ) )
            openStore( &frames, static_cast<QV_STORE *>( entry ) );
        else
            add( frame, lastAddress( frame ),
                 qv___JsonConvertValueFromStoreValue( static_cast<QV___STORE_VALUE *>( entry ) ) );
    }
}

QV___STORE_VALUE *qv___JsonConvertValueToStoreValue( QV_JSON_VALUE *value )
{
    QV___STORE_VALUE *converted = nullptr;
    switch ( value->type )
    {
    case QV_JSON_TYPE_NULL:
        converted = qv___StoreValueCreateNull();
        break;
    case QV_JSON_TYPE_FALSE:
    case QV_JSON_TYPE_TRUE:
        converted = qv___StoreValueCreateBool( value->type == QV_JSON_TYPE_TRUE );
        break;
    case QV_JSON_TYPE_NUMBER:
        if ( value->valueIsInt )
            converted = qv___StoreValueCreateInt( qvJsonValueInt( value ) );
        else if ( value->valueIsReal )
            converted = qv___StoreValueCreateReal( qvJsonValueReal( value ) );
        else
            converted = qv::storeValueFromParts( qvJsonValueNumber( value ), 0, nullptr );
        break;
    default:
        converted = qv::storeValueFromParts( qvJsonValueString( value ), 0, nullptr );
    }
    if ( value->location )
        qv___StoreValueSetLocation( &converted, value->location );
    return converted;
}

QV_STORE *qvJsonConvertToStore( QV_JSON_VALUE *value )
{
    QV_CHECK( value );
    QV_CHECK( value->type == QV_JSON_TYPE_OBJECT || value->type == QV_JSON_TYPE_ARRAY );
    ValueFrames frames;
    openValue( &frames, value );
    for ( ;; )
    {
        Frame<QV_JSON_VALUE> *frame = &frames.top();
        QV_JSON_VALUE *next = nextValue( frame );
        if ( !next )
        {
            QV_STORE *store = closeValue( &frames );
            if ( frames.isEmpty() )
                return store;
            add( &frames.top(), lastName( &frames.top() ), store );
        }
        else if ( qv::jsonIsContainer( next ) )
            openValue( &frames, next );
        else
            add( frame, lastName( frame ), qv___JsonConvertValueToStoreValue( next ) );
    }
}

// ---- The codec ----

void qv::encodeStoreJson( QV_STORE *store, QV_BYTE_SINK *sink )
{
    Local<QV_JSON_VALUE> value( qvJsonConvertFromStore( store ) );
    Local<QV_BUFFER> bytes( qvJsonEncode( value ) );
    qvByteSinkWrite( sink, bytes );
}

QV_STORE_DECODE_RESULT *qv::decodeStoreJson( QV_BUFFER *buffer, QV_LOCATION *location )
{
    Local<QV_JSON_DECODE_RESULT> result( qvJsonDecode( buffer, location ) );
    if ( result->error )
    {
        Local<QV_STORE_DECODE_ERROR> error( qvStoreDecodeErrorCreateWithJsonDecodeError( result->error ) );
        return qvStoreDecodeResultCreateError( error );
    }
    if ( !jsonIsContainer( result->value ) )
        return storeDecodeFailure( QV_STORE_DECODE_ERROR_CODE_JSON_VALUE, result->value->location );
    Local<QV_STORE> store( qvJsonConvertToStore( result->value ) );
    return qvStoreDecodeResultCreateSuccess( store, nullptr );
}
