#include <qv/base/qv_opt_flags.h>

#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>

namespace
{

struct FlagName
{
    QV_OPT_FLAGS flag;
    const char *name;
};

constexpr FlagName flagNames[] = {
    { QV_OPT_FLAG_ARGUMENT, "ARGUMENT" },
    { QV_OPT_FLAG_IGNORE, "IGNORE" },
    { QV_OPT_FLAG_ONCE, "ONCE" },
    { QV_OPT_FLAG_NO_ABBREV, "NO_ABBREV" },
};

} // namespace

QV_STRING *qvOptFlagsToString( QV_OPT_FLAGS flags )
{
    qv::Local<QV_STRING> text( qvStringCreate() );
    for ( const FlagName &row : flagNames )
    {
        if ( flags & row.flag )
            qvStringDelimitedAppendCstr( text.edit(), row.name, -1, "|", -1 );
    }
    return text.give();
}
