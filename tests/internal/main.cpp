// White-box test runner: starts the library's frame without the load checks
// that belong to the installed library file.
#include <gtest/gtest.h>

#include "frame/lifecycle.h"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (!ProcessAttach(false)) return 1;
    return RUN_ALL_TESTS();
}
