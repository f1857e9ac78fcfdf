// Networks through the interface: building, changing, querying, solving.
#include <algorithm>
#include <limits>

#include "net_fixture.h"

namespace {

class Network : public NetworkTest {};

TEST_F(Network, IsSolvedAndAnswersQueries) {
  fill();
  EXPECT_EQ(KLVNETgetstat(env, net), 0);
  double objective = -1;
  EXPECT_EQ(KLVNETgetobjval(env, net, &objective), 1217);
  int codes[5];
  EXPECT_EQ(KLVNETgetbase(env, net, codes, nullptr), 1262);
  ASSERT_EQ(KLVNETprimopt(env, net), 0);
  int status = 0, primal = 0, dual = 0;
  double x[5], pi[4], slack[4], dj[5];
  EXPECT_EQ(KLVNETsolution(env, net, &status, &objective, x, pi, slack, dj), 0);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(objective, 16.0);
  EXPECT_EQ(std::vector<double>(x, x + 5), (std::vector<double>{4, 2, 4, 2, 0}));
  EXPECT_EQ(std::vector<double>(slack, slack + 4), std::vector<double>(4, 0.0));
  const int from[] = {0, 0, 1, 2, 1}, to[] = {1, 2, 3, 3, 2};
  const double cost[] = {1, 2, 1, 2, 5};
  for (int a = 0; a < 5; ++a) EXPECT_EQ(dj[a], cost[a] - pi[from[a]] + pi[to[a]]);
  EXPECT_EQ(KLVNETsolninfo(env, net, &primal, &dual), 0);
  EXPECT_TRUE(primal == 1 && dual == 1);
  EXPECT_EQ(take(results).substr(0, 20), "Iteration log . . .\n");
  int roots[4];
  EXPECT_EQ(KLVNETgetbase(env, net, codes, roots), 0);
  EXPECT_EQ(std::count(codes, codes + 5, 1) + std::count(roots, roots + 4, 1), 4);

  // From its own basis nothing is left to do; a changed sense keeps the basis.
  ASSERT_EQ(KLVNETprimopt(env, net), 0);
  EXPECT_EQ(KLVNETgetitcnt(env, net), 0);
  EXPECT_EQ(KLVNETchgobjsen(env, net, KLV_MAXIMIZE), 0);
  EXPECT_EQ(KLVNETgetstat(env, net), 0);
  EXPECT_EQ(KLVNETgetbase(env, net, codes, roots), 0);
  ASSERT_EQ(KLVNETprimopt(env, net), 0);
  EXPECT_EQ(KLVNETgetobjval(env, net, &objective), 0);
  EXPECT_EQ(objective, 4 * 1 + 2 * 2 + 2 * 1 + 4 * 2 + 2 * 5);
  EXPECT_EQ(KLVNETsolninfo(env, net, &primal, &dual), 0);
  EXPECT_TRUE(primal == 1 && dual == 1);
}

TEST_F(Network, EndsWithTheStatusOfItsLimitsAndData) {
  fill();
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_NETITLIM, 0), 0);
  EXPECT_EQ(KLVNETprimopt(env, net), 0);
  EXPECT_EQ(KLVNETgetstat(env, net), 10);
  EXPECT_EQ(take(results), "Iteration log . . .\n");
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_NETITLIM, 2100000000), 0);
  int stop = 1;
  EXPECT_EQ(KLVsetterminate(env, &stop), 0);
  EXPECT_EQ(KLVNETprimopt(env, net), 0);
  EXPECT_EQ(KLVNETgetstat(env, net), 13);
  EXPECT_EQ(KLVsetterminate(env, nullptr), 0);
  const auto status_with_supply = [&](int node, double supply) {
    EXPECT_EQ(KLVNETchgsupply(env, net, 1, &node, &supply), 0);
    EXPECT_EQ(KLVNETprimopt(env, net), 0);
    return KLVNETgetstat(env, net);
  };
  EXPECT_EQ(status_with_supply(0, 7), 3);
  EXPECT_EQ(status_with_supply(0, 6), 1);
  // A lower bound above the upper one, and a cheap cycle without capacity.
  const int arc = 1;
  const double bound = 5;
  EXPECT_EQ(KLVNETchgbds(env, net, 1, &arc, "L", &bound), 0);
  EXPECT_EQ(KLVNETprimopt(env, net), 0);
  EXPECT_EQ(KLVNETgetstat(env, net), 3);
  const double none = 0;
  EXPECT_EQ(KLVNETchgbds(env, net, 1, &arc, "L", &none), 0);
  const int from = 2, to = 1;
  const double cost = -6;
  EXPECT_EQ(KLVNETaddarcs(env, net, 1, &from, &to, nullptr, nullptr, &cost, nullptr), 0);
  EXPECT_EQ(KLVNETprimopt(env, net), 0);
  EXPECT_EQ(KLVNETgetstat(env, net), 2);
}

