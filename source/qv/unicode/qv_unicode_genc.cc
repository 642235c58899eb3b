#include <qv/unicode/qv_unicode_genc.h>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_string.h>
#include <qv/unicode/qv_unicode_db.hh>

namespace
{

struct GencRow
{
    QV_UNICODE_GENC genc;
    const char *abbreviation;
    const char *description;
    const char *symName;
};

// At the index of each category.
constexpr GencRow rows[] = {
    { QV_UNICODE_GENC_OTHER_NOT_ASSIGNED, "Cn", "Other, Not Assigned", "QV_UNICODE_GENC_OTHER_NOT_ASSIGNED" },
    { QV_UNICODE_GENC_LETTER_UPPERCASE, "Lu", "Letter, Uppercase", "QV_UNICODE_GENC_LETTER_UPPERCASE" },
    { QV_UNICODE_GENC_LETTER_LOWERCASE, "Ll", "Letter, Lowercase", "QV_UNICODE_GENC_LETTER_LOWERCASE" },
    { QV_UNICODE_GENC_LETTER_TITLECASE, "Lt", "Letter, Titlecase", "QV_UNICODE_GENC_LETTER_TITLECASE" },
    { QV_UNICODE_GENC_LETTER_MODIFIER, "Lm", "Letter, Modifier", "QV_UNICODE_GENC_LETTER_MODIFIER" },
    { QV_UNICODE_GENC_LETTER_OTHER, "Lo", "Letter, Other", "QV_UNICODE_GENC_LETTER_OTHER" },
    { QV_UNICODE_GENC_MARK_NONSPACING, "Mn", "Mark, Nonspacing", "QV_UNICODE_GENC_MARK_NONSPACING" },
    { QV_UNICODE_GENC_MARK_SPACING_COMBINING, "Mc", "Mark, Spacing Combining",
      "QV_UNICODE_GENC_MARK_SPACING_COMBINING" },
    { QV_UNICODE_GENC_MARK_ENCLOSING, "Me", "Mark, Enclosing", "QV_UNICODE_GENC_MARK_ENCLOSING" },
    { QV_UNICODE_GENC_NUMBER_DECIMAL_DIGIT, "Nd", "Number, Decimal Digit",
      "QV_UNICODE_GENC_NUMBER_DECIMAL_DIGIT" },
    { QV_UNICODE_GENC_NUMBER_LETTER, "Nl", "Number, Letter", "QV_UNICODE_GENC_NUMBER_LETTER" },
    { QV_UNICODE_GENC_NUMBER_OTHER, "No", "Number, Other", "QV_UNICODE_GENC_NUMBER_OTHER" },
    { QV_UNICODE_GENC_PUNCTUATION_CONNECTOR, "Pc", "Punctuation, Connector",
      "QV_UNICODE_GENC_PUNCTUATION_CONNECTOR" },
    { QV_UNICODE_GENC_PUNCTUATION_DASH, "Pd", "Punctuation, Dash", "QV_UNICODE_GENC_PUNCTUATION_DASH" },
    { QV_UNICODE_GENC_PUNCTUATION_OPEN, "Ps", "Punctuation, Open", "QV_UNICODE_GENC_PUNCTUATION_OPEN" },
    { QV_UNICODE_GENC_PUNCTUATION_CLOSE, "Pe", "Punctuation, Close", "QV_UNICODE_GENC_PUNCTUATION_CLOSE" },
    { QV_UNICODE_GENC_PUNCTUATION_INITIAL_QUOTE, "Pi", "Punctuation, Initial",
      "QV_UNICODE_GENC_PUNCTUATION_INITIAL_QUOTE" },
    { QV_UNICODE_GENC_PUNCTUATION_FINAL_QUOTE, "Pf", "Punctuation, Final",
      "QV_UNICODE_GENC_PUNCTUATION_FINAL_QUOTE" },
    { QV_UNICODE_GENC_PUNCTUATION_OTHER, "Po", "Punctuation, Other", "QV_UNICODE_GENC_PUNCTUATION_OTHER" },
    { QV_UNICODE_GENC_SYMBOL_MATH, "Sm", "Symbol, Math", "QV_UNICODE_GENC_SYMBOL_MATH" },
    { QV_UNICODE_GENC_SYMBOL_CURRENCY, "Sc", "Symbol, Currency", "QV_UNICODE_GENC_SYMBOL_CURRENCY" },
    { QV_UNICODE_GENC_SYMBOL_MODIFIER, "Sk", "Symbol, Modifier", "QV_UNICODE_GENC_SYMBOL_MODIFIER" },
    { QV_UNICODE_GENC_SYMBOL_OTHER, "So", "Symbol, Other", "QV_UNICODE_GENC_SYMBOL_OTHER" },
    { QV_UNICODE_GENC_SEPARATOR_SPACE, "Zs", "Separator, Space", "QV_UNICODE_GENC_SEPARATOR_SPACE" },
    { QV_UNICODE_GENC_SEPARATOR_LINE, "Zl", "Separator, Line", "QV_UNICODE_GENC_SEPARATOR_LINE" },
    { QV_UNICODE_GENC_SEPARATOR_PARAGRAPH, "Zp", "Separator, Paragraph",
      "QV_UNICODE_GENC_SEPARATOR_PARAGRAPH" },
    { QV_UNICODE_GENC_OTHER_CONTROL, "Cc", "Other, Control", "QV_UNICODE_GENC_OTHER_CONTROL" },
    { QV_UNICODE_GENC_OTHER_FORMAT, "Cf", "Other, Format", "QV_UNICODE_GENC_OTHER_FORMAT" },
    { QV_UNICODE_GENC_OTHER_SURROGATE, "Cs", "Other, Surrogate", "QV_UNICODE_GENC_OTHER_SURROGATE" },
    { QV_UNICODE_GENC_OTHER_PRIVATE_USE, "Co", "Other, Private Use", "QV_UNICODE_GENC_OTHER_PRIVATE_USE" },
};
constexpr QV_INT rowCount = QV_SIZEOF_ARRAY( rows );

constexpr bool rowsStandAtTheirValues()
{
    for ( QV_INT idx = 0; idx < rowCount; idx++ )
    {
        if ( rows[idx].genc != idx )
            return false;
    }
    return true;
}
static_assert( rowsStandAtTheirValues() );

constexpr auto namesInOrder = [] {
    std::array<qv::EnumName, rowCount> names = {};
    for ( size_t idx = 0; idx < names.size(); idx++ )
    {
        names[idx] = { rows[idx].genc, rows[idx].abbreviation };
    }
    return qv::sortedByName( names );
}();

// From startup to shutdown.
constinit qv::UnicodeNames abbreviations = {};

bool isBetween( QV_CHAR ch, QV_UNICODE_GENC first, QV_UNICODE_GENC last )
{
    QV_UNICODE_GENC genc = qvUnicodeGenc( ch );
    return first <= genc && genc <= last;
}

} // namespace

