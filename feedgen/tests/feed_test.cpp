#include <gtest/gtest.h>
#include "feedgen/feed.h"
TEST(Feed, Placeholder) {}
