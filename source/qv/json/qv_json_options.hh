#ifndef QV_JSON_QV_JSON_OPTIONS_HH
#define QV_JSON_QV_JSON_OPTIONS_HH

// The record of options of JSON decoding and encoding.

#include <qv/json/qv_json_options.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: all flags are normalized, all values in their range; encodeIndent is never null. An option whose mark is
// set has its default value.
struct qv___JsonOptions : qv___Obj
{
    QV_JSON_FLAGS flags;
    QV_BOOL flagsDefault;
    QV_CHARSET decodeCharset;
    QV_BOOL decodeCharsetDefault;
    QV_CHARSET_FLAGS decodeCharsetFlags;
    QV_BOOL decodeCharsetFlagsDefault;
    QV_INT decodeMaxDepth;
    QV_BOOL decodeMaxDepthDefault;
    QV_NLF_FLAGS decodeNlfFlags;
    QV_BOOL decodeNlfFlagsDefault;
    QV_UNICODE_NORMAL_FORM decodeUnicodeNormalForm;
    QV_BOOL decodeUnicodeNormalFormDefault;
    QV_CHARSET encodeCharset;
    QV_BOOL encodeCharsetDefault;
    QV_CHARSET_FLAGS encodeCharsetFlags;
    QV_BOOL encodeCharsetFlagsDefault;
    QV_STRING *encodeIndent;
    QV_BOOL encodeIndentDefault;
    QV_NLF_FLAGS encodeNlfFlags;
    QV_BOOL encodeNlfFlagsDefault;
};

extern QV_FLAGSET *qv___JsonFlagsFlagset;
extern QV_JSON_OPTIONS *qv___JsonOptionsBuiltin;

void qv___JsonOptionsFreeFunc( qvObj thisObj );

void qv___JsonFlagsStartup();
void qv___JsonFlagsShutdown();
void qv___JsonOptionsStartup();
void qv___JsonOptionsShutdown();

#endif
