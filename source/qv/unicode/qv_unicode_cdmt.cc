#include <qv/unicode/qv_unicode_cdmt.h>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_string.h>
#include <qv/unicode/qv_unicode_db.hh>

namespace
{

struct CdmtRow
{
    QV_UNICODE_CDMT cdmt;
    const char *tag;
    const char *description;
    const char *symName;
};

// At the index of each type; the types with a tag begin at firstWithTag.
constexpr CdmtRow rows[] = {
    { QV_UNICODE_CDMT_NONE, nullptr, "No decomposition.", "QV_UNICODE_CDMT_NONE" },
    { QV_UNICODE_CDMT_CANONICAL, nullptr, "Canonical decomposition.", "QV_UNICODE_CDMT_CANONICAL" },
    { QV_UNICODE_CDMT_FONT, "<font>", "A font variant (e.g. a blackletter form).", "QV_UNICODE_CDMT_FONT" },
    { QV_UNICODE_CDMT_NOBREAK, "<noBreak>", "A no-break version of a space of hyphen.",
      "QV_UNICODE_CDMT_NOBREAK" },
    { QV_UNICODE_CDMT_INITIAL, "<initial>", "An initial presentation form (Arabic).",
      "QV_UNICODE_CDMT_INITIAL" },
    { QV_UNICODE_CDMT_MEDIAL, "<medial>", "A medial presentation form (Arabic).", "QV_UNICODE_CDMT_MEDIAL" },
    { QV_UNICODE_CDMT_FINAL, "<final>", "A final presentation form (Arabic).", "QV_UNICODE_CDMT_FINAL" },
    { QV_UNICODE_CDMT_ISOLATED, "<isolated>", "An isolated presentation form (Arabic).",
      "QV_UNICODE_CDMT_ISOLATED" },
    { QV_UNICODE_CDMT_CIRCLE, "<circle>", "An encircled form.", "QV_UNICODE_CDMT_CIRCLE" },
    { QV_UNICODE_CDMT_SUPER, "<super>", "A superscript form.", "QV_UNICODE_CDMT_SUPER" },
    { QV_UNICODE_CDMT_SUB, "<sub>", "A subscript form.", "QV_UNICODE_CDMT_SUB" },
    { QV_UNICODE_CDMT_VERTICAL, "<vertical>", "A vertical layout presentation form.",
      "QV_UNICODE_CDMT_VERTICAL" },
    { QV_UNICODE_CDMT_WIDE, "<wide>", "A wide (or zenkaku) compatibility character.",
      "QV_UNICODE_CDMT_WIDE" },
    { QV_UNICODE_CDMT_NARROW, "<narrow>", "A narrow (or hankaku) compatibility character.",
      "QV_UNICODE_CDMT_NARROW" },
    { QV_UNICODE_CDMT_SMALL, "<small>", "A small variant form (CNS compatibility).",
      "QV_UNICODE_CDMT_SMALL" },
    { QV_UNICODE_CDMT_SQUARE, "<square>", "A CJK squared font variant.", "QV_UNICODE_CDMT_SQUARE" },
    { QV_UNICODE_CDMT_FRACTION, "<fraction>", "A vulgar fraction form.", "QV_UNICODE_CDMT_FRACTION" },
    { QV_UNICODE_CDMT_COMPAT, "<compat>", "Otherwise unspecified compatibility character.",
      "QV_UNICODE_CDMT_COMPAT" },
};
constexpr QV_INT rowCount = QV_SIZEOF_ARRAY( rows );
constexpr QV_INT firstWithTag = QV_UNICODE_CDMT_FONT;

constexpr bool rowsStandAtTheirValues()
{
    for ( QV_INT idx = 0; idx < rowCount; idx++ )
    {
        if ( rows[idx].cdmt != idx )
            return false;
    }
    return true;
}
static_assert( rowsStandAtTheirValues() );

// The types with a tag.
constexpr auto namesInOrder = [] {
    std::array<qv::EnumName, rowCount - firstWithTag> names = {};
    for ( QV_INT idx = firstWithTag; idx < rowCount; idx++ )
    {
        names[static_cast<size_t>( idx - firstWithTag )] = { rows[idx].cdmt, rows[idx].tag };
    }
    return qv::sortedByName( names );
}();

// From startup to shutdown.
constinit qv::UnicodeNames tags = {};

} // namespace

void qv___UnicodeCdmtStartup()
{
    qv::unicodeNamesStartup( &tags, namesInOrder );
}

void qv___UnicodeCdmtShutdown()
{
    qv::unicodeNamesShutdown( &tags );
}

QV_STRING *qvUnicodeCdmtTag( QV_UNICODE_CDMT cdmt )
{
    QV_CHECK( QV_UNICODE_CDMT_OK( cdmt ) );
    QV_CHECK( cdmt != QV_UNICODE_CDMT_NONE );
    QV_CHECK( cdmt != QV_UNICODE_CDMT_CANONICAL );
    return qvStringCreateFromCstr( rows[cdmt].tag, -1 );
}

QV_STRING *qvUnicodeCdmtDescription( QV_UNICODE_CDMT cdmt )
{
    QV_CHECK( QV_UNICODE_CDMT_OK( cdmt ) );
    return qvStringCreateFromCstr( rows[cdmt].description, -1 );
}

QV_STRING *qvUnicodeCdmtSymName( QV_UNICODE_CDMT cdmt )
{
    QV_CHECK( QV_UNICODE_CDMT_OK( cdmt ) );
    return qvStringCreateFromCstr( rows[cdmt].symName, -1 );
}

QV_UNICODE_CDMT qvUnicodeCdmtFromTag( QV_STRING *text )
{
    return qv::unicodeNamesFind( &tags, text );
}

QV_UNICODE_CDMT qvUnicodeCdmtFromTagCaseFold( QV_STRING *text )
{
    return qv::unicodeNamesFindCaseFold( &tags, text );
}
