// The stream-cipher families as the exports see them: the whole-message,
// hex, file and incremental calls of CIPHER_Stream..., and the PC1 calls
// (ARCFOUR under another name). Results follow the families' styles: the
// CIPHER_Stream calls give 0 or minus a code (but ARCFOUR's positive 6 and
// Salsa20's -51 pass through as they are), the PC1 calls 0 or a positive code.
#pragma once
#include <cstdint>

#include "stream/slots.h"

// The low four bits of a stream option.
enum StreamAlgorithm : int32_t { kStreamArcfour = 1, kStreamSalsa20 = 2, kStreamChacha20 = 3 };

int32_t StreamBytes(uint8_t* out, const uint8_t* input, int32_t inputLength, const uint8_t* key,
                    int32_t keyLength, const uint8_t* iv, int32_t ivLength, uint32_t counter, int32_t options);
int32_t StreamHex(char* outHex, int32_t outHexLength, const char* inputHex, const char* keyHex,
                  const char* ivHex, uint32_t counter, int32_t options);
int32_t StreamFile(const char* outFile, const char* inFile, const uint8_t* key, int32_t keyLength,
                   const uint8_t* iv, int32_t ivLength, uint32_t counter, int32_t options);

// Opens the thread's stream slot: empties it, enters the call frame, and on
// failure latches the reason and returns 0; on success returns the handle.
int32_t StreamInitSlot(StreamSlot* slot, const uint8_t* key, int32_t keyLength, const uint8_t* iv,
                       int32_t ivLength, uint32_t counter, int32_t options);
// The XOR of a live slot; Salsa20 and ChaCha20 carry a part-used key stream
// block across calls so that the output does not depend on how the message
// is cut. No argument or handle tests.
int32_t StreamUpdateSlot(StreamSlot* slot, uint8_t* out, const uint8_t* input, int32_t inputLength);
// Wipes the slot and drops its handle.
void StreamFinalSlot(StreamSlot* slot);

int32_t Pc1File(const char* outFile, const char* inFile, const uint8_t* key, int32_t keyLength);
int32_t Pc1Hex(char* outHex, int32_t outHexLength, const char* inputHex, const char* keyHex);
