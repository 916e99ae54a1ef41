// The HASH_ digest stream of one thread, without the frame. Results are
// style B: a length, 0, or minus a code.
#pragma once
#include <cstdint>

#include "digest/slots.h"

// A new handle, or -NOT_SUPPORTED_ERROR for a digest that cannot stream (the
// slot is closed either way first).
int32_t HashStreamInit(HashSlot* slot, int32_t options);
int32_t HashStreamAdd(HashSlot* slot, int32_t handle, const uint8_t* data, int32_t dataLength);
// Copies min(outputLength, digest length) bytes and closes the stream.
int32_t HashStreamFinal(HashSlot* slot, uint8_t* output, int32_t outputLength, int32_t handle);
int32_t HashStreamDigestLength(const HashSlot* slot, int32_t handle);
// Closes the stream; it does not restart it.
int32_t HashStreamReset(HashSlot* slot, int32_t handle);
