// A registry filled by static initialisers of other translation units, the way the library's
// own registries are filled at load.
#ifndef KORX_TESTS_REGISTRY_H
#define KORX_TESTS_REGISTRY_H

#include <korx/KORXDynamicArray.h>

extern KORXDynamicArray<const char*> g_startupRegistry;

/// How many entries the registry held when its own translation unit was initialised.
int StartupRegistrySizeAtItsOwnInit();

#endif
