#include "mip/solve/node_log.h"

#include <gtest/gtest.h>

#include "support/recording_sink.h"

using namespace kelvo;
using kelvo::test::RecordingSink;

namespace {

class Names final : public ColumnNames {
 public:
  const char* column_name(int column) const override { return column == 3 ? "open_w" : "?"; }
};

constexpr const char* kHeader =
    "\n        Nodes                                         Cuts/\n"
    "   Node  Left     Objective  IInf  Best Integer     Best Node    ItCnt     Gap\n\n";

class NodeLogTest : public testing::Test {
 protected:
  NodeLog log(const NodeLogSettings& settings) { return NodeLog(sink, settings, names); }
  RecordingSink sink;
  Names names;
};

TEST_F(NodeLogTest, NodesIncumbentsAndCuts) {
  NodeLogSettings settings;
  settings.interval = 10;
  settings.sense = -1.0;
  NodeLog log = this->log(settings);
  using Kind = NodeResult::Kind;
  log.node({0, 2, 1e75, -120.5, 7}, {Kind::value, -120.5, 4}, {});
  log.incumbent({3, 2, -100, -118, 40}, {Kind::integral, -100, 0}, false, {});
  log.incumbent({3, 2, -110, -118, 40}, {Kind::heuristic, -110, 0}, true, {});
  log.node({9, 2, -110, -118, 60}, {Kind::cutoff, 1e75, 0}, {});  // not due
  log.count_cuts(0, 3);
  log.node({10, 2, -110, -118, 60}, {Kind::infeasible, 1e75, 0}, {});
  log.count_cuts(0, 3);
  log.count_cuts(5, 1);
  log.node({20, 0, -110, -118, 1e9}, {Kind::value, -2e7, 1}, {});
  log.node({30, 0, -0.001, -1e36, 61}, {Kind::value, 1e75, 1}, {});
  EXPECT_EQ(
      sink.all(),
      std::string(kHeader) +
          "      0     2      120.5000     4                    120.5000        7         \n"
          "*     3     2      integral     0      100.0000      118.0000       40   18.00%\n"
          "*     3+    2                          110.0000      118.0000       40    7.27%\n"
          "     10     2    infeasible            110.0000     Covers: 3       60    7.27%\n"
          "     20     0   2.00000e+07     1      110.0000       Cuts: 4    1e+09    7.27%\n"
          "     30     0        cutoff              0.0010                     61    0.00%\n");
}

TEST_F(NodeLogTest, TraditionalSearchShowsTheBranch) {
  NodeLogSettings settings;
  settings.traditional = true;
  settings.interval = 1;
  NodeLog log = this->log(settings);
  log.node({1, 1, 1e75, 5, 9}, {NodeResult::Kind::value, 6, 2}, {3, 'D', 1, 0, 1});
  EXPECT_NE(sink.all().find("     Gap         Variable B NodeID Parent  Depth\n\n"),
            std::string::npos);
  EXPECT_NE(sink.all().find("open_w           D      1      0      1\n"), std::string::npos);
}

TEST_F(NodeLogTest, DisplayOneTellsIncumbentsAlone) {
  NodeLogSettings settings;
  settings.display = 1;
  NodeLog log = this->log(settings);
  log.node({0, 2, 1e75, 3, 7}, {NodeResult::Kind::value, 3, 4}, {});
  log.incumbent({5, 2, 4.5, -1e75, 40}, {NodeResult::Kind::integral, 4.5, 0}, false, {});
  EXPECT_EQ(sink.all(),
            "\nNode log . . .\n"
            "Best integer =   4.500000e+00  Node =       5  Best node = -inf\n");
}

}  // namespace
