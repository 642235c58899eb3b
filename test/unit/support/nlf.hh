#ifndef QV_TEST_SUPPORT_NLF_HH
#define QV_TEST_SUPPORT_NLF_HH

// A plain reading of the rules for new-lines.

#include "support/test.hh"

namespace test
{

struct Nlf
{
    size_t length;
    QV_NLF_FLAGS flag;
};

// The new-line that a text begins with, of length 0 if there is none.
inline Nlf nlfAt( std::u32string_view text, QV_NLF_FLAGS flags )
{
    const std::pair<std::u32string_view, QV_NLF_FLAGS> forms[] = {
        { U"\r\n", QV_NLF_FLAG_CRLF },  { U"\n", QV_NLF_FLAG_LF },     { U"\r", QV_NLF_FLAG_CR },
        { U"\u0085", QV_NLF_FLAG_NEL }, { U"\v", QV_NLF_FLAG_VT },     { U"\f", QV_NLF_FLAG_FF },
        { U"\u2028", QV_NLF_FLAG_LS },  { U"\u2029", QV_NLF_FLAG_PS },
    };
    for ( auto [form, flag] : forms )
    {
        if ( ( flags & flag ) && text.starts_with( form ) )
            return { form.size(), flag };
    }
    return { 0, 0 };
}

} // namespace test

#endif
