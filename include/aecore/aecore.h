/* The whole host interface of libaecore: include this one header from C or C++. */
#ifndef AECORE_AECORE_H
#define AECORE_AECORE_H

#include "aecore/aecore_types.h"
#include "aecore/aecore_enums.h"
#include "aecore/aecore_stats.h"
#include "aecore/aecore_ldm.h"
#include "aecore/aecore_frame.h"
#include "aecore/aecore_lists.h"
#include "aecore/aecore_setparam.h"
#include "aecore/aecore_getparam.h"
#include "aecore/aecore_entry.h"

#endif /* AECORE_AECORE_H */
