#ifndef QV_UNICODE_QV_UNICODE_NORMALIZER_HH
#define QV_UNICODE_QV_UNICODE_NORMALIZER_HH

// The normalizer as the library's own code sees it: a look at what can be read without a copy, and tests of
// whole runs.

#include <qv/unicode/qv_unicode_normalizer.h>

// The readable characters in place, good until the next call on the normalizer; count receives their number.
const QV_CHAR *qv___UnicodeNormalizerPeek( QV_UNICODE_NORMALIZER *norm, QV_INT *count );

// Takes count of the readable characters out.
void qv___UnicodeNormalizerSkip( QV_UNICODE_NORMALIZER *norm, QV_INT count );

// How many characters from the front are such that a normalizer that holds nothing would give them back
// unchanged, whatever follows them. All of chsLength means that the text is in this form; fewer doesn't mean
// that it isn't.
QV_INT qv___UnicodeNormalizedSpan( QV_UNICODE_NORMAL_FORM nf, const QV_CHAR *chs, QV_INT chsLength );

void qv___UnicodeNormalFormStartup();
void qv___UnicodeNormalFormShutdown();

#endif
