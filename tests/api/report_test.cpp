// Solution reports through the interface.
#include <cstring>
#include <map>

#include "file_fixture.h"
#include "random_lp.h"

namespace {

class Reports : public FileTest {
 protected:
  std::string text() {
    return KLVtxtsolwrite(env, lp, path("a.txt").c_str()) == 0 ? text_of("a.txt") : "none";
  }
  /// The lines of the entries, from the marker to the status.
  std::vector<std::string> heads() {
    std::vector<std::string> found;
    const std::string all = text();
    for (std::size_t at = 0; at < all.size(); at = all.find('\n', at) + 1) {
      const std::string line = all.substr(at, all.find('\n', at) - at);
      if (line.size() == 109 && line[7] >= '0' && line[7] <= '9')
        found.push_back(line.substr(1, 28));
    }
    return found;
  }
};

// A row of each sense, nonbasic or basic, columns at, between and without bounds.
TEST_F(Reports, TextToTheByte) {
  const std::string model =
      put("m.lp",
          "max profit: 3 x + 2 y - z\nst\n cap: x + y <= 4\n low: x + 3 y >= -7\n rng: y + z >= 1\n"
          " eq: z - w = 0.125\nbounds\n x <= 3\n z free\n w = 0\nend\n");
  ASSERT_EQ(KLVreadcopyprob(env, lp, model.c_str(), nullptr), 0);
  const int ranged = 2;
  const double range = 6;
  ASSERT_EQ(KLVchgsense(env, lp, 1, &ranged, "R"), 0);
  ASSERT_EQ(KLVchgrngval(env, lp, 1, &ranged, &range), 0);
  ASSERT_EQ(KLVchgprobname(env, lp, "report"), 0);
  EXPECT_EQ(KLVtxtsolwrite(env, lp, path("a.txt").c_str()), 1261);
  set(KLV_PARAM_PREIND, 0);
  ASSERT_EQ(KLVprimopt(env, lp), 0);
  char iteration[40];
  std::snprintf(iteration, sizeof iteration, " ITERATION        %-5d\n", KLVgetitcnt(env, lp));
  const std::string blanks(20, ' '), none = "            NONE";
  EXPECT_EQ(text(),
            " PROBLEM NAME     report                        \n"
            " DATA    NAME     " +
                blanks +
                "\n"
                " OBJECTIVE VALUE  10.875        \n"
                " STATUS           OPTIMAL SOLN     \n" +
                std::string(iteration) +
                "\n OBJECTIVE        profit               (MAX)\n"
                " RHS              " +
                blanks + "\n RANGES           " + blanks + "\n BOUNDS           " + blanks +
                "\n\n"
                " SECTION 1 - ROWS\n\n"
                "  NUMBER  ......ROW....... AT  ...ACTIVITY...  SLACK ACTIVITY  ..LOWER LIMIT."
                "  ..UPPER LIMIT.  .DUAL ACTIVITY\n\n"
                "       1  profit           BS          10.875         -10.875" +
                none + none +
                "               1\n"
                "       2  cap              UL               4               0" +
                none +
                "               4              -2\n"
                "       3  low              BS               6             -13              -7" +
                none +
                "               0\n"
                "       4  rng              BS           1.125          -0.125               1"
                "               7               0\n"
                "       5  eq               EQ           0.125               0           0.125"
                "           0.125               1\n\n"
                " SECTION 2 - COLUMNS\n\n"
                "  NUMBER  .....COLUMN..... AT  ...ACTIVITY...  ..INPUT COST..  ..LOWER LIMIT."
                "  ..UPPER LIMIT.  .REDUCED COST.\n\n"
                "       6  x                UL               3               3               0"
                "               3               1\n"
                "       7  y                BS               1               2               0" +
                none +
                "               0\n"
                "       8  z                BS           0.125              -1" +
                none + none +
                "               0\n"
                "       9  w                EQ               0               0               0"
                "               0              -1\n\n");
}

TEST_F(Reports, StatusesMarkersAndNames) {
  // Ties make multipliers of 0: 'A'. Names are made up or cut.
  const double obj[] = {1, 0}, rhs[] = {2}, ones[] = {1, 1}, upper[] = {5, 1e20};
  const int begin[] = {0}, columns[] = {0, 1};
  ASSERT_EQ(KLVnewcols(env, lp, 2, obj, nullptr, upper, nullptr, nullptr), 0);
  ASSERT_EQ(KLVaddrows(env, lp, 0, 1, 2, rhs, "L", begin, columns, ones, nullptr, nullptr), 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_EQ(heads(), (std::vector<std::string>{
                         "      1                   BS", "      2  c1               BS",
                         "      3  x1               LL", "A     4  x2               LL"}));
  EXPECT_EQ(take(warnings),
            "Default variable names x1, x2 ... being created.\n"
            "Default row names c1, c2 ... being created.\n");
  const char* long_names[] = {"a_name_of_seventeen", "short"};
  ASSERT_EQ(KLVchgcolname(env, lp, 2, columns, long_names), 0);
  ASSERT_EQ(KLVchgname(env, lp, 'r', 0, "a row of seventeen"), 0);
  EXPECT_EQ(heads()[2], "      3  a_name_of_sevent LL");
  EXPECT_EQ(take(warnings),
            "Warning, row names truncated to 16 characters.\n"
            "Warning, column names truncated to 16 characters.\n");
  // No point satisfies both: what is violated shows "**".
  const double far[] = {9};
  ASSERT_EQ(KLVaddrows(env, lp, 0, 1, 2, far, "G", begin, columns, ones, nullptr, nullptr), 0);
  set(KLV_PARAM_PREIND, 0);
  ASSERT_EQ(KLVprimopt(env, lp), 0);
  ASSERT_EQ(KLVgetstat(env, lp), KLV_STATUS_INFEASIBLE);
  EXPECT_NE(text().find(" STATUS           INFEASIBLE SOLN  \n"), std::string::npos);
  EXPECT_NE(text().find("  **"), std::string::npos);
}

/// The records of a binary report, without their frames.
std::vector<std::string> records(const std::string& bytes) {
  std::vector<std::string> found;
  for (std::size_t at = 0; at + 8 <= bytes.size();) {
    std::uint32_t before = 0, behind = 0;
    std::memcpy(&before, bytes.data() + at, 4);
    if (at + 8 + before > bytes.size()) return {};
    std::memcpy(&behind, bytes.data() + at + 4 + before, 4);
    if (before != 64 || behind != 64) return {};
    found.push_back(bytes.substr(at + 4, before));
    at += 8 + before;
  }
  return found;
}

TEST_F(Reports, TheBinaryFormHoldsTheSolution) {
  for (unsigned seed = 1; seed <= 10; ++seed) {
    random_lp(seed, {.m = 5, .n = 7}).load(env, lp);
    ASSERT_EQ(KLVchgname(env, lp, 'c', 0, "seven_or_more"), 0);
    ASSERT_EQ(KLVlpopt(env, lp), 0);
    ASSERT_EQ(KLVwritesol(env, lp, path("a.bin.gz").c_str(), nullptr), 0);
    ASSERT_EQ(KLVwritesol(env, lp, path("a.bin").c_str(), nullptr), 0);
    const std::vector<std::string> all = records(text_of("a.bin"));
    ASSERT_EQ(all.size(), 1u + 6 + 1 + 1 + 6 + 1 + 1 + 7 + 1);
    EXPECT_EQ(all[0].substr(0, 24), "HSECTIONFIELD   TEXT    ");
    EXPECT_EQ(all[1].substr(0, 16), "PROBLEM test    ");
    const std::string end = "$ENDSEC$" + std::string(56, ' ');
    EXPECT_EQ((std::vector<std::string>{all[7], all[15], all[24]}),
              (std::vector<std::string>{end, end, end}));
    EXPECT_EQ(all[8], "RSECTIONNUMBER  STATUS  ACTIVITYSLACK   LLIMIT  ULIMIT  DUALACT ");
    EXPECT_EQ(all[16], "CSECTIONNUMBER  STATUS  ACTIVITYICOST   LLIMIT  ULIMIT  RCOST   ");
    const auto numbers_of = [&](std::size_t record) {
      std::vector<double> numbers(6);
      std::memcpy(numbers.data(), all[record].data(), 48);
      return numbers;
    };
    EXPECT_EQ(numbers_of(9),
              (std::vector<double>{objective(), -objective(), -1.01e75, 1.01e75, 1, 1}));
    const auto pi = rows(KLVgetpi), ax = rows(KLVgetax), rhs = rows(KLVgetrhs);
    for (int i = 0; i < 5; ++i) {
      const auto row = numbers_of(10 + i);
      EXPECT_EQ((std::vector<double>{row[0], row[1], row[4], row[5]}),
                (std::vector<double>{ax[i], rhs[i] - ax[i], -pi[i], i + 2.0}));
    }
    const auto x = columns(KLVgetx), dj = columns(KLVgetdj), lower = columns(KLVgetlb);
    for (int j = 0; j < 7; ++j) {
      const auto column = numbers_of(17 + j);
      EXPECT_EQ(
          (std::vector<double>{column[0], column[2], column[4], column[5]}),
          (std::vector<double>{x[j], lower[j] <= -1e20 ? -1.01e75 : lower[j], dj[j], j + 7.0}));
    }
    EXPECT_EQ(all[17].substr(56), "seven_or");
    EXPECT_EQ(all[18].substr(56), "x2      ");
  }
}

TEST_F(Reports, WrongCalls) {
  load_small();
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  const std::string file = path("a.txt");
  const auto write = [&](const char* type) { return KLVwritesol(env, lp, file.c_str(), type); };
  EXPECT_EQ(
      (Codes{KLVwritesol(env, lp, nullptr, "TXT"), write("TEXT"), write("lp"), write("txt"),
             write("Bin"), KLVwritesol(env, lp, path("plan").c_str(), nullptr),
             KLVwritesol(env, lp, path("a.sol").c_str(), nullptr), KLVtxtsolwrite(env, lp, ""),
             KLVbinsolwrite(env, lp, nullptr), KLVtxtsolwrite(env, lp, path("none/a.txt").c_str()),
             KLVwritesol(env, nullptr, "a", nullptr)}),
      (Codes{1421, 1424, 1424, 0, 0, 1424, 1424, 1421, 1421, 1422, 1009}));
}

}  // namespace
