// The general callbacks and the termination flag, as far as the environment keeps them.
#include "env_fixture.h"

namespace {

class Callbacks : public EnvironmentTest {};

struct Slot {
  const char* name;
  int (*set)(KLVenv, KLVcallback, void*);
  int (*get)(KLVenv, KLVcallback*, void**);
};

const Slot kSlots[] = {
    {"lp", KLVsetlpcallbackfunc, KLVgetlpcallbackfunc},
    {"net", KLVsetnetcallbackfunc, KLVgetnetcallbackfunc},
    {"tuning", KLVsettuningcallbackfunc, KLVgettuningcallbackfunc},
    {"info", KLVsetinfocallbackfunc, KLVgetinfocallbackfunc},
    {"mip", KLVsetmipcallbackfunc, KLVgetmipcallbackfunc},
};

TEST_F(Callbacks, EachKindHasItsSlotWhichDefaultsLeaveAloneAndChildrenCopy) {
  const KLVcallback function = [](KLVenv, void*, int, void*) { return 0; };
  int handles[5] = {0, 1, 2, 3, 4};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(kSlots[i].set(env, function, &handles[i]), 0);
  EXPECT_EQ(KLVsetdefaults(env), 0);
  int status = 0;
  KLVenv child = KLVparenv(env, &status);
  EXPECT_EQ(kSlots[4].set(env, nullptr, nullptr), 0);
  for (int i = 0; i < 5; ++i) {
    KLVcallback stored = nullptr;
    void* handle = nullptr;
    EXPECT_EQ(kSlots[i].get(child, &stored, &handle), 0);
    EXPECT_EQ(stored, function) << kSlots[i].name;
    EXPECT_EQ(handle, &handles[i]) << kSlots[i].name;
    EXPECT_EQ(kSlots[i].get(env, &stored, nullptr), 0);
    EXPECT_EQ(stored, i == 4 ? nullptr : function) << kSlots[i].name;
    EXPECT_EQ(kSlots[i].get(nullptr, &stored, nullptr), 1002);
    EXPECT_EQ(kSlots[i].set(nullptr, stored, nullptr), 1002);
  }
  EXPECT_EQ(KLVsetterminate(nullptr, nullptr), 1002);
  EXPECT_EQ(KLVsetterminate(env, nullptr), 0);
  EXPECT_EQ(errors, "");
}

}  // namespace
