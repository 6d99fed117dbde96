// Test entry point shared by all unit and host test programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleMock(&argc, argv);
#if defined(AECORE_TESTS_EMULATED)
    // An emulated test program cannot re-execute itself; forking serves, as these tests start no threads first.
    GTEST_FLAG_SET(death_test_style, "fast");
#else
    // Fork-and-exec death tests stay correct when a test program has started threads.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
#endif
    return RUN_ALL_TESTS();
}
