#include <qv/unicode/qv_unicode_normalizer.hh>

#include <qv/base/qv_enum.hh>

constinit QV_ENUM *qv___UnicodeNormalFormEnum = nullptr;

void qv___UnicodeNormalFormStartup()
{
    static constexpr qv::EnumName names[] = {
        { QV_UNICODE_NORMAL_FORM_C, "QV_UNICODE_NORMAL_FORM_C" },
        { QV_UNICODE_NORMAL_FORM_KC, "QV_UNICODE_NORMAL_FORM_KC" },
        { QV_UNICODE_NORMAL_FORM_D, "QV_UNICODE_NORMAL_FORM_D" },
        { QV_UNICODE_NORMAL_FORM_KD, "QV_UNICODE_NORMAL_FORM_KD" },
    };
    qv___UnicodeNormalFormEnum = qv::enumFromTable( names, QV_SIZEOF_ARRAY( names ) );
}

void qv___UnicodeNormalFormShutdown()
{
    qv::retire( &qv___UnicodeNormalFormEnum );
}

QV_UNICODE_NORMAL_FORM qvUnicodeNormalFormFromString( QV_STRING *text )
{
    QV_CHECK( text );
    return qvEnumParse( qv___UnicodeNormalFormEnum, text );
}

QV_STRING *qvUnicodeNormalFormToString( QV_UNICODE_NORMAL_FORM nf )
{
    QV_CHECK( QV_UNICODE_NORMAL_FORM_OK( nf ) );
    return qvEnumGenerate( qv___UnicodeNormalFormEnum, nf );
}
