#include "frame/lifecycle.h"

#include "frame/errors.h"
#include "frame/frame.h"
#include "frame/integrity.h"
#include "frame/selftest.h"
#include "rng/drbg.h"
#include "rng/entropy.h"
#include "util/cpu.h"

namespace {
// Thread attach, run here for the thread that loads the library; other
// threads take the lazy path of GetThreadState on their first call.
void ThreadAttach() {
    ThreadState* ts = AllocThreadState();
    if (ts == nullptr) return;
    TlsStore(ts);
    LibraryLock();
    RegistryAdd(ts);
    LibraryUnlock();
    StirEntropy(0);
}
}  // namespace

bool RunLoadChecksWithFault(int faultTest) {
    bool ok = ModuleIntegrityOk();
    ok = (PowerUpTestsWithFault(faultTest, nullptr) == 0) && ok;
    ok = (DrbgHealthCheck(2) == 0) && ok;
    return ok;
}

bool RunLoadChecks() { return RunLoadChecksWithFault(0); }

bool ProcessAttach(bool runChecks) {
    CpuDetect();  // before the self-tests, so they test the paths in use
    if (!FrameCreateTls()) return false;
    if (runChecks) {
        if (!ModuleIntegrityOk()) return false;  // reports on its own
        if (PowerUpTests() != 0) {
            ReportFatal("Failed Power-up tests. Application terminated", kEventPowerUpFailed);
            return false;
        }
        if (DrbgHealthCheck(2) != 0) {
            ReportFatal("PRNG health check failed. Cryptographic services are not available",
                        kEventRngHealthFailed);
            return false;
        }
    }
    ThreadAttach();
    return true;
}

void ThreadDetach(ThreadState* ts) {
    if (ts == nullptr) return;
    DrbgUninstantiate(&ts->rng);
    FreeThreadState(ts);
    LibraryLock();
    RegistryRemove(ts);
    LibraryUnlock();
}

void ProcessDetach() {
    ZeroSharedRngState();
    ThreadState* own = TlsRead();
    LibraryLock();
    if (own != nullptr) {
        RegistryRemove(own);
        FreeThreadState(own);
        TlsStore(nullptr);
    }
    // Records of threads still alive; their generators are not wiped, as
    // those threads are gone or about to go.
    for (int i = 0; i <= g_registry.highestIndex && i < kRegistrySlots; ++i) {
        if (g_registry.slots[i] != nullptr) FreeThreadState(g_registry.slots[i]);
    }
    LibraryUnlock();
    FrameDestroyTls();
}
