#include <qv/unicode/qv_unicode_normalizer_write.hh>

#include <qv/sys/qv_mem.h>
#include <qv/unicode/qv_unicode_db.hh>

#include <cstring>

namespace qv::unicode
{

namespace
{

constexpr QV_CHAR SBase = 0xAC00;
constexpr QV_CHAR LBase = 0x1100;
constexpr QV_CHAR VBase = 0x1161;
constexpr QV_CHAR TBase = 0x11A7;
constexpr QV_CHAR LCount = 19;
constexpr QV_CHAR VCount = 21;
constexpr QV_CHAR TCount = 28;
constexpr QV_CHAR SCount = LCount * VCount * TCount;

// Class behind which nothing joins: that of a run without a starter.
constexpr QV_INT noStarterClass = 255;

// The longest full decomposition has 18 characters.
constexpr QV_INT expansionRoom = 32;

constexpr QV_INT wideStep = 8;

bool isHangulSyllable( QV_CHAR ch )
{
    return ch - SBase < SCount;
}

bool isSurrogate( QV_CHAR ch )
{
    return ch - 0xD800 < 0x800;
}

// The composite of a starter and a character that stands next to it as far as joining goes, 0 if there is none.
inline QV_CHAR join( QV_CHAR first, QV_CHAR second )
{
    if ( second - VBase < VCount )
        return first - LBase < LCount ? SBase + ( ( first - LBase ) * VCount + ( second - VBase ) ) * TCount
                                      : 0;
    // TBase itself is no trailing consonant.
    if ( second - ( TBase + 1 ) < TCount - 1 )
        return isHangulSyllable( first ) && ( first - SBase ) % TCount == 0 ? first + ( second - TBase ) : 0;
    return compositeOf( first, second );
}

// Writes the two or three parts of a syllable to an array of three and returns their number.
inline QV_INT takeApart( QV_CHAR ch, QV_CHAR *parts )
{
    QV_CHAR index = ch - SBase;
    QV_CHAR trail = index % TCount;
    QV_CHAR lead = index / TCount;
    parts[0] = LBase + lead / VCount;
    parts[1] = VBase + lead % VCount;
    parts[2] = TBase + trail;
    return trail == 0 ? 2 : 3;
}

inline bool allBelow( const QV_CHAR *chs, QV_CHAR bound )
{
    uint32_t over = 0;
    for ( QV_INT idx = 0; idx < wideStep; idx++ )
    {
        over |= chs[idx] >= bound;
    }
    return over == 0;
}

// The stages for one form. FORM is a constant, so that each form has a loop of its own.
template <QV_INT FORM> struct Stages
{
    static constexpr bool composes = FORM == QV_UNICODE_NORMAL_FORM_C || FORM == QV_UNICODE_NORMAL_FORM_KC;
    static constexpr bool compat = FORM == QV_UNICODE_NORMAL_FORM_KC || FORM == QV_UNICODE_NORMAL_FORM_KD;
    static constexpr uint8_t stable = 1 << FORM;
    static constexpr uint8_t decomposed =
        1 << ( compat ? QV_UNICODE_NORMAL_FORM_KD : QV_UNICODE_NORMAL_FORM_D );
    static constexpr uint8_t decomposes = compat ? normalCanonical | normalCompat : normalCanonical;

    static bool isStable( QV_CHAR ch )
    {
        return QV_CHAR_OK( ch ) && ( normalFlags( ch ) & stable ) != 0;
    }

    // The end of the run of starters from here on that the form leaves alone whatever stands around them.
    static const QV_CHAR *stableEnd( const QV_CHAR *chs, const QV_CHAR *last )
    {
        const QV_CHAR bound = normalBounds[FORM];
        while ( chs < last )
        {
            const QV_CHAR *low = chs;
            while ( chs < last && *chs < bound )
            {
                chs++;
                if ( chs - low != wideStep )
                    continue;
                // Plain text: go on in wide steps.
                while ( last - chs >= wideStep && allBelow( chs, bound ) )
                {
                    chs += wideStep;
                }
                low = chs;
            }
            if ( chs == last || !isStable( *chs ) )
                return chs;
            chs++;
        }
        return chs;
    }

    // Moves decompose to compose, joining what joins.
    static void compose( QV_UNICODE_NORMALIZER *norm )
    {
        QV_CHAR *chars = norm->chars;
        QV_INT out = norm->decomposePos;
        for ( QV_INT idx = out; idx < norm->end; idx++ )
        {
            QV_CHAR ch = chars[idx];
            uint8_t flags = normalFlags( ch );
            QV_INT cccv = flags & normalMark ? qv___UnicodeCccvDbLookup( ch ) : 0;
            bool isBlocked = norm->composePos == out || ( norm->lastClass != 0 && norm->lastClass >= cccv );
            if ( ( flags & normalBackward ) && !isBlocked )
            {
                if ( QV_CHAR composite = join( norm->starter, ch ) )
                {
                    chars[norm->composePos] = norm->starter = composite;
                    continue;
                }
            }
            if ( cccv == 0 )
            {
                norm->starter = ch;
                norm->lastClass = 0;
                norm->composePos = out;
            }
            else if ( norm->lastClass < cccv )
            {
                norm->lastClass = cccv;
            }
            chars[out++] = ch;
        }
        norm->end = out;
        if ( out - norm->composePos >= normalizerLimit )
            endRun( norm );
    }

    // Everything in front of the end can be read and joins nothing any more.
    static void endRun( QV_UNICODE_NORMALIZER *norm )
    {
        norm->composePos = norm->end;
        norm->starter = 0;
        norm->lastClass = noStarterClass;
    }

    // Ends the sequence in decompose: it goes to the next stage.
    static void settle( QV_UNICODE_NORMALIZER *norm )
    {
        if ( composes && norm->decomposePos < norm->end )
            compose( norm );
        norm->decomposePos = norm->end;
        norm->pendingClass = 0;
    }

    // A run that the form leaves alone; the last character can still meet a mark, so it stays in decompose. The source
    // goes on up to last.
    static void writeStable( QV_UNICODE_NORMALIZER *norm, const QV_CHAR *chs, const QV_CHAR *end,
                             const QV_CHAR *last )
    {
        settle( norm );
        QV_INT passing = end - chs - 1;
        QV_CHAR *out = norm->chars + norm->end;
        // Short runs are copied in one step of fixed size, since there is room behind them.
        if ( passing <= wideStep && last - chs >= wideStep )
            std::memcpy( out, chs, wideStep * sizeof( QV_CHAR ) );
        else
            std::memcpy( out, chs, static_cast<size_t>( passing ) * sizeof( QV_CHAR ) );
        norm->end += passing;
        norm->decomposePos = norm->end;
        if ( composes && passing > 0 )
        {
            norm->composePos = norm->end - 1;
            norm->starter = chs[passing - 1];
            norm->lastClass = 0;
        }
        QV_CHAR ch = chs[passing];
        if ( composes && ch >= normalBounds[FORM + 2] )
            writeDecomposed( norm, ch, normalFlags( ch ) );
        else
            norm->chars[norm->end++] = ch;
    }

    // Appends a character that doesn't decompose.
    static void append( QV_UNICODE_NORMALIZER *norm, QV_CHAR ch, uint8_t flags )
    {
        QV_INT cccv = 0;
        if ( flags & normalMark )
        {
            cccv = qv___UnicodeCccvDbLookup( ch );
            if ( cccv < norm->pendingClass )
            {
                insertMark( norm, ch, cccv );
                return;
            }
        }
        else
        {
            settle( norm );
        }
        norm->chars[norm->end++] = ch;
        norm->pendingClass = cccv;
    }

    // Puts a mark behind the last character of decompose whose class isn't higher.
    static void insertMark( QV_UNICODE_NORMALIZER *norm, QV_CHAR ch, QV_INT cccv )
    {
        QV_INT low = norm->decomposePos;
        QV_INT high = norm->end - 1;
        while ( low < high )
        {
            QV_INT middle = low + ( high - low ) / 2;
            if ( qv___UnicodeCccvDbLookup( norm->chars[middle] ) <= cccv )
                low = middle + 1;
            else
                high = middle;
        }
        QV_CHAR *place = norm->chars + low;
        std::memmove( place + 1, place, static_cast<size_t>( norm->end - low ) * sizeof( QV_CHAR ) );
        *place = ch;
        norm->end++;
    }

    static void writeHangul( QV_UNICODE_NORMALIZER *norm, QV_CHAR ch )
    {
        QV_CHAR parts[3];
        QV_INT count = takeApart( ch, parts );
        for ( QV_INT idx = 0; idx < count; idx++ )
        {
            settle( norm );
            norm->chars[norm->end++] = parts[idx];
        }
    }

    // The syllables at chs in a form that doesn't compose; returns their end.
    static const QV_CHAR *writeSyllables( QV_UNICODE_NORMALIZER *norm, const QV_CHAR *chs,
                                          const QV_CHAR *last );

    static void writeMapping( QV_UNICODE_NORMALIZER *norm, const Decomposition &found )
    {
        const QV_CHAR *chars = decompositionPool + ( compat ? found.compatOffset : found.canonicalOffset );
        QV_INT length = compat ? found.compatLength : found.canonicalLength;
        QV_INT tail = compat ? found.compatTail : found.canonicalTail;
        if ( tail == 0 || ( composes && tail < length ) )
        {
            for ( QV_INT idx = 0; idx < length; idx++ )
            {
                append( norm, chars[idx], normalFlags( chars[idx] ) );
            }
            return;
        }
        // It begins with a starter and is in order: nothing in it meets what stands before.
        settle( norm );
        QV_CHAR *out = norm->chars + norm->end;
        for ( QV_INT idx = 0; idx < length; idx++ )
        {
            out[idx] = chars[idx];
        }
        norm->end += length;
        norm->decomposePos = norm->end - tail;
        norm->pendingClass = qv___UnicodeCccvDbLookup( chars[length - 1] );
    }

    // Decomposes a code point into decompose. There is room for it.
    static void writeDecomposed( QV_UNICODE_NORMALIZER *norm, QV_CHAR ch, uint8_t flags )
    {
        if ( flags & decomposes )
            writeMapping( norm, decompositionOf( ch ) );
        else if ( isHangulSyllable( ch ) )
            writeHangul( norm, ch );
        else
            append( norm, ch, flags );
        if ( norm->end - norm->decomposePos >= normalizerLimit )
            settle( norm );
    }

    static void writeSurrogate( QV_UNICODE_NORMALIZER *norm, QV_CHAR ch )
    {
        if ( ch < 0xDC00 )
        {
            norm->highSurrogate = ch;
            return;
        }
        QV_CHAR high = norm->highSurrogate;
        norm->highSurrogate = 0;
        if ( high )
        {
            QV_CHAR whole = 0x10000 + ( ( high - 0xD800 ) << 10 ) + ( ch - 0xDC00 );
            writeDecomposed( norm, whole, normalFlags( whole ) );
        }
    }

    // One character of any value, with its flags.
    static void writeChar( QV_UNICODE_NORMALIZER *norm, QV_CHAR ch, uint8_t flags )
    {
        if ( isSurrogate( ch ) )
        {
            writeSurrogate( norm, ch );
            return;
        }
        norm->highSurrogate = 0;
        if ( QV_CHAR_OK( ch ) )
            writeDecomposed( norm, ch, flags );
    }

    static void write( QV_UNICODE_NORMALIZER *norm, const QV_CHAR *chs, QV_INT chsLength );

    static bool isPassive( QV_CHAR ch, uint8_t flags )
    {
        constexpr uint8_t active = composes ? decomposes | normalBackward : decomposes;
        return ( flags & ( active | normalMark ) ) == normalMark && QV_CHAR_OK( ch );
    }

    static QV_INT span( const QV_CHAR *chs, QV_INT chsLength );
};

// Makes room for count more characters behind the end.
void makeRoom( QV_UNICODE_NORMALIZER *norm, QV_INT count )
{
    QV_INT used = norm->end - norm->begin;
    QV_CHECK( QV_INT_ADD_OK( used, count ) );
    bool isInline = norm->chars == norm->inlineChars;
    if ( used + count <= norm->capacity && used <= norm->begin )
    {
        std::memmove( norm->chars, norm->chars + norm->begin,
                      static_cast<size_t>( used ) * sizeof( QV_CHAR ) );
    }
    else
    {
        QV_INT capacity = used + count + norm->capacity;
        auto *chars = static_cast<QV_CHAR *>(
            norm->begin > 0 || isInline ? qvMemAllocN( capacity, sizeof( QV_CHAR ) )
                                        : qvMemReallocN( norm->chars, capacity, sizeof( QV_CHAR ) ) );
        if ( norm->begin > 0 || isInline )
        {
            qvMemCopyN( chars, norm->chars + norm->begin, used, sizeof( QV_CHAR ) );
            qvMemFree( isInline ? nullptr : norm->chars );
        }
        norm->chars = chars;
        norm->capacity = capacity;
        qv___ObjDbgSetAllocationSizeN( norm, capacity, sizeof( QV_CHAR ) );
    }
    norm->composePos -= norm->begin;
    norm->decomposePos -= norm->begin;
    norm->end = used;
    norm->begin = 0;
}

inline void ensureRoom( QV_UNICODE_NORMALIZER *norm, QV_INT count )
{
    if ( norm->capacity - norm->end < count )
        makeRoom( norm, count );
}

template <QV_INT FORM>
const QV_CHAR *Stages<FORM>::writeSyllables( QV_UNICODE_NORMALIZER *norm, const QV_CHAR *chs,
                                             const QV_CHAR *last )
{
    const QV_CHAR *end = chs;
    while ( end < last && isHangulSyllable( *end ) )
    {
        end++;
    }
    ensureRoom( norm, 3 * ( end - chs ) + ( last - end ) + expansionRoom );
    norm->highSurrogate = 0;
    norm->pendingClass = 0;
    QV_CHAR *out = norm->chars + norm->end;
    while ( chs < end )
    {
        out += takeApart( *chs++, out );
    }
    norm->end = out - norm->chars;
    norm->decomposePos = norm->end - 1;
    return end;
}

template <QV_INT FORM>
void Stages<FORM>::write( QV_UNICODE_NORMALIZER *norm, const QV_CHAR *chs, QV_INT chsLength )
{
    // There is always room for what is left, should nothing of it change, and for one expansion.
    const QV_CHAR *last = chs + chsLength;
    while ( chs < last )
    {
        ensureRoom( norm, last - chs + expansionRoom );
        const QV_CHAR *end = stableEnd( chs, last );
        if ( end > chs )
        {
            norm->highSurrogate = 0;
            writeStable( norm, chs, end, last );
            chs = end;
        }
        while ( chs < last )
        {
            if ( !composes && isHangulSyllable( *chs ) )
            {
                chs = writeSyllables( norm, chs, last );
                continue;
            }
            uint8_t flags = QV_CHAR_OK( *chs ) ? normalFlags( *chs ) : 0;
            if ( flags & stable )
                break;
            ensureRoom( norm, last - chs + expansionRoom );
            writeChar( norm, *chs++, flags );
        }
    }
}

template <QV_INT FORM> QV_INT Stages<FORM>::span( const QV_CHAR *chs, QV_INT chsLength )
{
    const QV_CHAR *begin = chs;
    const QV_CHAR *last = chs + chsLength;
    const QV_CHAR *boundary = chs;
    QV_INT prevClass = 0;
    while ( chs < last )
    {
        const QV_CHAR *end = stableEnd( chs, last );
        if ( end > chs )
        {
            boundary = end - 1;
            prevClass = 0;
        }
        for ( chs = end; chs < last && QV_CHAR_OK( *chs ); chs++ )
        {
            uint8_t flags = normalFlags( *chs );
            if ( flags & stable )
                break;
            QV_INT cccv = qv___UnicodeCccvDbLookup( *chs );
            if ( !isPassive( *chs, flags ) || cccv < prevClass )
                return boundary - begin;
            prevClass = cccv;
        }
        if ( chs < last && !QV_CHAR_OK( *chs ) )
            return boundary - begin;
    }
    return chsLength;
}

} // namespace

void normalizerWrite( QV_UNICODE_NORMALIZER *norm, const QV_CHAR *chs, QV_INT chsLength )
{
    switch ( norm->normalForm )
    {
    case QV_UNICODE_NORMAL_FORM_C:
        Stages<QV_UNICODE_NORMAL_FORM_C>::write( norm, chs, chsLength );
        break;
    case QV_UNICODE_NORMAL_FORM_KC:
        Stages<QV_UNICODE_NORMAL_FORM_KC>::write( norm, chs, chsLength );
        break;
    case QV_UNICODE_NORMAL_FORM_D:
        Stages<QV_UNICODE_NORMAL_FORM_D>::write( norm, chs, chsLength );
        break;
    default:
        Stages<QV_UNICODE_NORMAL_FORM_KD>::write( norm, chs, chsLength );
        break;
    }
}

void normalizerFlush( QV_UNICODE_NORMALIZER *norm )
{
    norm->highSurrogate = 0;
    if ( norm->normalForm < QV_UNICODE_NORMAL_FORM_D )
        Stages<QV_UNICODE_NORMAL_FORM_C>::settle( norm );
    norm->decomposePos = norm->end;
    norm->pendingClass = 0;
    Stages<QV_UNICODE_NORMAL_FORM_C>::endRun( norm );
}

void normalizerReset( QV_UNICODE_NORMALIZER *norm )
{
    if ( norm->capacity > normalizerKeep )
    {
        qvMemFree( norm->chars );
        norm->chars = norm->inlineChars;
        norm->capacity = QV___NORMALIZER_INLINE;
        qv___ObjDbgSetAllocationSize( norm, 0 );
    }
    norm->highSurrogate = 0;
    norm->begin = norm->decomposePos = norm->end = 0;
    norm->pendingClass = 0;
    Stages<QV_UNICODE_NORMAL_FORM_C>::endRun( norm );
}

} // namespace qv::unicode

QV_INT qv___UnicodeNormalizedSpan( QV_UNICODE_NORMAL_FORM nf, const QV_CHAR *chs, QV_INT chsLength )
{
    using namespace qv::unicode;
    switch ( nf )
    {
    case QV_UNICODE_NORMAL_FORM_C:
        return Stages<QV_UNICODE_NORMAL_FORM_C>::span( chs, chsLength );
    case QV_UNICODE_NORMAL_FORM_KC:
        return Stages<QV_UNICODE_NORMAL_FORM_KC>::span( chs, chsLength );
    case QV_UNICODE_NORMAL_FORM_D:
        return Stages<QV_UNICODE_NORMAL_FORM_D>::span( chs, chsLength );
    default:
        return Stages<QV_UNICODE_NORMAL_FORM_KD>::span( chs, chsLength );
    }
}