void qv___UnicodeGencStartup()
{
    qv::unicodeNamesStartup( &abbreviations, namesInOrder );
}

void qv___UnicodeGencShutdown()
{
    qv::unicodeNamesShutdown( &abbreviations );
}

QV_UNICODE_GENC qvUnicodeGenc( QV_CHAR ch )
{
    QV_CHECK( QV_CHAR_OK( ch ) );
    return qv___UnicodeGencDbLookup( ch );
}

QV_BOOL qvUnicodeIsOtherNotAssigned( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_OTHER_NOT_ASSIGNED );
}

QV_BOOL qvUnicodeIsLetterUppercase( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_LETTER_UPPERCASE );
}

QV_BOOL qvUnicodeIsLetterLowercase( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_LETTER_LOWERCASE );
}

QV_BOOL qvUnicodeIsLetterTitlecase( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_LETTER_TITLECASE );
}

QV_BOOL qvUnicodeIsLetterModifier( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_LETTER_MODIFIER );
}

QV_BOOL qvUnicodeIsLetterOther( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_LETTER_OTHER );
}

QV_BOOL qvUnicodeIsMarkNonspacing( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_MARK_NONSPACING );
}

QV_BOOL qvUnicodeIsMarkSpacingCombining( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_MARK_SPACING_COMBINING );
}

QV_BOOL qvUnicodeIsMarkEnclosing( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_MARK_ENCLOSING );
}

QV_BOOL qvUnicodeIsNumberDecimalDigit( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_NUMBER_DECIMAL_DIGIT );
}

QV_BOOL qvUnicodeIsNumberLetter( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_NUMBER_LETTER );
}

QV_BOOL qvUnicodeIsNumberOther( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_NUMBER_OTHER );
}

QV_BOOL qvUnicodeIsPunctuationConnector( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_PUNCTUATION_CONNECTOR );
}

QV_BOOL qvUnicodeIsPunctuationDash( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_PUNCTUATION_DASH );
}

QV_BOOL qvUnicodeIsPunctuationOpen( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_PUNCTUATION_OPEN );
}

QV_BOOL qvUnicodeIsPunctuationClose( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_PUNCTUATION_CLOSE );
}

QV_BOOL qvUnicodeIsPunctuationInitialQuote( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_PUNCTUATION_INITIAL_QUOTE );
}

