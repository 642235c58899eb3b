#ifndef QV_RUNTIME_QV_AUTHOR_H
#define QV_RUNTIME_QV_AUTHOR_H

/* For authors of modules and of new sorts, in C and in C++: the layout of the object header, the sort record and the
 * module object, and the definition of a sort. A host that only uses the library doesn't need this header. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>
#include <qv/sys/qv_abort.h>

#define QV___OBJ_TYPE_OBJECT 0
#define QV___OBJ_TYPE_SORT   1
#define QV___OBJ_TYPE_MODULE 2

/* Sixty-four bits that change atomically, also on 32-bit processors. */
#define QV___ATOMIC_INT QV_INT __attribute__( ( aligned( 8 ) ) )

struct qv___ObjLogEntry;

/* The header that every record begins with. Invariant of a live object: retainCount is above 0. */
struct qv___Obj
{
    QV_INT type;                       /* QV___OBJ_TYPE_... */
    QV_SORT *sort;                     /* null in sort and module records */
    QV___ATOMIC_INT unique;            /* the token, -1 until first asked for */
    uint32_t retainCount;              /* atomic */
    QV_INT dbgObjectSize;              /* bytes of the record */
    QV___ATOMIC_INT dbgAllocationSize; /* bytes owned outside the record */
    struct qv___ObjLogEntry *logFirst; /* the object's log, null when empty */
    struct qv___ObjLogEntry *logLast;
    struct qv___Obj *objsPrevious; /* neighbours in the sort's list, object database only */
    struct qv___Obj *objsNext;
};

/* The functions of a sort; each may be null. */
struct qv___SortFunctions
{
    void ( *freeFunc )( qvObj thisObj );                     /* releases what the object owns */
    QV_INT ( *compareFunc )( qvObj thisObj, qvObj thatObj ); /* negative, 0, positive */
    QV_STRING *( *toStringFunc )( qvObj thisObj );           /* the caller owns the result */
};

#ifdef __cplusplus
#define QV___RECORD( tag )                                                                                   \
    struct tag : qv___Obj                                                                                    \
    {
#else
#define QV___RECORD( tag )                                                                                   \
    struct tag                                                                                               \
    {                                                                                                        \
        struct qv___Obj header;
#endif

/* clang-format off */
/* The static descriptor of a type, named qv___sort_<NAME>. */
QV___RECORD( qv___Sort )
    QV_MODULE *module;                    /* the owning module, may be null */
    const char *name;                     /* upper-case name, unique in the process */
    struct qv___SortFunctions functions;
    uint32_t objects;                     /* live objects, atomic */
    struct qv___Obj *objsFirst;           /* the live objects, object database only */
    struct qv___Obj *objsLast;
    struct qv___Sort *sortsPrevious;      /* place among the module's sorts in use, object database only */
    struct qv___Sort *sortsNext;
};

/* The constant description of a module that its build fills in. Strings are zero-terminated; the product fields may
 * be null and the version numbers -1, which leaves the module unbound in that respect. */
typedef struct qv___ModuleRecord
{
    int32_t recordVersion;                /* 2 */
    const char *productName;
    const char *productFriendlyName;
    QV_INT productVersionMajor;
    QV_INT productVersionMinor;
    QV_INT productVersionRelease;
    const char *productBuildTime;
    const char *productVendorName;
    const char *productCopyright;
    const char *name;
    const char *description;
    const char *version;
    const char *deps;                     /* module names separated by single blanks */
    const char *exts;
} QV_MODULE_RECORD;

/* The static object of a module, exported as <name>___module. */
QV___RECORD( qv___Module )
    const QV_MODULE_RECORD *moduleRecord;
    QV_BOOL ( *startupFunc )( void );     /* false refuses the module; each hook may be null */
    void ( *prepareShutdownFunc )( void );
    void ( *shutdownFunc )( void );
    void ( *finalizeFunc )( void );
    QV_BOOL ( *personalityFunc )( QV_VECTOR *argv, QV_MESSAGE_SINK *out, void *arg );
    uint32_t sortsCount;                  /* sorts with live objects, atomic */
    struct qv___Sort *sortsFirst;         /* those sorts, object database only */
    struct qv___Sort *sortsLast;
};

#undef QV___RECORD
/* clang-format on */

/* Initial header of a static sort or module record. */
#define QV___STATIC_HEADER( type )                                                                           \
    {                                                                                                        \
        ( type ), NULL, -1, 1, 0, 0, NULL, NULL, NULL, NULL                                                  \
    }

QV_BEGIN_DECLS

/* The library's own module. */
extern QV_API QV_MODULE qv___module;

/* Creates an object: size bytes (header included) of the given sort, with one reference for the caller. Only the header
 * is initialized; set the other fields before anyone else sees the object. */
QV_API qvObj qv___ObjCreate( QV_INT size, QV_SORT *sort );

/* The module that owns the sorts of a source file; the build of a module defines its own as QV_MODULE_OBJECT. */
#ifdef QV_MODULE_OBJECT
extern QV_API QV_MODULE QV_MODULE_OBJECT;
#else
#define QV_MODULE_OBJECT qv___module
#endif

QV_END_DECLS

/* Atomic reading of a count, and of the references held to an object: an editing function that is given the address of a
 * handle puts a copy of its own there while others hold the object too. */
