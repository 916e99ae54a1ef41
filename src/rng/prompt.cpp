// The console prompt. Characters arrive as the runtime delivers them: on a
// line-buffered terminal the progress moves when Enter comes, and the line
// end counts as a character.
#include "rng/prompt.h"

#include <cstring>
#include <ctime>

#include "digest/sha512.h"
#include "rng/drbg.h"
#include "rng/entropy.h"
#include "util/wipe.h"

namespace {
constexpr double kCreditPerKey = 0.75;
constexpr uint32_t kMaxPromptReads = 65536;
constexpr char kDefaultPrompt[] = "Please hit random keys then Enter until you reach 100%:";

uint32_t TimeWord() { return uint32_t(std::time(nullptr)) ^ uint32_t(std::clock()); }

// The record hashed for each event: the last character and a time word.
void HashRecord(Sha512Context* ctx, int32_t character) {
    uint32_t record[2] = {uint32_t(character), TimeWord()};
    Sha512Update(ctx, reinterpret_cast<const uint8_t*>(record), sizeof record);
    SecureWipe(record, sizeof record);
}
}  // namespace

int PromptTargetBits(int32_t options) {
    switch (options & 0xF) {
        case 1: return 128;
        case 2: return 192;
        case 3: return 256;
        default: return 112;
    }
}

int PromptConsoleOn(FILE* in, FILE* out, uint8_t* digest, uint32_t digestLength, int target, const char* prompt) {
    Sha512Context ctx;
    Sha512Start(&ctx);
    int32_t last = 0;
    HashRecord(&ctx, last);
    std::fprintf(out, "%s\n", prompt != nullptr && *prompt != '\0' ? prompt : kDefaultPrompt);

    double progress = 0;
    for (uint32_t reads = 0; progress < target && reads < kMaxPromptReads; ++reads) {
        std::fprintf(out, "\r%d%%", int(100 * progress / target));
        std::fflush(out);
        int c = std::getc(in);
        if (c == EOF) break;  // no further credit can come
        HashRecord(&ctx, c);
        if (c != last) progress += kCreditPerKey;
        last = c;
    }
    HashRecord(&ctx, last);
    uint8_t block[64];
    Sha512Final(block, &ctx);
    std::fprintf(out, "\n");
    std::fflush(out);
    std::memcpy(digest, block, digestLength < 64 ? digestLength : 64);
    SecureWipe(block, sizeof block);
    WipeObject(ctx);
    last = 0;
    return int(progress);
}

int PromptConsole(uint8_t* digest, uint32_t digestLength, int target, const char* prompt) {
    return PromptConsoleOn(stdin, stdout, digest, digestLength, target, prompt);
}

int32_t PromptGenerate(DrbgState* state, uint8_t* output, uint32_t length, const char* prompt, int32_t options) {
    SharedRngState* shared = LinkSharedState(state);
    int target = PromptTargetBits(options);
    GatherFull(&shared->pools);
    uint8_t digest[64];
    PromptConsole(digest, sizeof digest, target, prompt);
    GatherLight(&shared->pools);
    int32_t result = DrbgGenerate(state, output, length, digest, sizeof digest);
    SecureWipe(digest, sizeof digest);
    return result;
}
