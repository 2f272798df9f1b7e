#include <korx/Gk_Observer.h>

Gk_Observer::~Gk_Observer() = default;

int Gk_Observer::getType() { return 0; }
