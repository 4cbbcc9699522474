#include "bits.hpp"
#include "quillon.h"
TEST(Placeholder, Builds) {}
