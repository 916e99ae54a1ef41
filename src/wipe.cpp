// WIPE_: destroying data in memory and on disk (style A).
#include "frame/frame.h"
#include "util/wipe.h"
#include "util/wipe_file.h"
#include "verimond.h"

extern "C" {

int32_t WIPE_Data(unsigned char* data, int32_t length) {
    EnterCall();
    StirEntropy(0);
    if (data == nullptr) return LeaveCall(NULL_ERROR);
    // A length of 0 is refused, not a success: the caller asked to wipe
    // something and nothing was wiped.
    if (length <= 0) return LeaveCall(BAD_PARAM_ERROR);
    SecureWipe(data, size_t(length));
    return LeaveCall(0);
}

int32_t WIPE_File(const char* fileName, int32_t options) {
    EnterCall();
    StirEntropy(0);
    return LeaveCall(WipeFileByName(fileName, (options & OPT_WIPE_FAST) != 0));
}

}  // extern "C"
