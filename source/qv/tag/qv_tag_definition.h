#ifndef QV_TAG_QV_TAG_DEFINITION_H
#define QV_TAG_QV_TAG_DEFINITION_H

/* What an application says of a tag: a comment, and a colour to show it with. Copy-on-write.
 *
 * Functions that edit take the address of the caller's handle and may replace the handle by a private copy. Arguments are
 * borrowed; the caller owns what a function returns. Null handles, and strings for which qvTagOk doesn't hold where a tag
 * is asked for, stop the process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* The colours of tags. */
typedef QV_INT QV_TAG_COLOR;
#define QV_TAG_COLOR_RED         0
#define QV_TAG_COLOR_ORANGE      1
#define QV_TAG_COLOR_YELLOW      2
#define QV_TAG_COLOR_GREEN       3
#define QV_TAG_COLOR_BLUE        4
#define QV_TAG_COLOR_INDIGO      5
#define QV_TAG_COLOR_VIOLET      6
#define QV_TAG_COLOR_WHITE       7
#define QV_TAG_COLOR_GREY        8
#define QV_TAG_COLOR_BLACK       9
#define QV_TAG_COLOR_OK( color ) ( ( color ) >= 0 && ( color ) <= 9 )

QV_BEGIN_DECLS

/* The colour of a name such as "QV_TAG_COLOR_RED", -1 for none. */
QV_API QV_TAG_COLOR qvTagColorFromString( QV_STRING *text );

/* The name of a colour. A value out of range stops the process. */
QV_API QV_STRING *qvTagColorToString( QV_TAG_COLOR color );

QV_SORT_FUNCTIONS( QV_TAG_DEFINITION, qvTagDefinition )

/* A new definition without comment and colour. */
QV_API QV_TAG_DEFINITION *qvTagDefinitionCreate( QV_STRING *tag );

/* A new definition with the fields of source. */
QV_API QV_TAG_DEFINITION *qvTagDefinitionCreateFrom( QV_TAG_DEFINITION *source );

/* The tag, never null. */
QV_API QV_STRING *qvTagDefinitionTag( QV_TAG_DEFINITION *def );

/* Sets the tag. */
QV_API void qvTagDefinitionSetTag( QV_TAG_DEFINITION **def, QV_STRING *tag );

/* The comment, or null. */
QV_API QV_STRING *qvTagDefinitionComment( QV_TAG_DEFINITION *def );

/* True if there is a comment, an empty one included. */
QV_API QV_BOOL qvTagDefinitionHasComment( QV_TAG_DEFINITION *def );

/* Sets the comment, any text. */
QV_API void qvTagDefinitionSetComment( QV_TAG_DEFINITION **def, QV_STRING *comment );

/* Removes the comment. */
QV_API void qvTagDefinitionDelComment( QV_TAG_DEFINITION **def );

/* The colour, -1 for none. */
QV_API QV_TAG_COLOR qvTagDefinitionColor( QV_TAG_DEFINITION *def );

/* True if there is a colour. */
QV_API QV_BOOL qvTagDefinitionHasColor( QV_TAG_DEFINITION *def );

/* Sets the colour. A value out of range stops the process. */
QV_API void qvTagDefinitionSetColor( QV_TAG_DEFINITION **def, QV_TAG_COLOR color );

/* Removes the colour. */
QV_API void qvTagDefinitionDelColor( QV_TAG_DEFINITION **def );

/* The definition as a store with "tag" and, where they are present, "comment" and "color". */
QV_API QV_STORE *qvTagDefinitionStore( QV_TAG_DEFINITION *def );

/* The definition that a store describes, null if its "tag" is missing or no tag. A "color" that is none is passed over.
 */
QV_API QV_TAG_DEFINITION *qvTagDefinitionTryRestore( QV_STORE *store );

QV_END_DECLS

#endif
