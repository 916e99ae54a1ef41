// Destroying a file's contents: overwrite with a series of patterns, each
// committed to disk before the next, verify, truncate, remove.
#pragma once
#include <cstdint>

// Every pass works with one block of this size, repeated up to the file's size.
constexpr int32_t kWipeBlockSize = 4096;

// The passes on an open descriptor (read and write): zeros, verified; then,
// unless fast, 0xFF, 0xAA, 0x55, two pseudo-random blocks of which the second
// is verified, and zeros. Gives 0, OPEN_ERROR when the file's status cannot
// be had or it is no regular file (nothing written), or WIPE_ERROR at the
// first failed seek, write, commit or comparison.
int32_t WipeFilePasses(int fd, bool fast);

// The whole job by name, style A: 0, NULL_ERROR, OPEN_ERROR (the file is
// unchanged), or WIPE_ERROR (the file stays, overwritten as far as the
// passes went, or emptied when only the removal failed).
int32_t WipeFileByName(const char* fileName, bool fast);
