#ifndef QV_TEST_SUPPORT_EXPLORER_HH
#define QV_TEST_SUPPORT_EXPLORER_HH

// Walks through all interleavings of a few model threads. A thread gives way before each of its atomic steps; which thread
// goes on is a choice, and each run makes another series of choices, until all have been made. Model threads are fibers of
// one real thread, so a run is deterministic and a fault comes with the choices that lead to it.

#include <functional>
#include <memory>
#include <string>
#include <ucontext.h>
#include <vector>

namespace test
{

// Sanitizers that follow stacks and threads don't know fibers.
#if defined( __SANITIZE_ADDRESS__ ) || defined( __SANITIZE_THREAD__ )
constexpr bool canExplore = false;
#else
constexpr bool canExplore = true;
#endif

class Explorer
{
  public:
    using Body = std::function<void()>;

    // One way through: the state that a run starts from is made anew for each.
    struct Model
    {
        std::vector<Body> threads;
        std::function<std::string()> check; // what is wrong at the end, "" for nothing
    };

    struct Outcome
    {
        long runs;
        std::string fault; // the first one with its choices, "" if no interleaving has one
    };

    Outcome explore( const std::function<Model()> &setUp )
    {
        Outcome outcome = { 0, "" };
        choices_.clear();
        do
        {
            outcome.fault = runOnce( setUp() );
            outcome.runs++;
        } while ( outcome.fault.empty() && advance() );
        if ( !outcome.fault.empty() )
        {
            outcome.fault += " after";
            for ( const Choice &choice : choices_ )
                outcome.fault += ' ' + std::to_string( choice.thread );
        }
        return outcome;
    }

    // Before each atomic step of a model thread.
    static void step()
    {
        current_->giveWay( nullptr );
    }

    // The same before a step that can't be made until something holds.
    static void stepWhen( std::function<bool()> isPossible )
    {
        current_->giveWay( std::move( isPossible ) );
    }

    // From a model thread or a model's host.
    static void fail( const char *fault )
    {
        if ( current_->fault_.empty() )
            current_->fault_ = fault;
    }

  private:
    static constexpr size_t stackSize = 64 * 1024;

    struct Choice
    {
        size_t taken;
        size_t count;
        size_t thread; // the number of the thread that was taken
    };

    struct Fiber
    {
        ucontext_t context;
        Body body;
        std::function<bool()> isPossible; // null for a step that always is
        bool isDone;
    };

    std::string runOnce( Model model )
    {
        current_ = this;
        fault_.clear();
        depth_ = 0;
        start( model.threads );
        std::vector<size_t> possible;
        while ( fault_.empty() && findPossible( &possible ) )
        {
            running_ = fibers_[choose( possible )].get();
            swapcontext( &main_, &running_->context );
        }
        if ( !fault_.empty() )
            return fault_;
        for ( const auto &fiber : fibers_ )
        {
            if ( !fiber->isDone )
                return "all threads wait";
        }
        return model.check();
    }

    void start( std::vector<Body> &bodies )
    {
        fibers_.clear();
        for ( size_t idx = 0; idx < bodies.size(); idx++ )
        {
            if ( stacks_.size() <= idx )
                stacks_.push_back( std::make_unique<char[]>( stackSize ) );
            auto fiber = std::make_unique<Fiber>();
            fiber->body = std::move( bodies[idx] );
            fiber->isDone = false;
            getcontext( &fiber->context );
            fiber->context.uc_stack.ss_sp = stacks_[idx].get();
            fiber->context.uc_stack.ss_size = stackSize;
            fiber->context.uc_link = &main_;
            makecontext( &fiber->context, &Explorer::enter, 0 );
            fibers_.push_back( std::move( fiber ) );
        }
    }

    static void enter()
    {
        Fiber *self = current_->running_;
        self->body();
        self->isDone = true;
    }

    void giveWay( std::function<bool()> isPossible )
    {
        Fiber *self = running_;
        self->isPossible = std::move( isPossible );
        swapcontext( &self->context, &main_ );
    }

    bool findPossible( std::vector<size_t> *possible )
    {
        possible->clear();
        for ( size_t idx = 0; idx < fibers_.size(); idx++ )
        {
            Fiber &fiber = *fibers_[idx];
            if ( !fiber.isDone && ( !fiber.isPossible || fiber.isPossible() ) )
                possible->push_back( idx );
        }
        return !possible->empty();
    }

    size_t choose( const std::vector<size_t> &possible )
    {
        if ( depth_ == choices_.size() )
            choices_.push_back( { 0, possible.size(), 0 } );
        Choice &choice = choices_[depth_++];
        choice.thread = possible[choice.taken];
        return choice.thread;
    }

    // The next series of choices, false after the last one.
    bool advance()
    {
        while ( !choices_.empty() && choices_.back().taken + 1 == choices_.back().count )
            choices_.pop_back();
        if ( choices_.empty() )
            return false;
        choices_.back().taken++;
        return true;
    }

    inline static Explorer *current_ = nullptr;

    std::vector<Choice> choices_;
    size_t depth_ = 0;
    std::vector<std::unique_ptr<Fiber>> fibers_;
    std::vector<std::unique_ptr<char[]>> stacks_;
    Fiber *running_ = nullptr;
    ucontext_t main_;
    std::string fault_;
};

// The boolean of the library's protocols, each turn a step of the explorer.
struct ModelBool
{
    bool value;

    bool turnOn()
    {
        Explorer::step();
        bool before = value;
        value = true;
        return !before;
    }

    bool turnOff()
    {
        Explorer::step();
        bool before = value;
        value = false;
        return before;
    }

    bool isOn() const
    {
        Explorer::step();
        return value;
    }
};

// A lock among model threads.
class ModelLock
{
  public:
    void acquire()
    {
        Explorer::stepWhen( [this] { return !isHeld_; } );
        isHeld_ = true;
    }

    void release()
    {
        isHeld_ = false;
    }

  private:
    bool isHeld_ = false;
};

} // namespace test

#endif
