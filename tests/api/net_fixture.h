// A network of four nodes in an open environment, and everything its queries say.
#pragma once

#include <vector>

#include "file_fixture.h"

class NetworkTest : public FileTest {
 protected:
  NetworkTest() {
    int status = -1;
    net = KLVNETcreateprob(env, &status, "net");
    EXPECT_EQ(status, 0);
  }

  /// s -> a, b -> t with capacities 4, cheap over a; 6 units from s to t. The optimum costs 16.
  void fill() {
    const double supply[] = {6, 0, 0, -6};
    const int from[] = {0, 0, 1, 2, 1}, to[] = {1, 2, 3, 3, 2};
    const double low[] = {0, 0, 0, 0, 0}, up[] = {4, 4, 4, 4, 1e20}, cost[] = {1, 2, 1, 2, 5};
    EXPECT_EQ(KLVNETcopynet(env, net, KLV_MINIMIZE, 4, supply, nullptr, 5, from, to, low, up, cost,
                            nullptr),
              0);
  }

  struct Image {
    int sense = 0;
    std::vector<double> supply, low, up, cost;
    std::vector<int> from, to;
    bool operator==(const Image&) const = default;
  };
  Image image() const { return image_of(net); }
  Image image_of(KLVnet of) const {
    Image result;
    const int nodes = KLVNETgetnumnodes(env, of), arcs = KLVNETgetnumarcs(env, of);
    result.sense = KLVNETgetobjsen(env, of);
    result.supply.resize(nodes + 1);
    EXPECT_EQ(KLVNETgetsupply(env, of, result.supply.data(), 0, nodes - 1), 0);
    for (auto [values, get] :
         {std::pair(&result.low, &KLVNETgetlb), std::pair(&result.up, &KLVNETgetub),
          std::pair(&result.cost, &KLVNETgetobj)}) {
      values->resize(arcs + 1);
      EXPECT_EQ(get(env, of, values->data(), 0, arcs - 1), 0);
    }
    result.from.resize(arcs + 1);
    result.to.resize(arcs + 1);
    EXPECT_EQ(KLVNETgetarcnodes(env, of, result.from.data(), result.to.data(), 0, arcs - 1), 0);
    return result;
  }

  KLVnet net = nullptr;
};
