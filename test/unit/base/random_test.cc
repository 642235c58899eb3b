#include "support/test.hh"

namespace
{

using namespace test;

TEST( Random, BytesFillTheWholeRange )
{
    for ( QV_INT byteCount : { 0, 1, 127, 128, 129, 1000 } )
    {
        // Filled twice, so that a byte that is never written would have to be random by itself.
        std::vector<unsigned char> seen( static_cast<size_t>( byteCount ) + 1, 0 );
        std::vector<unsigned char> bytes( static_cast<size_t>( byteCount ) + 1, 0 );
        for ( int round = 0; round < 8; round++ )
        {
            qvRandomBytes( bytes.data(), byteCount );
            for ( size_t idx = 0; idx < bytes.size(); idx++ )
                seen[idx] = static_cast<unsigned char>( seen[idx] | bytes[idx] );
        }
        EXPECT_EQ( seen.back(), 0 ) << "nothing behind the range is written";
        seen.pop_back();
        for ( unsigned char byte : seen )
            EXPECT_NE( byte, 0 );
    }
    qvRandomBytes( nullptr, 0 );
}

TEST( Random, BuffersGrowByTheCount )
{
    Local<QV_BUFFER> buffer( qvBufferCreateFromByte( 7 ) );
    qvRandom( buffer.edit(), 0 );
    EXPECT_EQ( qvBufferLength( buffer ), 1 );
    qvRandom( buffer.edit(), 300 );
    EXPECT_EQ( qvBufferLength( buffer ), 301 );
    EXPECT_EQ( qvBufferReadByte( buffer, 0 ), 7 );
    QV_BUFFER *none = nullptr;
    qvRandom( &none, 0 );
    EXPECT_EQ( none, nullptr );
    EXPECT_DEATH( qvRandom( &none, 1 ), "byteCount == 0" );
}

TEST( Random, NumbersStayInTheirRange )
{
    std::set<QV_INT> values;
    QV_INT union1 = 0;
    for ( int round = 0; round < 300; round++ )
    {
        EXPECT_EQ( qvRandomBits( 0 ), 0 );
        QV_INT bits = qvRandomBits( 5 );
        EXPECT_EQ( bits & ~31, 0 );
        union1 |= bits;
        EXPECT_GE( qvRandomNonNegativeInt(), 0 );
        EXPECT_EQ( qvRandomBit() & ~1, 0 );
        QV_INT value = qvRandomNonNegativeIntRange( 9, 2 );
        EXPECT_GE( value, 2 );
        EXPECT_LE( value, 9 );
        values.insert( value );
        EXPECT_EQ( qvRandomNonNegativeIntRange( 5, 5 ), 5 );
        EXPECT_GE( qvRandomNonNegativeIntRange( 0, QV_INT_MAX ), 0 );
        EXPECT_GE( qvRandomNonNegativeIntRange( QV_INT_MAX, 1 ), 1 );
    }
    EXPECT_EQ( union1, 31 );
    EXPECT_EQ( values.size(), 8u ) << "both ends are reached";
    EXPECT_DEATH( qvRandomBits( 65 ), "bitCount" );
    EXPECT_DEATH( qvRandomBits( -1 ), "bitCount" );
    EXPECT_DEATH( qvRandomNonNegativeIntRange( -1, 5 ), "lowVal >= 0" );
    EXPECT_DEATH( qvRandomNonNegativeIntRange( 1, -5 ), "highVal >= 0" );
}

TEST( Identifier, RoundTrips )
{
    std::set<std::string> texts;
    for ( int round = 0; round < 100; round++ )
    {
        Local<QV_IDENTIFIER> ident( qvIdentifierCreate() );
        std::string digits = takeUtf8( qvIdentifierString( ident ) );
        EXPECT_EQ( digits.size(), 32u );
        EXPECT_EQ( digits.find_first_not_of( "0123456789ABCDEF" ), std::string::npos );
        texts.insert( digits );
        Local<QV_BUFFER> bytes( qvIdentifierBuffer( ident ) );
        Local<QV_IDENTIFIER> fromText( qvIdentifierTryCreateFromString( text( digits ) ) );
        Local<QV_IDENTIFIER> fromBytes( qvIdentifierTryCreateFromBuffer( bytes ) );
        EXPECT_TRUE( qvIdentifierEquals( ident, fromText ) );
        EXPECT_TRUE( qvIdentifierEquals( ident, fromBytes ) );
        qvBufferAppendBits( bytes.edit(), 5, round % 8 );
        Local<QV_IDENTIFIER> fromBits( qvIdentifierTryCreateFromBuffer( bytes ) );
        EXPECT_TRUE( qvIdentifierEquals( ident, fromBits ) );
        EXPECT_EQ( takeUtf8( qvIdentifierToString( fromBytes ) ), digits );
    }
    EXPECT_EQ( texts.size(), 100u );
}

TEST( Identifier, BadForms )
{
    const std::string good = "0123456789ABCDEF0123456789ABCDEF";
    const std::string bad[] = { "",
                                good.substr( 1 ),
                                good + "0",
                                "a" + good.substr( 1 ),
                                "G" + good.substr( 1 ),
                                " " + good.substr( 1 ),
                                good.substr( 1 ) + "/",
                                good.substr( 1 ) + ":",
                                "\u00C4" + good.substr( 2 ) };
    for ( const std::string &form : bad )
    {
        EXPECT_EQ( qvIdentifierTryCreateFromString( text( form ) ), nullptr ) << form;
        Local<QV_BUFFER> bytes( qvBufferCreateFromBytesCopy(
            reinterpret_cast<const unsigned char *>( form.data() ), lengthOf( form ) ) );
        EXPECT_EQ( qvIdentifierTryCreateFromBuffer( bytes ), nullptr ) << form;
    }
    Local<QV_IDENTIFIER> low( qvIdentifierTryCreateFromString( text( good ) ) );
    Local<QV_IDENTIFIER> high( qvIdentifierTryCreateFromString( text( "F" + good.substr( 1 ) ) ) );
    EXPECT_LT( qvIdentifierCompare( low, high ), 0 );
}

} // namespace
