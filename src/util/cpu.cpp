#include "util/cpu.h"

#include <cpuid.h>

#include <cstdlib>
#include <cstring>

CpuFeatures g_cpu;

namespace {
uint64_t ReadXcr0() {
    uint32_t eax, edx;
    __asm__ volatile("xgetbv" : "=a"(eax), "=d"(edx) : "c"(0));
    return (uint64_t(edx) << 32) | eax;
}

struct FlagName {
    const char* name;
    bool CpuFeatures::*flag;
};
constexpr FlagName kNames[] = {
    {"sse2", &CpuFeatures::sse2},       {"ssse3", &CpuFeatures::ssse3},
    {"sse41", &CpuFeatures::sse41},     {"aesni", &CpuFeatures::aesni},
    {"pclmul", &CpuFeatures::pclmul},   {"avx", &CpuFeatures::avx},
    {"avx2", &CpuFeatures::avx2},       {"bmi1", &CpuFeatures::bmi1},
    {"bmi2", &CpuFeatures::bmi2},
    {"adx", &CpuFeatures::adx},         {"shani", &CpuFeatures::shani},
    {"vaes", &CpuFeatures::vaes},       {"vpclmul", &CpuFeatures::vpclmul},
    {"avx512f", &CpuFeatures::avx512f}, {"avx512bw", &CpuFeatures::avx512bw},
    {"avx512vl", &CpuFeatures::avx512vl}, {"avx512ifma", &CpuFeatures::avx512ifma},
};

void ApplyOverride(CpuFeatures* f, const char* text) {
    if (text == nullptr || *text == '\0') return;
    if (std::strcmp(text, "portable") == 0) {
        *f = CpuFeatures{};
        return;
    }
    const char* p = text;
    while (*p != '\0') {
        const char* end = std::strchr(p, ',');
        size_t n = end != nullptr ? size_t(end - p) : std::strlen(p);
        if (n > 1 && p[0] == '-') {
            for (const FlagName& fn : kNames) {
                if (std::strlen(fn.name) == n - 1 && std::strncmp(fn.name, p + 1, n - 1) == 0) {
                    f->*fn.flag = false;
                }
            }
        }
        p += n;
        if (*p == ',') ++p;
    }
}
}  // namespace

void CpuDetectWith(const char* overrideText) {
    CpuFeatures f{};
    unsigned a, b, c, d;
    unsigned maxLeaf = __get_cpuid_max(0, nullptr);
    if (maxLeaf >= 1) {
        __cpuid(1, a, b, c, d);
        f.sse2 = (d >> 26) & 1;
        f.ssse3 = (c >> 9) & 1;
        f.sse41 = (c >> 19) & 1;
        f.aesni = (c >> 25) & 1;
        f.pclmul = (c >> 1) & 1;
        bool osxsave = (c >> 27) & 1;
        bool avxBit = (c >> 28) & 1;
        uint64_t xcr0 = osxsave ? ReadXcr0() : 0;
        bool ymm = (xcr0 & 0x6) == 0x6;
        bool zmm = (xcr0 & 0xe6) == 0xe6;
        f.avx = avxBit && ymm;
        if (maxLeaf >= 7) {
            __cpuid_count(7, 0, a, b, c, d);
            f.avx2 = f.avx && ((b >> 5) & 1);
            f.bmi1 = (b >> 3) & 1;
            f.bmi2 = (b >> 8) & 1;
            f.adx = (b >> 19) & 1;
            f.shani = (b >> 29) & 1;
            f.vaes = f.avx2 && ((c >> 9) & 1);
            f.vpclmul = f.avx2 && ((c >> 10) & 1);
            f.avx512f = zmm && ((b >> 16) & 1);
            f.avx512bw = f.avx512f && ((b >> 30) & 1);
            f.avx512vl = f.avx512f && ((b >> 31) & 1);
            f.avx512ifma = f.avx512f && ((b >> 21) & 1);
        }
    }
    ApplyOverride(&f, overrideText);
    g_cpu = f;
}

void CpuDetect() { CpuDetectWith(std::getenv("VERIMOND_CPU")); }
