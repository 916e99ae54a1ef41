// FIPS 140-2 (4.9.1) power-up statistical tests: monobits, poker, runs and
// long runs on 20000 bits.
#include "rng/stattest.h"

#include <cstring>
#include <ctime>

#include "rng/drbg.h"
#include "util/wipe.h"

namespace {
constexpr int kSampleBits = 20000;
constexpr long kMonobitsLow = 9725, kMonobitsHigh = 10275;
constexpr double kPokerLow = 2.16, kPokerHigh = 46.17;
constexpr int kRunMinimum[6] = {2315, 1114, 527, 240, 103, 103};
constexpr int kRunMaximum[6] = {2685, 1386, 723, 384, 209, 209};
constexpr int kLongRun = 26;

const char* Verdict(bool passed) { return passed ? "Passed" : "FAILED!"; }

void WriteRow(FILE* f, const char* label, const int values[6], bool parenthesised) {
    std::fprintf(f, "%s", label);
    for (int i = 0; i < 5; ++i) std::fprintf(f, "%d, ", values[i]);
    std::fprintf(f, parenthesised ? "%d)\n" : "%d\n", values[5]);
}
}  // namespace

void FipsRunTests(const uint8_t sample[kFipsSampleBytes], FipsResults* r) {
    std::memset(r, 0, sizeof *r);
    long nibbles[16] = {0};
    for (uint32_t i = 0; i < kFipsSampleBytes; ++i) {
        r->ones += __builtin_popcount(sample[i]);
        ++nibbles[sample[i] >> 4];
        ++nibbles[sample[i] & 15];
    }
    double squares = 0;
    for (long n : nibbles) squares += double(n) * double(n);
    r->poker = 16.0 / 5000.0 * squares - 5000.0;

    int current = sample[0] >> 7;
    int length = 0;
    for (int bit = 0; bit < kSampleBits; ++bit) {
        int b = (sample[bit / 8] >> (7 - bit % 8)) & 1;
        if (b == current) {
            ++length;
            continue;
        }
        // A change closes the run before it.
        int* longest = current ? &r->longestBlock : &r->longestGap;
        if (length > *longest) *longest = length;
        (current ? r->blocks : r->gaps)[(length > 6 ? 6 : length) - 1]++;
        current = b;
        length = 1;
    }

    r->monobitsPassed = r->ones > kMonobitsLow && r->ones < kMonobitsHigh;
    r->pokerPassed = r->poker > kPokerLow && r->poker < kPokerHigh;
    r->runsPassed = true;
    for (int i = 0; i < 6; ++i) {
        r->runPassed[i] = r->gaps[i] >= kRunMinimum[i] && r->blocks[i] <= kRunMaximum[i];
        r->runsPassed = r->runsPassed && r->runPassed[i];
    }
    r->longRunsPassed = r->longestGap < kLongRun && r->longestBlock < kLongRun;
    r->allPassed = r->monobitsPassed && r->pokerPassed && r->runsPassed && r->longRunsPassed;
}

void FipsWriteReport(FILE* f, const FipsResults& r, const uint8_t sample[kFipsSampleBytes], const char* when) {
    std::fprintf(f, "FIPS140-2 test for %d bits (%d bytes)", kSampleBits, int(kFipsSampleBytes));
    std::fprintf(f, " at %s\n", when);
    std::fprintf(f, "1. Monobits test n1 = %ld (%d - %d)\n", r.ones, int(kMonobitsLow), int(kMonobitsHigh));
    std::fprintf(f, "   %s Monobits test.\n", Verdict(r.monobitsPassed));
    std::fprintf(f, "2. Poker test X = %.2lf (%.2lf - %.2lf)\n", r.poker, kPokerLow, kPokerHigh);
    std::fprintf(f, "   %s Poker test.\n", Verdict(r.pokerPassed));
    std::fprintf(f, "3. Runs test:\n");
    std::fprintf(f, "     Run len: ");
    for (int i = 1; i <= 5; ++i) std::fprintf(f, "%3d  ", i);
    std::fprintf(f, "  6+\n");
    WriteRow(f, "     Gaps:   ", r.gaps, false);
    WriteRow(f, "     Blocks: ", r.blocks, false);
    int average[6];
    for (int i = 0; i < 6; ++i) average[i] = (kRunMinimum[i] + kRunMaximum[i]) / 2;
    WriteRow(f, "     Min:   (", kRunMinimum, true);
    WriteRow(f, "     Avg:   (", average, true);
    WriteRow(f, "     Max:   (", kRunMaximum, true);
    std::fprintf(f, "     Pass:    ");
    for (int i = 0; i < 5; ++i) std::fprintf(f, "%3c  ", r.runPassed[i] ? 'Y' : 'N');
    std::fprintf(f, "%3c\n", r.runPassed[5] ? 'Y' : 'N');
    std::fprintf(f, "   %s Runs test.\n", Verdict(r.runsPassed));
    std::fprintf(f, "4. Long runs test: Gmax = %d Bmax = %d (%d)\n", r.longestGap, r.longestBlock, kLongRun);
    std::fprintf(f, "   %s Long Run test.\n", Verdict(r.longRunsPassed));
    std::fprintf(f, "%s FIPS140-2 test.\n", Verdict(r.allPassed));
    std::fprintf(f, "Test sample was:-\n");
    for (uint32_t i = 0; i < kFipsSampleBytes; ++i) {
        std::fprintf(f, "%02X", sample[i]);
        if (i % 25 == 24) std::fprintf(f, "\n");
    }
    std::fprintf(f, "\n");
    for (int i = 0; i < 50; ++i) std::fputc('*', f);
    std::fprintf(f, "\n");
}

int32_t RngTestReport(DrbgState* state, const char* resultFile) {
    uint8_t sample[kFipsSampleBytes];
    int32_t status = DrbgGenerate(state, sample, sizeof sample, nullptr, 0);
    if (status != 0) {
        SecureWipe(sample, sizeof sample);
        return status;
    }
    FILE* f = nullptr;
    if (resultFile != nullptr && *resultFile != '\0') {
        f = std::fopen(resultFile, "w");
        if (f == nullptr) {
            SecureWipe(sample, sizeof sample);
            return -202;  // -PRNG_ERR_FILE_CREATE
        }
    }
    FipsResults results;
    FipsRunTests(sample, &results);
    if (f != nullptr) {
        std::time_t now = std::time(nullptr);
        char when[64];
        if (ctime_r(&now, when) == nullptr) std::strcpy(when, "\n");
        FipsWriteReport(f, results, sample, when);
        std::fclose(f);
    }
    SecureWipe(sample, sizeof sample);
    return results.allPassed ? 0 : 1;
}
