// Load, thread and unload events of the library.
#pragma once
#include "frame/thread_state.h"

// The steps of process attach. With runChecks false (white-box tests that link
// the objects directly) the integrity check is skipped. Returns false on a
// failure, after the report.
bool ProcessAttach(bool runChecks);
void ProcessDetach();
// Thread end: wipes the generator, frees the record, removes it from the registry.
void ThreadDetach(ThreadState* ts);
// The load checks in order, each whatever the earlier gave: integrity,
// power-up tests, generator health check. True if all pass. The failing
// checks report on their own; nothing here ends the process.
bool RunLoadChecks();
// The same with a fault planted in one power-up test (see
// PowerUpTestsWithFault), for tests of the order of the checks.
bool RunLoadChecksWithFault(int faultTest);
