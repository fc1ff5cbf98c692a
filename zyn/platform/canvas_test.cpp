#include "zyn/platform/canvas.h"

#include <gtest/gtest.h>

TEST(Placeholder, Builds) {}
