#ifndef QV_SYS_QV_CHECK_HH
#define QV_SYS_QV_CHECK_HH

// Checks of preconditions. They are on in every build; the text of the condition is the report's Expression line, so a
// condition is written out at the place of the check and never handed through a second macro.

#include <qv/sys/qv_abort.h>

#define QV_CHECK( condition )                                                                                \
    ( __builtin_expect( !!( condition ), 1 ) ? (void)0                                                       \
                                             : qv___Abort( nullptr, __FILE__, __LINE__, #condition ) )

#define QV_CHECK_MESSAGE( message, condition )                                                               \
    ( __builtin_expect( !!( condition ), 1 ) ? (void)0                                                       \
                                             : qv___Abort( ( message ), __FILE__, __LINE__, #condition ) )

#define QV_FAIL( message ) qv___Abort( ( message ), __FILE__, __LINE__, nullptr )

// Expensive invariants, in checked builds only.
#ifdef QV_CHECKED
#define QV_DEBUG_CHECK( condition ) QV_CHECK( condition )
#else
#define QV_DEBUG_CHECK( condition ) ( (void)0 )
#endif

#endif
