#include "prob/model/name_lookup.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace kelvo {
namespace {

int first_equal(std::string_view name, const NameStore& names) {
  for (int i = 0; i < names.size(); ++i) {
    if (names.view(i) == name) return i;
  }
  return -1;
}

/// Appending, renaming (to new, old and repeated names) and deleting, in every order.
TEST(NameLookup, AgreesWithAScan) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto below = [&](int n) { return static_cast<int>(random() % n); };
    // Few different names make repeats common, many make them rare.
    const int variety = seed % 2 == 0 ? 30 : 5000;
    // Names of up to 8 bytes and longer ones are kept in different ways.
    const auto some_name = [&] {
      const std::string number = std::to_string(below(variety));
      return (number.size() % 2 == 0 ? "n" : "a longer name ") + number;
    };
    NameStore names;
    NameLookup lookup;
    for (int step = 0; step < 600; ++step) {
      const int kind = below(10);
      if (names.size() == 0 || kind < 3) {
        names.append(some_name());
      } else if (kind < 7) {
        const int i = below(names.size());
        lookup.before_rename(i, names);
        names.rename(i, some_name());
        lookup.after_rename(i, names);
      } else if (kind == 7 && below(20) == 0) {
        const int gone = below(names.size());
        names.keep_if([&](int i) { return i != gone; });
        lookup.forget();
      }
      if (below(3) == 0) continue;
      const std::string name =
          names.size() > 0 && below(2) == 0 ? names[below(names.size())] : some_name();
      ASSERT_EQ(lookup.find(name, names), first_equal(name, names)) << name << " step " << step;
    }
  }
}

}  // namespace
}  // namespace kelvo
