#include "pipeline.hh"

#include "files.hh"

#include <map>

namespace server
{

namespace
{

// Most records that one run of a worker or of the collector handles: others on its thread want their turn.
constexpr int slice = 64;

// A record is a vector: its number, and its lines. The number makes it unlike all others, because a queue takes no
// object that equals one in it.
class RecordReader final : public Stage
{
  public:
    RecordReader( Flow &shared, const Options &serverOptions, Owner<QV_LINE_SOURCE> input,
                  std::vector<Owner<QV_EVENT_QUEUE>> inboxes )
        : flow( shared ), options( serverOptions ), lines( std::move( input ) ),
          targets( std::move( inboxes ) )
    {
    }

    void run() override
    {
        for ( QV_INT count = 0; count < options.batch && qvCounterValue( flow.underWay ) < options.backlog;
              count++ )
        {
            Owner record = readRecord();
            if ( !record )
                return end();
            qvCounterIncrement( flow.underWay );
            qvEventQueueWriteEvent( targets[static_cast<size_t>( number ) % targets.size()],
                                    qvVectorObj( record ) );
        }
        flow.recordsRead = number;
        // Inside a run the clock stands still at its start, from which the delay counts: the pace is kept.
        qvTimerSchedule( flow.timer, options.interval );
    }

  private:
    Owner<QV_VECTOR> readRecord()
    {
        Owner record( qvVectorCreate() );
        while ( Owner line{ qvLineSourceRead( lines ) } )
        {
            if ( qvStringLength( line ) > 0 )
                qvVectorAppendString( record.edit(), line );
            else if ( qvVectorLength( record ) > 0 )
                break;
        }
        if ( qvVectorLength( record ) == 0 || qvLineSourceError( lines ) )
            return {};
        qvVectorPrependInt( record.edit(), number++ );
        return record;
    }

    void end()
    {
        flow.recordsRead = number;
        flow.complete = !qvLineSourceError( lines );
        if ( !flow.complete )
        {
            printError( options.input, "can't read to the end" );
            flow.good = false;
        }
        qvSignalAssert( flow.stop );
    }

    Flow &flow;
    const Options &options;
    Owner<QV_LINE_SOURCE> lines;
    std::vector<Owner<QV_EVENT_QUEUE>> targets;
    QV_INT number = 0;
};

// Turns a record into a vector of its number, its group and its amount.
class Worker final : public Stage
{
  public:
    Worker( const Options &options, QV_EVENT_QUEUE *results )
        : groupStart( stringOf( options.groupField + ":" ) ), sumStart( stringOf( options.sumField + ":" ) ),
          target( Owner<QV_EVENT_QUEUE>::share( results ) )
    {
    }

    void run() override
    {
        for ( int count = 0; count < slice; count++ )
        {
            Owner event = readEvent();
            if ( !event )
                break;
            qvEventQueueWriteEvent( target, qvVectorObj( transformed( qvVectorFrom( event ) ) ) );
        }
        awaitEvent();
    }

  private:
    Owner<QV_VECTOR> transformed( QV_VECTOR *record )
    {
        String group = stringOf( "none" );
        QV_INT amount = 0;
        for ( QV_INT idx = 1; idx < qvVectorLength( record ); idx++ )
        {
            Owner item( qvVectorObjAt( record, idx ) );
            QV_STRING *line = qvStringFrom( item );
            if ( qvStringBeginsWith( line, groupStart ) )
                group = valueOf( line, groupStart );
            else if ( qvStringBeginsWith( line, sumStart ) )
                amount = integerOf( valueOf( line, sumStart ) );
        }
        Owner result( qvVectorCreateFromLeading( record, 1 ) );
        qvVectorAppendString( result.edit(), group );
        qvVectorAppendInt( result.edit(), amount );
        return result;
    }

    static String valueOf( QV_STRING *line, QV_STRING *start )
    {
        String value( qvStringCreateFromTrailing( line, qvStringLength( line ) - qvStringLength( start ) ) );
        qvStringTrim( value.edit() );
        return value;
    }

    static QV_INT integerOf( QV_STRING *text )
    {
        QV_INT value;
        return qvStringScanInt( text, 0, -1, 10, &value, nullptr ) ? value : 0;
    }

    String groupStart;
    String sumStart;
    Owner<QV_EVENT_QUEUE> target;
};

// Sums up what the workers found. A null in its queue is the last event: it writes the result.
class Collector final : public Stage
{
  public:
    Collector( Flow &shared, const Options &serverOptions ) : flow( shared ), options( serverOptions ) {}

