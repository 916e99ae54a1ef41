// The thread's incremental stream: set-up into the slot, buffered XOR, wipe.
#include <cstring>

#include "frame/frame.h"
#include "frame/memory.h"
#include "stream/stream_calls.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
void CipherXor(StreamSlot* slot, const uint8_t* input, uint8_t* output, size_t count) {
    if (slot->alg == kStreamSalsa20) {
        Salsa20Xor(&slot->cipher.salsa20, input, output, count);
    } else {
        Chacha20Xor(&slot->cipher.chacha20, input, output, count);
    }
}

// The cores advance the counter for a part block too, so a tail is taken
// from a whole block kept in the slot, whose rest opens the next call.
void BufferedXor(StreamSlot* slot, uint8_t* out, const uint8_t* input, size_t count) {
    if (slot->keystreamPos != 0) {
        while (count > 0 && slot->keystreamPos < 64) {
            *out++ = uint8_t(*input++ ^ slot->keystream[slot->keystreamPos++]);
            --count;
        }
        if (slot->keystreamPos == 64) slot->keystreamPos = 0;
    }
    size_t whole = count & ~size_t(63);
    if (whole != 0) {
        CipherXor(slot, input, out, whole);
        input += whole;
        out += whole;
        count -= whole;
    }
    if (count != 0) {
        std::memset(slot->keystream, 0, sizeof slot->keystream);
        CipherXor(slot, slot->keystream, slot->keystream, sizeof slot->keystream);
        for (size_t i = 0; i < count; ++i) out[i] = uint8_t(input[i] ^ slot->keystream[i]);
        slot->keystreamPos = uint32_t(count);
    }
}

int32_t Fail(StreamSlot* slot, int32_t code) {
    slot->alg = -1;
    LeaveCall(code);  // latches the code; the Init result itself is 0
    return 0;
}
}  // namespace

int32_t StreamInitSlot(StreamSlot* slot, const uint8_t* key, int32_t keyLength, const uint8_t* iv,
                       int32_t ivLength, uint32_t counter, int32_t options) {
    WipeObject(*slot);  // ends the earlier stream of this thread, whatever follows
    EnterCall();
    if (key == nullptr || keyLength < 1) {
        LeaveCall(-BAD_KEY_ERROR);
        return 0;
    }
    int32_t status;
    switch (options & 0xF) {
        case kStreamArcfour:
            slot->alg = kStreamArcfour;
            ArcfourSetup(&slot->cipher.arcfour, key, size_t(keyLength));
            status = 0;
            break;
        case kStreamSalsa20:
            slot->alg = kStreamSalsa20;
            status = Salsa20Setup(&slot->cipher.salsa20, key, keyLength, iv, ivLength);
            break;
        case kStreamChacha20:
            slot->alg = kStreamChacha20;
            status = Chacha20Setup(&slot->cipher.chacha20, key, keyLength, iv, ivLength, counter);
            break;
        default:
            return Fail(slot, -BAD_FLAG_ERROR);
    }
    if (status != 0) return Fail(slot, status);
    slot->keystreamPos = 0;
    slot->handle = NewHandle();
    return int32_t(slot->handle);
}

int32_t StreamUpdateSlot(StreamSlot* slot, uint8_t* out, const uint8_t* input, int32_t inputLength) {
    switch (slot->alg) {
        case kStreamArcfour:
            if (inputLength > 0) ArcfourXor(&slot->cipher.arcfour, out, input, size_t(inputLength));
            return 0;
        case kStreamSalsa20:
        case kStreamChacha20:
            if (inputLength > 0) BufferedXor(slot, out, input, size_t(inputLength));
            return 0;
        default:
            return -BAD_FLAG_ERROR;
    }
}

void StreamFinalSlot(StreamSlot* slot) {
    WipeObject(*slot);
    slot->handle = 0;
}