TEST_F(Network, CallsTheCallbackAtLoggedIterations) {
  fill();
  static int calls;
  calls = 0;
  const auto callback = [](KLVenv, void*, int wherefrom, void*) {
    EXPECT_EQ(wherefrom, 3);
    return ++calls;
  };
  EXPECT_EQ(KLVsetnetcallbackfunc(env, callback, nullptr), 0);
  EXPECT_EQ(KLVNETprimopt(env, net), 0);
  EXPECT_EQ(KLVNETgetstat(env, net), 13);
  EXPECT_EQ(calls, 1);
}

TEST_F(Network, LogsByTheNumberOfArcs) {
  // A path of parallel arcs: as many iterations as there are nodes, at least.
  for (const auto& [arcs, interval] : {std::pair(99, 10), std::pair(100, 100)}) {
    std::vector<int> from, to;
    std::vector<double> supply(arcs + 1, 0.0), cost(arcs, 1.0);
    supply.front() = 1;
    supply.back() = -1;
    for (int a = 0; a < arcs; ++a) {
      from.push_back(a);
      to.push_back(a + 1);
    }
    ASSERT_EQ(KLVNETcopynet(env, net, 1, arcs + 1, supply.data(), nullptr, arcs, from.data(),
                            to.data(), nullptr, nullptr, cost.data(), nullptr),
              0);
    (void)take(results);
    ASSERT_EQ(KLVNETprimopt(env, net), 0);
    EXPECT_EQ(KLVNETgetstat(env, net), 1);
    const std::string text = take(results);
    EXPECT_EQ(text.find("Iteration:    10   ") != std::string::npos, interval == 10);
    EXPECT_NE(text.find("Iteration:     0   Infeasibility     = "), std::string::npos);
    ASSERT_GT(KLVNETgetitcnt(env, net), 20);
  }
}

TEST_F(Network, EditsKeepDataAndBasisTogether) {
  fill();
  ASSERT_EQ(KLVNETprimopt(env, net), 0);
  const double supply[] = {1, -1};
  const char* names[] = {"u", nullptr};
  EXPECT_EQ(KLVNETaddnodes(env, net, 2, supply, names), 0);
  int index = -1;
  EXPECT_EQ(KLVNETgetnodeindex(env, net, "n6", &index), 0);
  EXPECT_EQ(index, 5);
  EXPECT_EQ(KLVNETgetnodeindex(env, net, "x", &index), 1210);
  EXPECT_EQ(KLVNETgetarcindex(env, net, "a1", &index), 1219);
  const int from[] = {4, 5}, to[] = {5, 0};
  EXPECT_EQ(KLVNETaddarcs(env, net, 2, from, to, nullptr, nullptr, nullptr, nullptr), 0);
  int arc = 6, one = 1, two = 2;
  EXPECT_EQ(KLVNETchgarcnodes(env, net, 1, &arc, &one, &two), 0);
  EXPECT_EQ(KLVNETchgname(env, net, 'a', 6, "last"), 0);
  EXPECT_EQ(KLVNETgetarcindex(env, net, "last", &index), 0);
  EXPECT_EQ(index, 6);
  int begin[6], arcs[16], count = 0, surplus = 0;
  EXPECT_EQ(KLVNETgetnodearcs(env, net, &count, begin, arcs, 16, &surplus, 0, 5), 0);
  EXPECT_EQ(count, 14);
  EXPECT_EQ(std::vector<int>(arcs + begin[1], arcs + begin[2]), (std::vector<int>{0, 2, 4, 6}));
  EXPECT_EQ(KLVNETgetnodearcs(env, net, &count, begin, arcs, 3, &surplus, 0, 5), 1207);
  EXPECT_EQ(surplus, -11);
  // Node 1 goes with its arcs; arc 1 by its own mark.
  int nodes[] = {0, 1, 0, 0, 0, 0}, gone[] = {0, 1, 0, 0, 0, 0, 0};
  EXPECT_EQ(KLVNETdelset(env, net, nodes, gone), 0);
  EXPECT_EQ(std::vector<int>(nodes, nodes + 6), (std::vector<int>{0, -1, 1, 2, 3, 4}));
  EXPECT_EQ(std::vector<int>(gone, gone + 7), (std::vector<int>{-1, -1, -1, 0, -1, 1, -1}));
  EXPECT_EQ(KLVNETgetnumarcs(env, net), 2);
  int codes[2], roots[5];
  EXPECT_EQ(KLVNETgetbase(env, net, codes, roots), 0);
  EXPECT_EQ(std::count(codes, codes + 2, 1) + std::count(roots, roots + 5, 1), 5);
  EXPECT_EQ(KLVNETdelnodes(env, net, 3, 4), 0);
  EXPECT_EQ(KLVNETgetnumnodes(env, net), 3);
  EXPECT_EQ(KLVNETgetnumarcs(env, net), 1);
  EXPECT_EQ(KLVNETdelarcs(env, net, 0, 0), 0);
  EXPECT_EQ(KLVNETprimopt(env, net), 0);
  EXPECT_EQ(KLVNETgetstat(env, net), 3);
}

