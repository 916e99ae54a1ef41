// The library's load and unload events. A constructor cannot make the loader
// fail, so a failed load check ends the process after its report.
#include <cstdlib>

#include "frame/lifecycle.h"

__attribute__((constructor)) static void LibraryLoad() {
    if (!ProcessAttach(true)) std::_Exit(1);
}

__attribute__((destructor)) static void LibraryUnload() { ProcessDetach(); }
