#ifndef QV_UNICODE_QV_UNICODE_NORMALIZER_WRITE_HH
#define QV_UNICODE_QV_UNICODE_NORMALIZER_WRITE_HH

// The work of the normalizer: how characters pass through its stages.

#include <qv/unicode/qv_unicode_normalizer.hh>

namespace qv::unicode
{

// Most characters of a run without a starter that are held back, in decompose and in compose.
inline constexpr QV_INT normalizerLimit = 4096;

// Clearing gives a longer array than this back.
inline constexpr QV_INT normalizerKeep = 1 << 16;

// Sends characters through the stages; any values, any number.
void normalizerWrite( QV_UNICODE_NORMALIZER *norm, const QV_CHAR *chs, QV_INT chsLength );

// Makes everything readable and leaves no starter to join.
void normalizerFlush( QV_UNICODE_NORMALIZER *norm );

// The empty normalizer, with a storage of moderate size.
void normalizerReset( QV_UNICODE_NORMALIZER *norm );

} // namespace qv::unicode

#endif
