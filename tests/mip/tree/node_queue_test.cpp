#include "mip/tree/node_queue.h"

#include <gtest/gtest.h>

#include <random>

using namespace kelvo;

namespace {

Node node(int id, double bound, double estimate, int depth) {
  Node made;
  made.id = id;
  made.bound = bound;
  made.estimate = estimate;
  for (int k = 0; k < depth; ++k) made.path = NodePath(made.path, {{k, true, 0.0}});
  return made;
}

TEST(NodeQueue, FollowsItsRuleAndKnowsTheLeastBound) {
  std::mt19937 generator(7);
  const auto draw = [&](int k) { return static_cast<int>(generator() % k); };
  for (const NodeSelection rule :
       {NodeSelection::depth_first, NodeSelection::best_bound, NodeSelection::best_estimate}) {
    NodeQueue queue(rule);
    Vector<Node> present;
    for (int step = 0; step < 2000; ++step) {
      const int action = draw(10);
      if (action < 6 || present.empty()) {
        const Node made = node(step, draw(50), draw(50), draw(6));
        present.push_back(made);
        queue.insert(Node(made));
      } else if (action < 9) {
        const bool by_bound = action == 8;
        const Node taken = by_bound ? queue.take_best_bound() : queue.take_first();
        const auto key = [&](const Node& of) {
          if (by_bound || rule == NodeSelection::best_bound) return of.bound;
          return rule == NodeSelection::depth_first ? -1.0 * of.depth() : of.estimate;
        };
        for (const Node& other : present) EXPECT_LE(key(taken), key(other));
        std::erase_if(present, [&](const Node& other) { return other.id == taken.id; });
      } else {
        const double cutoff = draw(100);
        const auto before = present.size();
        std::erase_if(present, [&](const Node& other) { return other.bound >= cutoff; });
        EXPECT_EQ(queue.prune(cutoff), static_cast<int>(before - present.size()));
      }
      ASSERT_EQ(queue.size(), static_cast<int>(present.size()));
      double least = kNoValue;
      for (const Node& other : present) least = std::min(least, other.bound);
      ASSERT_EQ(queue.best_bound(), least);
    }
    while (!queue.empty()) queue.take_first();
    EXPECT_EQ(queue.bytes(), 0u);
  }
}

TEST(NodePath, SharesTailsAndEndsWithoutRecursion) {
  const auto blocks = live_blocks();
  {
    NodePath path;
    for (int k = 0; k < 200000; ++k) path = NodePath(path, {{k, false, 1.0}});
    const NodePath sibling(path.parent(), {{7, true, 0.0}});
    EXPECT_EQ(sibling.depth(), path.depth());
    EXPECT_TRUE(sibling.parent() == path.parent());
    EXPECT_FALSE(sibling == path);
    EXPECT_EQ(path.decisions()[0].variable, 199999);
  }
  EXPECT_EQ(live_blocks(), blocks);
}

}  // namespace
