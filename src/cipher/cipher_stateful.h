// The stateful CIPHER_ calls: a Triple DES or AES context in the thread's
// CipherSlot, run piece by piece through the mode engine. No padding and no
// IV prefix here; the register carries over between calls as the engine
// keeps it.
#pragma once
#include <cstdint>

// Init ends any earlier context at once, then opens a new one. The handle, or
// 0 with the reason in *reason. The set-up's own result is not examined: with
// a null key or IV whose length passed the checks, a handle comes back over
// a context left empty (zeroed).
int32_t CipherInit(int32_t direction, const char* algorithmText, const uint8_t* key, int32_t keyLength,
                   const uint8_t* iv, int32_t ivLength, int32_t options, int32_t* reason);
// A missing key text (BAD_PARAM_ERROR) or text that is not hex
// (INVALID_DATA_ERROR) fails before the earlier context is ended.
int32_t CipherInitHex(int32_t direction, const char* algorithmText, const char* keyHex, const char* ivHex,
                      int32_t options, int32_t* reason);
// 0, minus a code, or the engine's positive BAD_LENGTH_ERROR for data that is
// not whole blocks in ECB or CBC (the context is then unchanged).
int32_t CipherUpdate(int32_t handle, uint8_t* output, int32_t outputLength, const uint8_t* input,
                     int32_t inputLength);
// Hex in, upper-case hex out. An empty input gives 0 and an empty text
// whatever the handle.
int32_t CipherUpdateHex(int32_t handle, char* outputHex, int32_t outputHexLength, const char* inputHex);
// Zeroes the slot. 0 or -INVALID_HANDLE_ERROR.
int32_t CipherFinal(int32_t handle);
