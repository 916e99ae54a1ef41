// Self-integrity check of the library file.
//
// The library carries a seal: a marker of 16 bytes, then a digest of 32. The
// digest is the SHA-256 of the whole library file computed with the digest
// bytes taken as zeros; a build tool writes it into the linked file. At load
// the library reads its own file, recomputes and compares. A changed byte
// anywhere in the file, the seal included, refuses the load.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr size_t kSealMarkerSize = 16;
constexpr size_t kSealDigestSize = 32;

// True when the library file matches the digest recorded at build time;
// false after a report (ReportFatal) otherwise.
bool ModuleIntegrityOk();

// The marker of the seal, as this image holds it.
void SealMarker(uint8_t marker[kSealMarkerSize]);

// Offset of the digest in a file image: right after the marker, which must
// occur exactly once. False when it is missing, repeated, or too close to the
// end of the image to be followed by a digest.
bool FindSealDigest(const uint8_t* image, size_t size, const uint8_t marker[kSealMarkerSize],
                    size_t* digestOffset);

// SHA-256 of the image with the kSealDigestSize bytes at digestOffset read
// as zeros. digestOffset + kSealDigestSize must not pass size.
void SealDigestOfImage(const uint8_t* image, size_t size, size_t digestOffset,
                       uint8_t digest[kSealDigestSize]);

// True when the image holds the seal, its stored digest is `expected`, and
// the image hashes to it. Both comparisons read every byte.
bool ImageMatchesSeal(const uint8_t* image, size_t size, const uint8_t marker[kSealMarkerSize],
                      const uint8_t expected[kSealDigestSize]);
