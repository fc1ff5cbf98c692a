#include "zyn/platform/devices.h"

#include <gtest/gtest.h>

TEST(Placeholder, Builds) {}
