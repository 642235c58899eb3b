/* The module word_count. Its personality counts the words of files: its arguments are their names, and what is passed to it
 * points to the number of words to tell, a QV_INT. */

#include "word_count.h"

#include <stdlib.h>

#include <qv/qv.h>

struct word_count
{
    struct qv___Obj header;
    QV_DICT *counts; /* words to boxed integers above 0 */
    QV_INT total;    /* their sum */
};

static WORD_COUNT_FOLD foldWord = NULL;

static void freeCount( qvObj thisObj )
{
    qvDictRelease( wordCountFrom( thisObj )->counts );
}

static QV_STRING *countToString( qvObj thisObj )
{
    WORD_COUNT *count = wordCountFrom( thisObj );
    return qvStringCreateFromFormatCstr( "%i words, %i different", -1, count->total,
                                         wordCountLength( count ) );
}

QV_SORT_DEFINE( WORD_COUNT, wordCount, { freeCount, NULL, countToString } )

static WORD_COUNT *createWith( QV_DICT *givenCounts, QV_INT total )
{
    WORD_COUNT *count = (WORD_COUNT *)qv___ObjCreate( sizeof( WORD_COUNT ), wordCountSort() );
    count->counts = givenCounts;
    count->total = total;
    return count;
}

WORD_COUNT *wordCountCreate( void )
{
    return createWith( qvDictCreate(), 0 );
}

WORD_COUNT *wordCountCreateFrom( WORD_COUNT *count )
{
    qvDictRetain( count->counts );
    return createWith( count->counts, count->total );
}

static void makePrivate( WORD_COUNT **count )
{
    if ( QV_REF_RETAIN_COUNT( *count ) > 1 )
    {
        WORD_COUNT *own = wordCountCreateFrom( *count );
        wordCountRelease( *count );
        *count = own;
    }
}

static QV_BOOL isOfWord( QV_CHAR ch )
{
    return qvUnicodeIsLetter( ch ) || qvUnicodeIsMark( ch ) || qvUnicodeIsNumber( ch );
}

static void addWord( WORD_COUNT *count, QV_STRING *word )
{
    QV_STRING *folded = foldWord ? foldWord( word ) : qvStringCreateFrom( word );
    QV_BOXED_INT *sum = qvBoxedIntCreate( wordCountOf( count, folded ) + 1 );
    qvDictSetStringKey( &count->counts, folded, qvBoxedIntObj( sum ) );
    count->total++;
    qvBoxedIntRelease( sum );
    qvStringRelease( folded );
}

void wordCountAdd( WORD_COUNT **count, QV_STRING *text )
{
    QV_INT length = qvStringLength( text );
    QV_INT begin = 0;
    makePrivate( count );
    while ( begin < length )
    {
        QV_INT end = begin;
        while ( end < length && isOfWord( qvStringCharAt( text, end ) ) )
        {
            end++;
        }
        if ( end > begin )
        {
            QV_STRING *word = qvStringCreateFromInner( text, begin, end - begin );
            addWord( *count, word );
            qvStringRelease( word );
        }
        begin = end + 1;
    }
}

static QV_INT valueOf( qvObj givenBoxed )
{
    QV_INT value = qvBoxedIntValue( qvBoxedIntFrom( givenBoxed ) );
    qvObjRelease( givenBoxed );
    return value;
}

QV_INT wordCountOf( WORD_COUNT *count, QV_STRING *word )
{
    qvObj boxed = qvDictStringKey( count->counts, word );
    return boxed ? valueOf( boxed ) : 0;
}

QV_INT wordCountTotal( WORD_COUNT *count )
{
    return count->total;
}

QV_INT wordCountLength( WORD_COUNT *count )
{
    return qvDictLength( count->counts );
}

struct place
{
    QV_INT count;
    QV_INT idx; /* in the dictionary, and so in the order of the words */
};

