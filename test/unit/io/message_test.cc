// Messages and message sinks: text forms, levels, and what a failing sink keeps and loses.

#include "support/test.hh"
#include "support/message.hh"

#include <qv/io/qv_message.hh>
#include <qv/io/qv_message_sink.hh>

using namespace test;

namespace
{

using Owned = Local<QV_MESSAGE>;
using OwnedSink = Local<QV_MESSAGE_SINK>;

std::string shown( QV_MESSAGE *msg )
{
    return takeUtf8( qvMessageToString( msg ) );
}

Owned messageOf( QV_MESSAGE_LEVEL level, const char *of )
{
    return Owned( qvMessageCreateCstr( level, nullptr, of, -1 ) );
}

} // namespace

TEST( Message, TextForm )
{
    Local<QV_LOCATION> loc( qvLocationCreateWithDescription( text( "name" ) ) );
    qvLocationSetLine( loc.edit(), 3 );
    qvLocationSetColumn( loc.edit(), 4 );
    Local<QV_LOCATION> nowhere( qvLocationCreate() );
    const struct
    {
        QV_MESSAGE_LEVEL level;
        QV_LOCATION *location;
        const char *text, *expected;
    } cases[] = {
        { QV_MESSAGE_LEVEL_WARNING, loc, "text", "name(3,4): warning: text" },
        { QV_MESSAGE_LEVEL_ERROR, loc, "", "name(3,4): error" },
        { QV_MESSAGE_LEVEL_NORMAL, loc, "text", "name(3,4): text" },
        { QV_MESSAGE_LEVEL_DECORATIVE, loc, "", "name(3,4)" },
        { QV_MESSAGE_LEVEL_NORMAL, nullptr, "text", "text" },
        { QV_MESSAGE_LEVEL_ERROR, nullptr, "text", "error: text" },
        { QV_MESSAGE_LEVEL_WARNING, nowhere, "", "warning" },
        { QV_MESSAGE_LEVEL_NORMAL, nowhere, "", "" },
    };
    for ( const auto &c : cases )
        EXPECT_EQ( c.expected, shown( Owned( qvMessageCreateCstr( c.level, c.location, c.text, -1 ) ) ) );
}

TEST( Message, MadeFromAllKindsOfText )
{
    auto made = []( QV_MESSAGE *given ) { return shown( Owned( given ) ); };
    const QV_MESSAGE_LEVEL level = QV_MESSAGE_LEVEL_NORMAL;
    const QV_INT number = 42;
    EXPECT_EQ( "ä", made( qvMessageCreateCstr( level, nullptr, "äb", 2 ) ) );
    EXPECT_EQ( "ä", made( qvMessageCreateWcstr( level, nullptr, L"äb", 1 ) ) );
    EXPECT_EQ( "n 42", made( qvMessageCreateFormat( level, nullptr, text( "n %i" ), number ) ) );
    EXPECT_EQ( "n 42", made( qvMessageCreateFormatCstr( level, nullptr, "n %i", -1, number ) ) );
    EXPECT_EQ( "n 42", made( qvMessageCreateFormatWcstr( level, nullptr, L"n %i", -1, number ) ) );
    EXPECT_DEATH( qvMessageCreateCstr( 4, nullptr, "", 0 ), "QV_MESSAGE_LEVEL_OK" );
    EXPECT_DEATH( qvMessageCreate( level, nullptr, nullptr ), "text" );
}

TEST( Message, EditsKeepSharedValues )
{
    Owned msg = messageOf( QV_MESSAGE_LEVEL_NORMAL, "one" );
    auto witness = Owned::share( msg );
    qvMessageSetLevel( msg.edit(), QV_MESSAGE_LEVEL_ERROR );
    qvMessageSetText( msg.edit(), text( "two" ) );
    Local<QV_LOCATION> loc( qvLocationCreateWithDescription( text( "here" ) ) );
    qvMessageSetLocation( msg.edit(), loc );
    EXPECT_EQ( "here: error: two", shown( msg ) );
    Owned copy( qvMessageCreateFrom( msg ) );
    qvMessageDelLocation( msg.edit() );
    EXPECT_FALSE( qvMessageHasLocation( msg ) );
    EXPECT_EQ( nullptr, qvMessageLocation( msg ) );
    EXPECT_EQ( "here: error: two", shown( copy ) );
    EXPECT_EQ( "one", shown( witness ) );
}

