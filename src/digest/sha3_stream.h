// The SHA3_ stream of one thread, without the frame. The family mixes
// result styles on purpose: the adding calls and Reset give 0 or a positive
// code, HexDigest and LengthInBytes a count or minus a code.
#pragma once
#include <cstdint>

#include "digest/slots.h"

// A new handle, or 0 for a bit length other than 224, 256, 384 and 512
// (the record is then zeroed and the slot closed).
uint32_t Sha3StreamInit(Sha3Slot* slot, int32_t hashBitLength);
int32_t Sha3StreamAdd(Sha3Slot* slot, int32_t handle, const uint8_t* data, int32_t dataLength);
// Finishes and closes the stream before the output is looked at: a null
// output returns twice the digest length with the stream gone all the same.
int32_t Sha3StreamHexDigest(Sha3Slot* slot, char* output, int32_t outputLength, int32_t handle);
int32_t Sha3StreamLength(const Sha3Slot* slot, int32_t handle);
int32_t Sha3StreamReset(Sha3Slot* slot, int32_t handle);
