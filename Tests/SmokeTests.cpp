#include <gtest/gtest.h>
TEST(Smoke, Builds) { SUCCEED(); }
