#include "support/registry.h"

KORXDynamicArray<const char*> g_startupRegistry(korxStaticRegistry);

namespace {
const int sizeAtOwnInit = g_startupRegistry.size();
}

int StartupRegistrySizeAtItsOwnInit() { return sizeAtOwnInit; }
