// Whether two path names lead to one file, so that a call reading one and
// truncating the other can refuse before any data is lost.
#pragma once

// True when both names are equal byte for byte, or both exist and share
// device and inode (links, "./name", symbolic links).
bool SameFile(const char* first, const char* second);