TEST( MessageSink, WritesAllForms )
{
    KeptMessages target;
    {
        OwnedSink sink = target.sink();
        const QV_MESSAGE_LEVEL level = QV_MESSAGE_LEVEL_DECORATIVE;
        const QV_INT number = 7;
        EXPECT_EQ( QV_MESSAGE_LEVEL_NORMAL, qvMessageSinkLevel( sink ) );
        EXPECT_TRUE( qvMessageSinkWriteMessage( sink, messageOf( level, "a" ) ) );
        EXPECT_TRUE( qvMessageSinkWrite( sink, level, nullptr, text( "b" ) ) );
        EXPECT_EQ( QV_MESSAGE_LEVEL_NORMAL, qvMessageSinkLevel( sink ) );
        EXPECT_TRUE( qvMessageSinkWriteCstr( sink, QV_MESSAGE_LEVEL_WARNING, nullptr, "c", -1 ) );
        EXPECT_TRUE( qvMessageSinkWriteWcstr( sink, level, nullptr, L"d", -1 ) );
        EXPECT_TRUE( qvMessageSinkWriteFormat( sink, level, nullptr, text( "e%i" ), number ) );
        EXPECT_TRUE( qvMessageSinkWriteFormatCstr( sink, level, nullptr, "f%i", -1, number ) );
        EXPECT_TRUE( qvMessageSinkWriteFormatWcstr( sink, level, nullptr, L"g%i", -1, number ) );
        EXPECT_EQ( QV_MESSAGE_LEVEL_WARNING, qvMessageSinkLevel( sink ) );
        EXPECT_EQ( 7, qvMessageSinkMessagesWritten( sink ) );
        EXPECT_TRUE( qvMessageSinkFlush( sink ) );
        EXPECT_EQ( 1, target.flushes );
        sink->messagesWritten = QV_INT_MAX;
        EXPECT_TRUE( qvMessageSinkWriteCstr( sink, level, nullptr, "h", -1 ) );
        EXPECT_EQ( QV_INT_MAX, qvMessageSinkMessagesWritten( sink ) );
    }
    EXPECT_EQ( 2, target.flushes );
    EXPECT_EQ( ( std::vector<std::string>{ "a", "b", "warning: c", "d", "e7", "f7", "g7", "h" } ),
               target.written );
}

TEST( MessageSink, AFailedSinkStaysFailed )
{
    KeptMessages target;
    {
        OwnedSink sink = target.sink();
        EXPECT_TRUE( qvMessageSinkWriteMessage( sink, messageOf( QV_MESSAGE_LEVEL_NORMAL, "a" ) ) );
        target.refuseWrites = true;
        EXPECT_FALSE( qvMessageSinkWriteMessage( sink, messageOf( QV_MESSAGE_LEVEL_NORMAL, "b" ) ) );
        target.refuseWrites = false;
        EXPECT_TRUE( qvMessageSinkError( sink ) );
        EXPECT_FALSE( qvMessageSinkWriteMessage( sink, messageOf( QV_MESSAGE_LEVEL_ERROR, "c" ) ) );
        EXPECT_EQ( QV_MESSAGE_LEVEL_ERROR, qvMessageSinkLevel( sink ) );
        EXPECT_EQ( 1, qvMessageSinkMessagesWritten( sink ) );
        EXPECT_FALSE( qvMessageSinkFlush( sink ) );
    }
    EXPECT_EQ( 0, target.flushes );
    EXPECT_EQ( std::vector<std::string>{ "a" }, target.written );

    target.refuseFlushes = true;
    OwnedSink sink = target.sink();
    EXPECT_FALSE( qvMessageSinkFlush( sink ) );
    EXPECT_TRUE( qvMessageSinkError( sink ) );
    EXPECT_FALSE( qvMessageSinkWriteMessage( sink, messageOf( QV_MESSAGE_LEVEL_NORMAL, "d" ) ) );
}

TEST( MessageSink, VectorsOfMessages )
{
    KeptMessages target;
    OwnedSink sink = target.sink();
    Local<QV_VECTOR> messages( qvVectorCreate() );
    EXPECT_TRUE( qvMessageSinkWriteMessages( sink, messages ) );
    qvVectorAppendObj( messages.edit(), qvMessageObj( messageOf( QV_MESSAGE_LEVEL_NORMAL, "a" ) ) );
    qvVectorAppendObj( messages.edit(), qvMessageObj( messageOf( QV_MESSAGE_LEVEL_ERROR, "b" ) ) );
    EXPECT_TRUE( qvMessageSinkWriteMessages( sink, messages ) );
    EXPECT_EQ( 2, qvMessageSinkMessagesWritten( sink ) );
    target.refuseWrites = true;
    OwnedSink failing = target.sink();
    EXPECT_FALSE( qvMessageSinkWriteMessages( failing, messages ) );
    // The second message was tried although the first had failed.
    EXPECT_EQ( QV_MESSAGE_LEVEL_ERROR, qvMessageSinkLevel( failing ) );
    qvVectorAppendInt( messages.edit(), 1 );
    EXPECT_DEATH( qvMessageSinkWriteMessages( sink, messages ), "qvVectorContainsOnly" );
}
