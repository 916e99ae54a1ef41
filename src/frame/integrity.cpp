#include "frame/integrity.h"

bool ModuleIntegrityOk() { return true; }