    void run() override
    {
        for ( int count = 0; count < slice; count++ )
        {
            Owner event = readEvent();
            if ( !event )
                break;
            if ( qvObjSort( event ) == qvBoxedNullSort() )
                return write();
            add( qvVectorFrom( event ) );
            qvCounterDecrement( flow.underWay );
        }
        awaitEvent();
    }

  private:
    struct Sum
    {
        QV_INT records = 0;
        QV_INT sum = 0;
    };

    void add( QV_VECTOR *found )
    {
        Owner group( qvVectorObjAt( found, 1 ) );
        Owner amount( qvVectorObjAt( found, 2 ) );
        Sum &sum = groups[textOf( qvStringFrom( group ) )];
        sum.records++;
        sum.sum = qvIntAddSaturating( sum.sum, qvBoxedIntValue( qvBoxedIntFrom( amount ) ) );
        records++;
    }

    void write()
    {
        Owner list( qvStoreCreateArray() );
        for ( const auto &[name, sum] : groups )
        {
            Owner group( qvStoreCreate() );
            qvStoreSetValueCstr( group.edit(), "name", -1, stringOf( name ) );
            qvStoreSetValueIntCstr( group.edit(), "records", -1, sum.records );
            qvStoreSetValueIntCstr( group.edit(), "sum", -1, sum.sum );
            qvStoreAppendStore( list.edit(), group );
        }
        Owner store( qvStoreCreate() );
        qvStoreSetValueBoolCstr( store.edit(), "complete", -1, QV_BOOL_FROM( flow.complete ) );
        qvStoreSetValueIntCstr( store.edit(), "records", -1, records );
        qvStoreSetStoreCstr( store.edit(), "groups", -1, list );
        Owner header( qvStoreHeaderCreate( stringOf( "EXAMPLE_SERVER_RESULT" ) ) );
        if ( !writeStore( options.result, store, header ) )
            flow.good = false;
        qvSignalAssert( flow.written );
    }

    Flow &flow;
    const Options &options;
    std::map<std::string, Sum> groups; // by the name in UTF-8, whose order is that of the code points
    QV_INT records = 0;
};

Owner<QV_PROCESS_DOMAIN> createDomain( QV_PROCESS_DOMAIN_OPTIONS *options, const char *name, QV_BOOL trail )
{
    return Owner( qvProcessDomainTryCreateWithFallback( options, stringOf( name ), 1,
                                                        QV_THREAD_PRIORITY_NORMAL, trail, QV_TRUE ) );
}

} // namespace

bool Pipeline::start()
{
    Owner path( qvPathPlatformTryDecode( stringOf( options.input ) ) );
    Owner lines(
        path ? qvPathFileOpenLineSource( path, QV_CHARSET_UTF_8, 0, QV_NLF_FLAG_LF | QV_NLF_FLAG_CRLF )
             : nullptr );
    if ( !lines )
    {
        printError( options.input, "can't read" );
        return false;
    }
    // A domain lives as long as the processes on it.
    Owner flowDomain = createDomain( options.flowDomain, "FLOW", QV_TRUE );
    Owner workDomain = createDomain( options.workDomain, "WORK", QV_FALSE );
    if ( !flowDomain || !workDomain )
    {
        printError( "server", "can't start the threads" );
        return false;
    }

    auto last = std::make_unique<Collector>( flow, options );
    results = Owner<QV_EVENT_QUEUE>::share( last->inbox() );
    collector = Stage::start( std::move( last ), flowDomain, "COLLECTOR" );

    std::vector<Owner<QV_EVENT_QUEUE>> inboxes;
    for ( QV_INT idx = 0; idx < options.workers; idx++ )
    {
        auto worker = std::make_unique<Worker>( options, results );
        inboxes.push_back( Owner<QV_EVENT_QUEUE>::share( worker->inbox() ) );
        workers.push_back( Stage::start( std::move( worker ), workDomain, "WORKER" ) );
    }

    reader = Stage::start(
        std::make_unique<RecordReader>( flow, options, std::move( lines ), std::move( inboxes ) ), flowDomain,
        "READER" );
    flow.timer = Owner( qvTimerCreateWithProcess( reader ) );

    qvProcessSchedule( collector );
    for ( QV_PROCESS *worker : workers )
        qvProcessSchedule( worker );
    qvProcessSchedule( reader );
    return true;
}

bool Pipeline::finish()
{
    halt( reader );
    flow.timer = {};
    qvCounterWaitZero( flow.underWay );
    for ( QV_PROCESS *worker : workers )
        halt( worker );
    qvEventQueueWriteEvent( results, qvBoxedNullObj( Owner( qvBoxedNullCreate() ) ) );
    qvSignalWait( flow.written );
    halt( collector );
    return flow.good;
}

} // namespace server
