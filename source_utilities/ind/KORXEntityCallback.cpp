#include <korx/KORXEventBus.h>

int KORXEntityCallback::getType() { return 4; }
