#include "zyn/base/marks.h"

#include <gtest/gtest.h>

TEST(Placeholder, Builds) {}
