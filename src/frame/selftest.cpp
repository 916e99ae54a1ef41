#include "frame/selftest.h"

int PowerUpTests() { return 0; }
