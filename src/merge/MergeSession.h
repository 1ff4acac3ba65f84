#pragma once

// The session moved up to app/, beside the services it is built from; this
// name stays so that callers written against it keep compiling.
#include "app/MergeSession.h"