QV_BOOL qvUnicodeIsPunctuationFinalQuote( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_PUNCTUATION_FINAL_QUOTE );
}

QV_BOOL qvUnicodeIsPunctuationOther( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_PUNCTUATION_OTHER );
}

QV_BOOL qvUnicodeIsSymbolMath( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_SYMBOL_MATH );
}

QV_BOOL qvUnicodeIsSymbolCurrency( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_SYMBOL_CURRENCY );
}

QV_BOOL qvUnicodeIsSymbolModifier( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_SYMBOL_MODIFIER );
}

QV_BOOL qvUnicodeIsSymbolOther( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_SYMBOL_OTHER );
}

QV_BOOL qvUnicodeIsSeparatorSpace( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_SEPARATOR_SPACE );
}

QV_BOOL qvUnicodeIsSeparatorLine( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_SEPARATOR_LINE );
}

QV_BOOL qvUnicodeIsSeparatorParagraph( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_SEPARATOR_PARAGRAPH );
}

QV_BOOL qvUnicodeIsOtherControl( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_OTHER_CONTROL );
}

QV_BOOL qvUnicodeIsOtherFormat( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_OTHER_FORMAT );
}

QV_BOOL qvUnicodeIsOtherSurrogate( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_OTHER_SURROGATE );
}

QV_BOOL qvUnicodeIsOtherPrivateUse( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeGenc( ch ) == QV_UNICODE_GENC_OTHER_PRIVATE_USE );
}

QV_BOOL qvUnicodeIsLetter( QV_CHAR ch )
{
    return QV_BOOL_FROM( isBetween( ch, QV_UNICODE_GENC_LETTER_UPPERCASE, QV_UNICODE_GENC_LETTER_OTHER ) );
}

QV_BOOL qvUnicodeIsMark( QV_CHAR ch )
{
    return QV_BOOL_FROM( isBetween( ch, QV_UNICODE_GENC_MARK_NONSPACING, QV_UNICODE_GENC_MARK_ENCLOSING ) );
}

QV_BOOL qvUnicodeIsNumber( QV_CHAR ch )
{
    return QV_BOOL_FROM(
        isBetween( ch, QV_UNICODE_GENC_NUMBER_DECIMAL_DIGIT, QV_UNICODE_GENC_NUMBER_OTHER ) );
}

QV_BOOL qvUnicodeIsPunctuation( QV_CHAR ch )
{
    return QV_BOOL_FROM(
        isBetween( ch, QV_UNICODE_GENC_PUNCTUATION_CONNECTOR, QV_UNICODE_GENC_PUNCTUATION_OTHER ) );
}

QV_BOOL qvUnicodeIsSymbol( QV_CHAR ch )
{
    return QV_BOOL_FROM( isBetween( ch, QV_UNICODE_GENC_SYMBOL_MATH, QV_UNICODE_GENC_SYMBOL_OTHER ) );
}

QV_BOOL qvUnicodeIsSeparator( QV_CHAR ch )
{
    return QV_BOOL_FROM(
        isBetween( ch, QV_UNICODE_GENC_SEPARATOR_SPACE, QV_UNICODE_GENC_SEPARATOR_PARAGRAPH ) );
}

QV_BOOL qvUnicodeIsOther( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeIsOtherNotAssigned( ch ) ||
                         isBetween( ch, QV_UNICODE_GENC_OTHER_CONTROL, QV_UNICODE_GENC_OTHER_PRIVATE_USE ) );
}

QV_STRING *qvUnicodeGencAbbreviation( QV_UNICODE_GENC genc )
{
    QV_CHECK( QV_UNICODE_GENC_OK( genc ) );
    return qvStringCreateFromCstr( rows[genc].abbreviation, -1 );
}

QV_STRING *qvUnicodeGencDescription( QV_UNICODE_GENC genc )
{
    QV_CHECK( QV_UNICODE_GENC_OK( genc ) );
    return qvStringCreateFromCstr( rows[genc].description, -1 );
}

QV_STRING *qvUnicodeGencSymName( QV_UNICODE_GENC genc )
{
    QV_CHECK( QV_UNICODE_GENC_OK( genc ) );
    return qvStringCreateFromCstr( rows[genc].symName, -1 );
}

QV_UNICODE_GENC qvUnicodeGencFromAbbreviation( QV_STRING *text )
{
    return qv::unicodeNamesFind( &abbreviations, text );
}

QV_UNICODE_GENC qvUnicodeGencFromAbbreviationCaseFold( QV_STRING *text )
{
    return qv::unicodeNamesFindCaseFold( &abbreviations, text );
}
