#include <gtest/gtest.h>

// Tests allocate impossible sizes on purpose: the sanitizer build must answer with null, as
// the plain allocator does, instead of stopping the program.
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
