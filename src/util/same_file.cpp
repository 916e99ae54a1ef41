#include "util/same_file.h"

#include <sys/stat.h>

#include <cstring>

bool SameFile(const char* first, const char* second) {
    if (std::strcmp(first, second) == 0) return true;
    struct stat a, b;
    if (stat(first, &a) != 0 || stat(second, &b) != 0) return false;
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}
