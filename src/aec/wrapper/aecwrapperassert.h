// Always-on contract check of the algorithm interface: it aborts in every build type, NDEBUG or not.
#ifndef AEC_WRAPPER_AECWRAPPERASSERT_H
#define AEC_WRAPPER_AECWRAPPERASSERT_H

#include <cstdlib>

#include "platform/velalog.h"

// A host that breaks a size contract has handed over memory the library cannot trust, so the process stops
// here with the failed condition in the log instead of continuing on corrupt data.
#define AEC_WRAPPER_ASSERT(condition)                                                                  \
    do                                                                                                 \
    {                                                                                                  \
        if (!(condition))                                                                              \
        {                                                                                              \
            AEC_VLOG_ERROR("Assertion failed: %s", #condition);                                        \
            std::abort();                                                                              \
        }                                                                                              \
    } while (0)

#endif // AEC_WRAPPER_AECWRAPPERASSERT_H