static int comparePlaces( const void *a, const void *b )
{
    const struct place *placeA = a;
    const struct place *placeB = b;
    if ( placeA->count != placeB->count )
    {
        return placeA->count > placeB->count ? -1 : 1;
    }
    return placeA->idx < placeB->idx ? -1 : 1;
}

QV_VECTOR *wordCountMostFrequent( WORD_COUNT *count, QV_INT maxCount )
{
    QV_INT length = wordCountLength( count );
    QV_VECTOR *words = qvVectorCreate();
    struct place *places = qvMemAllocN( qvIntMax( length, 1 ), sizeof( struct place ) );
    QV_INT idx;
    for ( idx = 0; idx < length; idx++ )
    {
        places[idx].count = valueOf( qvDictValueAt( count->counts, idx ) );
        places[idx].idx = idx;
    }
    qsort( places, (size_t)length, sizeof( struct place ), comparePlaces );
    for ( idx = 0; idx < qvIntMin( length, maxCount ); idx++ )
    {
        qvObj word = qvDictKeyAt( count->counts, places[idx].idx );
        qvVectorAppendObj( &words, word );
        qvObjRelease( word );
    }
    qvMemFree( places );
    return words;
}

void wordCountSetFold( WORD_COUNT_FOLD optionalFold )
{
    foldWord = optionalFold;
}

/* ---- The personality ---- */

static QV_BOOL addFile( WORD_COUNT **count, QV_STRING *name )
{
    QV_PATH *path = qvPathTryDecode( name );
    QV_LINE_SOURCE *lines =
        path ? qvPathFileOpenLineSource( path, QV_CHARSET_UTF_8, 0, QV_NLF_FLAG_LF | QV_NLF_FLAG_CRLF )
             : NULL;
    QV_STRING *line;
    QV_BOOL good = QV_FALSE;
    if ( lines )
    {
        while ( ( line = qvLineSourceRead( lines ) ) != NULL )
        {
            wordCountAdd( count, line );
            qvStringRelease( line );
        }
        good = !qvLineSourceError( lines );
        qvLineSourceRelease( lines );
    }
    if ( path )
    {
        qvPathRelease( path );
    }
    return good;
}

static void tellWords( WORD_COUNT *count, QV_INT maxCount, QV_MESSAGE_SINK *out )
{
    QV_VECTOR *words = wordCountMostFrequent( count, maxCount );
    QV_INT idx;
    for ( idx = 0; idx < qvVectorLength( words ); idx++ )
    {
        QV_STRING *word = qvStringFrom( qvVectorObjAt( words, idx ) );
        qvMessageSinkWriteFormatCstr( out, QV_MESSAGE_LEVEL_NORMAL, NULL, "%7i %~s", -1,
                                      wordCountOf( count, word ), word );
    }
    qvMessageSinkWriteFormatCstr( out, QV_MESSAGE_LEVEL_NORMAL, NULL, "%o", -1, count );
    qvVectorRelease( words );
}

static QV_BOOL countFiles( QV_VECTOR *argv, QV_MESSAGE_SINK *out, void *arg )
{
    const QV_INT *maxCount = arg;
    WORD_COUNT *count = wordCountCreate();
    QV_BOOL good = QV_TRUE;
    QV_INT idx;
    for ( idx = 0; idx < qvVectorLength( argv ); idx++ )
    {
        QV_STRING *name = qvStringFrom( qvVectorObjAt( argv, idx ) );
        if ( !addFile( &count, name ) )
        {
            QV_LOCATION *location = qvLocationCreateWithDescription( name );
            qvMessageSinkWriteCstr( out, QV_MESSAGE_LEVEL_ERROR, location, "can't be read", -1 );
            qvLocationRelease( location );
            good = QV_FALSE;
        }
        qvStringRelease( name );
    }
    tellWords( count, *maxCount, out );
    wordCountRelease( count );
    return good;
}

QV_MODULE_DEFINE( word_count, NULL, NULL, NULL, NULL, countFiles )
