// HASH_: digests by option number.
#include "digest/digest.h"
#include "frame/frame.h"
#include "verimond.h"

extern "C" {

int32_t HASH_Bytes(unsigned char* output, int32_t outputLength, const unsigned char* message,
                   int32_t messageLength, int32_t options) {
    EnterCall();
    return LeaveOnFailure(DigestBytes(output, outputLength, message, messageLength, options));
}

int32_t HASH_Length(int32_t options) {
    EnterCall();
    // This call alone refuses the flag bits.
    if (options < 0 || (options & ~0xFF) != 0) return LeaveCall(-BAD_FLAG_ERROR);
    return LeaveOnFailure(DigestLength(options));
}

}  // extern "C"
