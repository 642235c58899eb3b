#ifndef QV_RUNTIME_QV_PRINT_HH
#define QV_RUNTIME_QV_PRINT_HH

// Diagnostics through the host's print function: one call is one line, calls never overlap, and with no print function
// everything is dropped. No text contains a line end.

#include <qv/runtime/qv_runtime.h>

void qv___RuntimePrintChars( const QV_CHAR *chs, QV_INT chsLength );
void qv___RuntimePrint( QV_STRING *text );
void qv___RuntimePrintCstr( const char *str, QV_INT length );
void qv___RuntimePrintWcstr( const wchar_t *str, QV_INT length );

void qv___RuntimePrintFormat( QV_STRING *format, ... );
void qv___RuntimePrintFormatArgList( QV_STRING *format, QV_ARG_LIST *argList );
void qv___RuntimePrintFormatCstr( const char *format, QV_INT formatLength, ... );
void qv___RuntimePrintFormatCstrArgList( const char *format, QV_INT formatLength, QV_ARG_LIST *argList );
void qv___RuntimePrintFormatWcstr( const wchar_t *format, QV_INT formatLength, ... );
void qv___RuntimePrintFormatWcstrArgList( const wchar_t *format, QV_INT formatLength, QV_ARG_LIST *argList );

// The text form of each element of a vector, a line each.
void qv___RuntimePrintLines( QV_VECTOR *lines );
void qv___RuntimePrintStackTrace();

// A line sink and a message sink that print what they are given; writing always succeeds.
QV_LINE_SINK *qv___RuntimePrintLineSinkCreate();
QV_MESSAGE_SINK *qv___RuntimePrintMessageSinkCreate();

void qv___RuntimePrintStartup( QV_RUNTIME_PRINT_FUNC printFunc );
void qv___RuntimePrintShutdown();

#endif
