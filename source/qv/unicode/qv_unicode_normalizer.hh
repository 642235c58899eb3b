#ifndef QV_UNICODE_QV_UNICODE_NORMALIZER_HH
#define QV_UNICODE_QV_UNICODE_NORMALIZER_HH

// The normalizer as the library's own code sees it: the record, a look at what can be read without a copy, and a test
// of whole texts.

#include <qv/base/qv_enum.h>
#include <qv/runtime/qv_obj.hh>
#include <qv/sys/qv_check.hh>
#include <qv/unicode/qv_unicode_normalizer.h>

#define QV___NORMALIZER_INLINE 64

// The stages of the text lie behind each other in one array, so that a character moves on by a change of positions:
//
//     begin         decomposePos   end      forms D and KD
//     | reorder     | decompose    |        reorder can be read
//
//     begin   composePos   decomposePos   end      forms C and KC
//     | compose            | decompose    |        compose can be read up to its last starter, at composePos
//
// Invariants: begin <= decomposePos <= end <= capacity, and in forms C and KC begin <= composePos <= decomposePos.
// decompose is fully decomposed and in canonical order, at most its first character is a starter, and pendingClass is
// the class of its last character, 0 if it is empty. Without a last starter composePos is where the run begins, starter
// is 0 and lastClass 255.
struct qv___UnicodeNormalizer : qv___Obj
{
    QV_CHAR highSurrogate; // waits for its low half, or 0
    QV_CHAR starter;       // the character at composePos
    QV_INT normalForm;
    QV_INT lastClass;    // highest class behind the starter, 0 if there is none
    QV_INT pendingClass; // of the last character
    QV_INT begin;
    QV_INT composePos;
    QV_INT decomposePos;
    QV_INT end;
    QV_INT capacity;
    QV_CHAR *chars; // inlineChars, or an array from the memory layer
    QV_CHAR inlineChars[QV___NORMALIZER_INLINE];
};

void qv___UnicodeNormalizerFreeFunc( qvObj thisObj );

// The enumeration of the forms, from startup to shutdown.
extern QV_ENUM *qv___UnicodeNormalFormEnum;

void qv___UnicodeNormalFormStartup();
void qv___UnicodeNormalFormShutdown();

inline QV_INT qv___UnicodeNormalizerReadyEnd( QV_UNICODE_NORMALIZER *norm )
{
    return norm->normalForm < QV_UNICODE_NORMAL_FORM_D ? norm->composePos : norm->decomposePos;
}

// The readable characters in place, good until the next call on the normalizer; count receives their number.
inline const QV_CHAR *qv___UnicodeNormalizerPeek( QV_UNICODE_NORMALIZER *norm, QV_INT *count )
{
    *count = qv___UnicodeNormalizerReadyEnd( norm ) - norm->begin;
    return norm->chars + norm->begin;
}

// Takes count of the readable characters out.
inline void qv___UnicodeNormalizerSkip( QV_UNICODE_NORMALIZER *norm, QV_INT count )
{
    QV_CHECK( count >= 0 );
    QV_CHECK( count <= qv___UnicodeNormalizerReadyEnd( norm ) - norm->begin );
    norm->begin += count;
    if ( norm->begin == norm->end )
        norm->begin = norm->composePos = norm->decomposePos = norm->end = 0;
}

// How many characters from the front a normalizer would give back unchanged whatever follows them. All of chsLength
// means that the text is in this form; fewer doesn't mean that it isn't.
QV_INT qv___UnicodeNormalizedSpan( QV_UNICODE_NORMAL_FORM nf, const QV_CHAR *chs, QV_INT chsLength );

#endif
