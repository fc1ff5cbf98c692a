#include "zyn/base/canvas_helpers.h"

#include <gtest/gtest.h>

TEST(Placeholder, Builds) {}
