#ifndef QV_TEST_SUPPORT_CHILD_HH
#define QV_TEST_SUPPORT_CHILD_HH

// Runs a function in a child process, for what can happen only once in a process or ends it.

#include <functional>
#include <string>

namespace test
{

struct ChildResult
{
    int status;         // as from waitpid
    std::string output; // what the child wrote to standard error
};

// Starts the runtime as each program of tests does; main.cc has it.
void startRuntime();

// The function's result is the child's exit code. It starts without a runtime: a child has none of the parent's threads, so
// the parent's runtime stops before the fork and starts again behind it. The test holds no objects at that time.
ChildResult runInChild( const std::function<int()> &function );

} // namespace test

#endif