#define QV___RETAIN_COUNT_VALUE( x ) __atomic_load_n( &( x ), __ATOMIC_SEQ_CST )
#define QV_REF_RETAIN_COUNT( x )     QV___RETAIN_COUNT_VALUE( ( (qvObj)( x ) )->retainCount )

#ifdef __cplusplus
#define QV___EXTERN_C extern "C"
#else
#define QV___EXTERN_C extern
#endif

/* Defines a module's object with its hooks, each of which may be NULL, for example
 * QV_MODULE_DEFINE( word_count, start, NULL, end, NULL, NULL ). Its record, <name>___module_record, is for the module's
 * build to define, as qv_add_module of the CMake package does.
 *
 * startup          called when the module is loaded, behind the modules that it depends on; false refuses it
 * prepareShutdown  the first hook of unloading, called for all modules before any of them goes on
 * shutdown         the second one: lets go of the objects that the module itself holds
 * finalize         the last one: the module's objects have all gone
 * personality      a tool's entry point, see qvModuleRunPersonality
 *
 * No hook may load, register or unload modules. */
#define QV_MODULE_DEFINE( name, startup, prepareShutdown, shutdown, finalize, personality )                  \
    QV___EXTERN_C const QV_MODULE_RECORD name##___module_record;                                             \
    QV___EXTERN_C QV_API QV_MODULE name##___module;                                                          \
    QV_MODULE name##___module = { QV___STATIC_HEADER( QV___OBJ_TYPE_MODULE ),                                \
                                  &name##___module_record,                                                   \
                                  startup,                                                                   \
                                  prepareShutdown,                                                           \
                                  shutdown,                                                                  \
                                  finalize,                                                                  \
                                  personality,                                                               \
                                  0,                                                                         \
                                  NULL,                                                                      \
                                  NULL };

#if defined( __cplusplus ) && __cplusplus >= 202002L
#define QV___CONSTINIT constinit
#else
#define QV___CONSTINIT
#endif

/* Defines a sort's record and its eight standard operations, which QV_SORT_FUNCTIONS declares, for example
 * QV_SORT_DEFINE( QV_REGION, qvRegion, { .freeFunc = regionFree } ). A macro, because the names are C names and the
 * report of a violated check must carry the file, the line and the text of the place of definition. */

#define QV_SORT_DEFINE( NAME, prefix, ... )                                                                  \
    QV___CONSTINIT struct qv___Sort qv___sort_##NAME = { QV___STATIC_HEADER( QV___OBJ_TYPE_SORT ),           \
                                                         &QV_MODULE_OBJECT,                                  \
                                                         #NAME,                                              \
                                                         __VA_ARGS__,                                        \
                                                         0,                                                  \
                                                         NULL,                                               \
                                                         NULL,                                               \
                                                         NULL,                                               \
                                                         NULL };                                             \
    QV_SORT *prefix##Sort( void )                                                                            \
    {                                                                                                        \
        return &qv___sort_##NAME;                                                                            \
    }                                                                                                        \
    void prefix##Retain( NAME *obj )                                                                         \
    {                                                                                                        \
        if ( !obj )                                                                                          \
            qv___Abort( "stdfunc retain", __FILE__, __LINE__, "obj" );                                       \
        qvObjRetain( (qvObj)obj );                                                                           \
    }                                                                                                        \
    void prefix##Release( NAME *obj )                                                                        \
    {                                                                                                        \
        if ( !obj )                                                                                          \
            qv___Abort( "stdfunc release", __FILE__, __LINE__, "obj" );                                      \
        qvObjRelease( (qvObj)obj );                                                                          \
    }                                                                                                        \
    qvObj prefix##Obj( NAME *obj )                                                                           \
    {                                                                                                        \
        return (qvObj)obj;                                                                                   \
    }                                                                                                        \
    NAME *prefix##From( qvObj obj )                                                                          \
    {                                                                                                        \
        if ( obj && qvObjSort( obj ) != &qv___sort_##NAME )                                                  \
            qv___Abort( "stdfunc from", __FILE__, __LINE__, "!obj || qvObjSort(obj)==&qv___sort_" #NAME );   \
        return (NAME *)obj;                                                                                  \
    }                                                                                                        \
    QV_STRING *prefix##ToString( NAME *obj )                                                                 \
    {                                                                                                        \
        if ( !obj )                                                                                          \
            qv___Abort( "stdfunc tostring", __FILE__, __LINE__, "obj" );                                     \
        return qvObjToString( (qvObj)obj );                                                                  \
    }                                                                                                        \
    QV_INT prefix##Compare( NAME *objA, NAME *objB )                                                         \
    {                                                                                                        \
        if ( !objA )                                                                                         \
            qv___Abort( "stdfunc compare a", __FILE__, __LINE__, "objA" );                                   \
        if ( !objB )                                                                                         \
            qv___Abort( "stdfunc compare b", __FILE__, __LINE__, "objB" );                                   \
        return qvObjCompare( (qvObj)objA, (qvObj)objB );                                                     \
    }                                                                                                        \
    QV_BOOL prefix##Equals( NAME *objA, NAME *objB )                                                         \
    {                                                                                                        \
        return qvObjCompare( (qvObj)objA, (qvObj)objB ) == 0;                                                \
    }

#endif
