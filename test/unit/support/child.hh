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

// The function's result is the child's exit code.
ChildResult runInChild( const std::function<int()> &function );

} // namespace test

#endif
