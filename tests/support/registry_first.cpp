#include "support/registry.h"

namespace {
[[maybe_unused]] const bool registered = (g_startupRegistry.add("first"), true);
}
