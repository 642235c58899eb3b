#ifndef QV_UNICODE_QV_UNICODE_DB_HH
#define QV_UNICODE_QV_UNICODE_DB_HH

// The lookups of classification and normalization. QV_CHAR_OK must hold for every ch.

#include <qv/unicode/qv_unicode_cccv.h>
#include <qv/unicode/qv_unicode_cdmt.h>
#include <qv/unicode/qv_unicode_genc.h>
#include <qv/unicode/qv_unicode_script.h>

QV_UNICODE_GENC qv___UnicodeGencDbLookup( QV_CHAR ch );
QV_UNICODE_CCCV qv___UnicodeCccvDbLookup( QV_CHAR ch );
QV_UNICODE_SCRIPT qv___UnicodeScriptDbLookup( QV_CHAR ch );

// The decomposition mapping, one step, as a constant array, null if there is none; the syllables of Hangul
// are not in it. mapLength and mapType may be null; without a mapping they receive 0 and
// QV_UNICODE_CDMT_NONE.
const QV_CHAR *qv___UnicodeCdmDbLookup( QV_CHAR ch, QV_INT *mapLength, QV_UNICODE_CDMT *mapType );

// True and the primary composite of the pair in *out, or false and 0; Hangul is not in it. out may be null.
bool qv___UnicodeCompDbLookup( QV_CHAR ch1, QV_CHAR ch2, QV_CHAR *out );

void qv___UnicodeGencStartup();
void qv___UnicodeGencShutdown();
void qv___UnicodeCccvStartup();
void qv___UnicodeCccvShutdown();
void qv___UnicodeCdmtStartup();
void qv___UnicodeCdmtShutdown();
void qv___UnicodeScriptStartup();
void qv___UnicodeScriptShutdown();

#endif