TEST_F(Network, RefusesBadArguments) {
  fill();
  const Image before = image();
  double value = 1, array[8];
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const int bad = 7, good = 0;
  const char* const null_name = nullptr;
  EXPECT_EQ(KLVNETaddnodes(env, net, -1, nullptr, nullptr), 1003);
  EXPECT_EQ(KLVNETaddarcs(env, net, 1, nullptr, &good, nullptr, nullptr, nullptr, nullptr), 1004);
  EXPECT_EQ(KLVNETchgsupply(env, net, 1, &bad, &value), 1230);
  EXPECT_EQ(KLVNETaddarcs(env, net, 1, &good, &bad, nullptr, nullptr, nullptr, nullptr), 1230);
  EXPECT_EQ(KLVNETchgobj(env, net, 1, &bad, &value), 1231);
  EXPECT_EQ(KLVNETchgarcname(env, net, 1, &good, &null_name), 1224);
  EXPECT_EQ(KLVNETchgname(env, net, 'x', 0, "y"), 1003);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_DATACHECK, 1), 0);
  EXPECT_EQ(KLVNETchgobj(env, net, 1, &good, &nan), 1225);
  EXPECT_EQ(KLVNETchgbds(env, net, 1, &good, "x", &value), 1229);
  EXPECT_EQ(KLVNETchgobjsen(env, net, 2), 1003);
  EXPECT_EQ(image(), before);
  (void)take(errors);
  EXPECT_EQ(KLVNETgetlb(env, net, array, -1, 9), 1200);
  EXPECT_EQ(take(errors),
            "KELVO Error  1205: KLVNETgetlb: 'begin' value -1 is less than 0.\n"
            "KELVO Error  1206: KLVNETgetlb: 'end' value 9 is greater than 4.\n"
            "KELVO Error  1200: Index is outside range of valid values.\n");
  EXPECT_EQ(KLVNETgetx(env, net, array, 0, 4), 1217);
  KLVnet none = nullptr;
  EXPECT_EQ(KLVNETfreeprob(env, &none), 0);
  EXPECT_EQ(KLVNETfreeprob(env, nullptr), 1004);
  EXPECT_EQ(KLVNETprimopt(env, none), 1009);
  int status = 0;
  KLVenv other = KLVopenKELVO(&status);
  EXPECT_EQ(KLVNETprimopt(other, net), 1806);
  EXPECT_EQ(KLVcloseKELVO(&other), 0);
  EXPECT_EQ(KLVNETfreeprob(env, &net), 0);
  EXPECT_EQ(net, nullptr);
}

}  // namespace
