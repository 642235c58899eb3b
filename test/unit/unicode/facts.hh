#ifndef QV_TEST_UNICODE_FACTS_HH
#define QV_TEST_UNICODE_FACTS_HH

// The facts of the Unicode Character Database as the tests know them: read from test/data/unicode/facts.txt, which isn't
// made by the generator of the library's tables, and the normalization forms as the annex defines them, made from these.

#include "support/test.hh"

namespace test
{

inline constexpr char32_t codeEnd = 0x110000;

struct Mapping
{
    std::string type; // "canonical" or the tag without its brackets
    std::u32string chars;
};

struct Facts
{
    std::vector<std::string> category;    // "Cn" where nothing is said
    std::vector<unsigned> combiningClass; // of each code point
    std::vector<std::string> script;      // "Unknown" where nothing is said
    std::vector<int> decimal;             // -1 where nothing is said
    std::vector<bool> white;
    std::map<char32_t, std::u32string> upper;
    std::map<char32_t, std::u32string> lower;
    std::map<char32_t, std::u32string> fold;
    std::map<char32_t, Mapping> maps;
    std::set<char32_t> exclusions;
    std::map<std::pair<char32_t, char32_t>, char32_t> composites; // follows from the others

    std::u32string decompose( char32_t ch, bool compat ) const;
    char32_t join( char32_t first, char32_t second ) const; // 0: they don't join
    std::u32string normalize( std::u32string_view text, int form ) const;
};

// Read once; a missing or damaged file fails the test program.
const Facts &facts();

} // namespace test

#endif
