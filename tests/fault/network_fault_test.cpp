// Every function on a network, with each of its allocations failing in turn: it returns 1001, the
// network answers as before, and nothing is lost.
#include <kelvo.h>

#include <functional>
#include <vector>

#include "fault/allocation.h"

namespace {

struct SolvedNetwork {
  SolvedNetwork() {
    int status = -1;
    env = KLVopenKELVO(&status);
    net = KLVNETcreateprob(env, &status, "faults");
    const double supply[] = {3, 0, -3};
    const int from[] = {0, 1, 0}, to[] = {1, 2, 2};
    const double up[] = {2, 2, 2}, cost[] = {1, 1, 3};
    const char* names[] = {"p", "q", "r"};
    EXPECT_EQ(KLVNETcopynet(env, net, 1, 3, supply, names, 3, from, to, nullptr, up, cost, names),
              0);
    EXPECT_EQ(KLVNETprimopt(env, net), 0);
  }
  ~SolvedNetwork() { EXPECT_EQ(KLVcloseKELVO(&env), 0); }
  SolvedNetwork(const SolvedNetwork&) = delete;
  SolvedNetwork& operator=(const SolvedNetwork&) = delete;

  std::vector<double> answers() const {
    std::vector<double> x(3), supply(3);
    double objective = 0;
    int status = 0, index = -1, codes[3] = {};
    EXPECT_EQ(KLVNETsolution(env, net, &status, &objective, x.data(), nullptr, nullptr, nullptr),
              0);
    EXPECT_EQ(KLVNETgetsupply(env, net, supply.data(), 0, 2), 0);
    EXPECT_EQ(KLVNETgetnodeindex(env, net, "r", &index), 0);
    EXPECT_EQ(KLVNETgetbase(env, net, codes, nullptr), 0);
    x.insert(x.end(), supply.begin(), supply.end());
    x.insert(x.end(), {objective, 1.0 * status, 1.0 * index, 1.0 * codes[0], 1.0 * codes[2]});
    x.insert(x.end(), {1.0 * KLVNETgetnumnodes(env, net), 1.0 * KLVNETgetnumarcs(env, net)});
    return x;
  }

  KLVenv env = nullptr;
  KLVnet net = nullptr;
};

using Operation = std::function<int(SolvedNetwork&)>;

TEST(NetworkFault, NothingIsLostWithoutMemory) {
  const std::vector<double> before = SolvedNetwork().answers();
  const int ends[] = {0, 1};
  const char* names[] = {"a quite long name that needs room", "another one of the same length"};
  const Operation operations[] = {
      [&](auto& p) { return KLVNETaddnodes(p.env, p.net, 2, nullptr, names); },
      [&](auto& p) {
        return KLVNETaddarcs(p.env, p.net, 2, ends, ends, nullptr, nullptr, nullptr, names);
      },
      [&](auto& p) { return KLVNETdelnodes(p.env, p.net, 1, 1); },
      [&](auto& p) { return KLVNETdelarcs(p.env, p.net, 0, 1); },
      [&](auto& p) { return KLVNETchgarcnodes(p.env, p.net, 2, ends, ends, ends); },
      [&](auto& p) { return KLVNETchgnodename(p.env, p.net, 2, ends, names); },
      [&](auto& p) { return KLVNETchgarcname(p.env, p.net, 2, ends, names); },
      [&](auto& p) {
        const double bounds[] = {1, 1};
        return KLVNETchgbds(p.env, p.net, 2, ends, "BB", bounds);
      },
      [&](auto& p) {
        return KLVNETcopynet(p.env, p.net, 1, 2, nullptr, names, 2, ends, ends, nullptr, nullptr,
                             nullptr, names);
      },
      [&](auto& p) {
        const int codes[] = {1, 1, 1};
        return KLVNETcopybase(p.env, p.net, codes, codes);
      },
      [&](auto& p) { return KLVNETprimopt(p.env, p.net); },
      [&](auto& p) {
        int status = 0;
        (void)KLVNETcreateprob(p.env, &status, "a name that is longer than a short text");
        return status;
      },
  };
  for (const Operation& operation : operations) {
    kelvo::test::AllocationFaults options;
    options.may_keep_room = true;
    kelvo::test::for_each_allocation_failure(
        [] { return SolvedNetwork(); }, [&](SolvedNetwork& p) { return operation(p); },
        [&](SolvedNetwork& p) { EXPECT_EQ(p.answers(), before); }, options);
  }
}

}  // namespace
