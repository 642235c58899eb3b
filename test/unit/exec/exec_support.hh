#ifndef QV_TEST_EXEC_EXEC_SUPPORT_HH
#define QV_TEST_EXEC_EXEC_SUPPORT_HH

// Domains and processes for tests: a process whose function is a lambda.

#include "support/test.hh"

#include <qv/exec/qv_process.hh>
#include <qv/exec/qv_process_domain.hh>

namespace test
{

using Process = qv::Local<QV_PROCESS>;
using Domain = qv::Local<QV_PROCESS_DOMAIN>;

// A closure object around a function that may tell when it is freed.
typedef struct qv___TestClosure TEST_CLOSURE;
struct qv___TestClosure : qv___Obj
{
    std::function<void()> *func;
    std::function<void()> *freed;
};

qvObj closureOf( std::function<void()> func, std::function<void()> freed = nullptr );
void runClosure( qvObj closure );

struct DomainSettings
{
    QV_INT threads = 1;
    bool trail = false;
    bool statistics = false;
};

inline Domain domainWith( DomainSettings settings )
{
    qv::Local<QV_PROCESS_DOMAIN_OPTIONS> options( qvProcessDomainOptionsCreate() );
    return Domain( qvProcessDomainTryCreateWithFallback( options, text( "TEST" ), settings.threads,
                                                         QV_THREAD_PRIORITY_NORMAL, settings.trail,
                                                         settings.statistics ) );
}

inline Process processOn( QV_PROCESS_DOMAIN *domain, std::function<void()> func,
                          std::function<void()> freed = nullptr, const char *name = "testProcess" )
{
    qv::Local<qv___Obj> closure( closureOf( std::move( func ), std::move( freed ) ) );
    return Process( qv___ProcessCreateWithDomain( domain, runClosure, closure, name ) );
}

// Halts a process and waits until it has ended.
inline void endProcess( QV_PROCESS *process )
{
    qvProcessHalt( process );
    qv___ProcessEndWait( process );
}

// Waits until all that stands in the queue of the domain's only thread has run.
void drain( QV_PROCESS_DOMAIN *domain );

// A gate that a process function may wait at, to hold its thread for the length of a test.
class Gate
{
  public:
    Gate() : barrier_( qvBarrierCreate( QV_TRUE ) ) {}

    void open()
    {
        qvBarrierUnblock( barrier_ );
    }

    void pass()
    {
        ASSERT_TRUE( qvBarrierPassTimed( barrier_, 60000 ) );
    }

  private:
    qv::Local<QV_BARRIER> barrier_;
};

} // namespace test

#endif
