// API_: module information, the error latch and error texts, self-tests.
#include <dlfcn.h>

#include <cstdio>
#include <cstring>

#include "frame/errors.h"
#include "frame/frame.h"
#include "frame/lifecycle.h"
#include "rng/entropy.h"
#include "verimond.h"

namespace {
constexpr char kPlatform[] = "Win32";  // kept: callers compare against it
constexpr char kCompileTime[] = __DATE__ " " __TIME__;
static_assert(sizeof kCompileTime - 1 == 20);
constexpr char kModuleInfo[] =
    "Verimond 6.22.1 cryptographic library for Linux x86-64. "
    "Self-tested at load; per-thread state; no external crypto dependencies.";

// Copies at most length characters and a NUL; returns the count copied.
int32_t CopyText(char* output, int32_t length, const char* text) {
    size_t n = std::strlen(text);
    if (n > size_t(length)) n = size_t(length);
    std::memcpy(output, text, n);
    output[n] = '\0';
    return int32_t(n);
}

int32_t LibraryPath(char* path, size_t size) {
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&LibraryPath), &info) == 0 || info.dli_fname == nullptr) {
        path[0] = '\0';
        return 0;
    }
    std::snprintf(path, size, "%s", info.dli_fname);
    return int32_t(std::strlen(path));
}
}  // namespace

extern "C" {

int32_t API_Version(void) { return 62201; }

int32_t API_ErrorCode(void) {
    StirEntropy(0);
    return ReadLatch();
}

int32_t API_ErrorLookup(char* output, int32_t length, int32_t code) {
    uint32_t wanted = code < 0 ? 0u - uint32_t(code) : uint32_t(code);
    for (const ErrorRow& row : kErrorTable) {
        if (uint32_t(row.code) != wanted) continue;
        size_t needed = std::strlen(row.text) + std::strlen(row.name) + 3;
        if (output == nullptr || length < 1) return int32_t(needed);
        char message[128];
        std::snprintf(message, sizeof message, "%s (%s)", row.text, row.name);
        return CopyText(output, length, message);
    }
    return 0;
}

int32_t API_CompileTime(char* output, int32_t length) {
    StirEntropy(0);
    if (IsSizeQuery(output, length)) return int32_t(sizeof kCompileTime - 1);
    return CopyText(output, length, kCompileTime);
}

int32_t API_ModuleName(char* output, int32_t length, int32_t options) {
    StirEntropy(0);
    switch (uint32_t(options)) {
        case 0: {
            char path[260];
            int32_t n = LibraryPath(path, sizeof path);
            if (IsSizeQuery(output, length)) return n;
            return CopyText(output, length, path);
        }
        case 0x40:
            if (IsSizeQuery(output, length)) return int32_t(sizeof kPlatform - 1);
            return CopyText(output, length, kPlatform);
        case 0xFACE:
            return int32_t(RngLiveInstances());
        case 0xFEED:
            return int32_t(GetThreadState()->rng.reseedCounter);
        case 0xFACADE:
            // The address of the thread's generator, cut to the 32-bit result.
            return int32_t(reinterpret_cast<uintptr_t>(&GetThreadState()->rng));
        case 0xAB:
            return 210;
        default:
            return -BAD_FLAG_ERROR;
    }
}

int32_t API_Platform(char* output, int32_t length) {
    EnterCall();
    if (IsSizeQuery(output, length)) return int32_t(sizeof kPlatform - 1);
    return CopyText(output, length, kPlatform);
}

int32_t API_ModuleInfo(char* output, int32_t length, int32_t options) {
    EnterCall();
    if (IsSizeQuery(output, length)) return int32_t(sizeof kModuleInfo - 1);
    return CopyText(output, length, kModuleInfo);
}

int32_t API_PowerUpTests(int32_t options) { return RunLoadChecks() ? 0 : -TEST_FAILED_ERROR; }

}  // extern "C"
