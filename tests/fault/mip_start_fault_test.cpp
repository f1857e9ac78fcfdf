// Calls on MIP starts with each of their allocations failing in turn.
#include "fault/all_or_nothing.h"
#include "support/temporary_folder.h"

namespace {

constexpr int kBegin[] = {0, 2}, kColumns[] = {0, 1, 1};
constexpr double kValues[] = {1, 2, 3};

int add(KLVenv env, KLVprob lp) {
  const char* const names[] = {"a start with a long name", nullptr};
  return KLVaddmipstarts(env, lp, 2, 3, kBegin, kColumns, kValues, nullptr, names);
}

int fill(KLVenv env, KLVprob lp) {
  return KLVnewcols(env, lp, 2, nullptr, nullptr, nullptr, "II", nullptr) + add(env, lp);
}

TEST(MipStartFaults, StartsStayAsTheyWere) {
  const TemporaryFolder folder;
  const std::string file = folder.path("starts.mst");
  const auto text = [&](const kelvo::test::OwnedProblem& p) {
    const int last = KLVgetnummipstarts(p.env, p.lp) - 1;
    EXPECT_EQ(KLVwritemipstarts(p.env, p.lp, file.c_str(), 0, last), 0);
    return folder.text_of("starts.mst");
  };
  const std::string before = text(kelvo::test::OwnedProblem(fill));
  const int which[] = {1, 0};
  int flags[] = {1, 0};
  kelvo::test::expect_all_or_nothing(
      fill,
      {{"add", add},
       {"change",
        [&](KLVenv env, KLVprob lp) {
          return KLVchgmipstarts(env, lp, 2, which, 3, kBegin, kColumns, kValues, which);
        }},
       {"replace",
        [](KLVenv env, KLVprob lp) { return KLVcopymipstart(env, lp, 2, kColumns, kValues); }},
       {"delete", [&](KLVenv env, KLVprob lp) { return KLVdelsetmipstarts(env, lp, flags); }},
       {"read",
        [&](KLVenv env, KLVprob lp) { return KLVreadcopymipstarts(env, lp, file.c_str()); }},
       {"clone",
        [](KLVenv env, KLVprob lp) {
          int status = -1;
          KLVcloneprob(env, lp, &status);
          return status;
        }}},
      kelvo::test::kKeepsRoom, [&](const kelvo::test::OwnedProblem& p, const kelvo::test::Call&) {
        EXPECT_EQ(text(p), before);
      });
}

}  // namespace
