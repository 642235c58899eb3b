#ifndef QV_BASE_QV_GENERATION_HH
#define QV_BASE_QV_GENERATION_HH

#include <qv/base/qv_generation.h>
#include <qv/runtime/qv_obj.hh>

// Only childGenerationNumber changes after creation, under the monitor.
struct qv___Generation : qv___Obj
{
    QV_GENERATION *parentGeneration; // null at the top level
    QV_MONITOR *monitor;
    QV_INT childGenerationNumber; // number of the next child
    QV_VECTOR *numbers;           // the path, boxed integers
};

// Invariant: each registered generation stands in the dictionary under itself.
struct qv___GenerationMutex : qv___Obj
{
    QV_MONITOR *monitor;
    QV_DICT *generations;
};

void qv___GenerationStartup();
void qv___GenerationShutdown();

#endif
