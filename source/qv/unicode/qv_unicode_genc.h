#ifndef QV_UNICODE_QV_UNICODE_GENC_H
#define QV_UNICODE_QV_UNICODE_GENC_H

/* General categories of code points, by the Unicode Character Database 16.0. */

#include <qv/runtime/qv_handles.h>

/* General category of a code point. */
typedef QV_INT QV_UNICODE_GENC;
#define QV_UNICODE_GENC_OTHER_NOT_ASSIGNED        0
#define QV_UNICODE_GENC_LETTER_UPPERCASE          1
#define QV_UNICODE_GENC_LETTER_LOWERCASE          2
#define QV_UNICODE_GENC_LETTER_TITLECASE          3
#define QV_UNICODE_GENC_LETTER_MODIFIER           4
#define QV_UNICODE_GENC_LETTER_OTHER              5
#define QV_UNICODE_GENC_MARK_NONSPACING           6
#define QV_UNICODE_GENC_MARK_SPACING_COMBINING    7
#define QV_UNICODE_GENC_MARK_ENCLOSING            8
#define QV_UNICODE_GENC_NUMBER_DECIMAL_DIGIT      9
#define QV_UNICODE_GENC_NUMBER_LETTER             10
#define QV_UNICODE_GENC_NUMBER_OTHER              11
#define QV_UNICODE_GENC_PUNCTUATION_CONNECTOR     12
#define QV_UNICODE_GENC_PUNCTUATION_DASH          13
#define QV_UNICODE_GENC_PUNCTUATION_OPEN          14
#define QV_UNICODE_GENC_PUNCTUATION_CLOSE         15
#define QV_UNICODE_GENC_PUNCTUATION_INITIAL_QUOTE 16
#define QV_UNICODE_GENC_PUNCTUATION_FINAL_QUOTE   17
#define QV_UNICODE_GENC_PUNCTUATION_OTHER         18
#define QV_UNICODE_GENC_SYMBOL_MATH               19
#define QV_UNICODE_GENC_SYMBOL_CURRENCY           20
#define QV_UNICODE_GENC_SYMBOL_MODIFIER           21
#define QV_UNICODE_GENC_SYMBOL_OTHER              22
#define QV_UNICODE_GENC_SEPARATOR_SPACE           23
#define QV_UNICODE_GENC_SEPARATOR_LINE            24
#define QV_UNICODE_GENC_SEPARATOR_PARAGRAPH       25
#define QV_UNICODE_GENC_OTHER_CONTROL             26
#define QV_UNICODE_GENC_OTHER_FORMAT              27
#define QV_UNICODE_GENC_OTHER_SURROGATE           28
#define QV_UNICODE_GENC_OTHER_PRIVATE_USE         29
/* True for the values above. */
#define QV_UNICODE_GENC_OK( genc ) ( (QV_INT)( genc ) >= 0 && (QV_INT)( genc ) <= 29 )

QV_BEGIN_DECLS

/* The category of a code point, QV_UNICODE_GENC_OTHER_NOT_ASSIGNED for one that isn't assigned. A ch for
 * which QV_CHAR_OK doesn't hold stops the process, here and in all tests below. */
QV_API QV_UNICODE_GENC qvUnicodeGenc( QV_CHAR ch );

/* One test for each category: does the code point have it? */
QV_API QV_BOOL qvUnicodeIsOtherNotAssigned( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsLetterUppercase( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsLetterLowercase( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsLetterTitlecase( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsLetterModifier( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsLetterOther( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsMarkNonspacing( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsMarkSpacingCombining( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsMarkEnclosing( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsNumberDecimalDigit( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsNumberLetter( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsNumberOther( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsPunctuationConnector( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsPunctuationDash( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsPunctuationOpen( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsPunctuationClose( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsPunctuationInitialQuote( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsPunctuationFinalQuote( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsPunctuationOther( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsSymbolMath( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsSymbolCurrency( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsSymbolModifier( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsSymbolOther( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsSeparatorSpace( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsSeparatorLine( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsSeparatorParagraph( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsOtherControl( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsOtherFormat( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsOtherSurrogate( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsOtherPrivateUse( QV_CHAR ch );

/* One test for each group of categories: a letter of any kind, a mark of any kind and so on. Code points that
 * aren't assigned count as "other". */
QV_API QV_BOOL qvUnicodeIsLetter( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsMark( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsNumber( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsPunctuation( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsSymbol( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsSeparator( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeIsOther( QV_CHAR ch );

/* The two-letter abbreviation ("Lu"), the description ("Letter, Uppercase") and the name of the constant, as
 * strings that the caller owns. A genc for which QV_UNICODE_GENC_OK doesn't hold stops the process. */
QV_API QV_STRING *qvUnicodeGencAbbreviation( QV_UNICODE_GENC genc );
QV_API QV_STRING *qvUnicodeGencDescription( QV_UNICODE_GENC genc );
QV_API QV_STRING *qvUnicodeGencSymName( QV_UNICODE_GENC genc );

/* The category with this abbreviation, -1 if there is none. The first takes the exact spelling only, the
 * second any spelling that is equal after case folding. */
QV_API QV_UNICODE_GENC qvUnicodeGencFromAbbreviation( QV_STRING *text );
QV_API QV_UNICODE_GENC qvUnicodeGencFromAbbreviationCaseFold( QV_STRING *text );

QV_END_DECLS

#endif
