// Basis files through the interface.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "file_fixture.h"

namespace {

/// Columns x in [0, 3], y in [-2, 5], z free; rows cap 'L', low 'G', bal 'E', rng 'R'.
class BasisFiles : public FileTest {
 protected:
  BasisFiles() {
    const double obj[] = {-3, -2, 1}, rhs[] = {6, -4, 1, 0}, rng[] = {0, 0, 0, 8};
    const int beg[] = {0, 3, 6}, cnt[] = {3, 3, 2}, ind[] = {0, 1, 3, 0, 1, 2, 2, 3};
    const double val[] = {1, 1, 1, 1, 2, 1, -1, 1};
    const double lb[] = {0, -2, -1e20}, ub[] = {3, 5, 1e20};
    const char* cols[] = {"x", "y", "long_name"};
    const char* rows[] = {"cap", "low", "bal", "rng"};
    EXPECT_EQ(KLVcopylpwnames(env, lp, 3, 4, 1, obj, rhs, "LGER", beg, cnt, ind, val, lb, ub, rng,
                              cols, rows),
              0);
  }
  int read(const std::string& file) { return KLVreadcopybase(env, lp, file.c_str()); }
  int write(const std::string& name) { return KLVmbasewrite(env, lp, path(name).c_str()); }
  /// The stored basis as the file that is written for it, without the first line.
  std::string stored() {
    if (write("stored.bas") != 0) return "none";
    const std::string text = text_of("stored.bas");
    return text.substr(text.find('\n') + 1);
  }
};

TEST_F(BasisFiles, EveryKindOfLine) {
  struct Case {
    const char* lines;
    const char* basis;
  };
  for (const Case& c : std::initializer_list<Case>{
           {"", "ENDATA\n"},
           {" XU x cap\n", " XU x          cap\nENDATA\n"},
           {" xl x cap\n\n* a comment\n UL y\n", " XL x          cap\n UL y\nENDATA\n"},
           // The only bound of the slack of a 'G' row is its upper one.
           {" XL x low\n", " XU x          low\nENDATA\n"},
           {" XL long_name rng\n", " XL long_name  rng\nENDATA\n"},
           // Pairs are made anew.
           {" BS y\n XL x bal\n SR cap 2\n", " XL x          cap\n XL y          bal\nENDATA\n"},
           {" UL x\n LL x\n", "ENDATA\n"},
           {" SC x 3\n SC y -2\n SC long_name 0\n BR cap 1\n", " UL x\nENDATA\n"},
           {" BS x\n SR rng 8\n", " XU x          rng\nENDATA\n"},
           {" BS x\n SR rng 0\n", " XL x          rng\nENDATA\n"},
           {" BS x\n SR cap 0\n BR cap 0\n SR bal 1\n", " XL x          bal\nENDATA\n"},
       }) {
    SCOPED_TRACE(c.lines);
    EXPECT_EQ(read(put("a.bas", std::string("NAME test\n") + c.lines + "ENDATA\n")), 0);
    EXPECT_EQ(stored(), c.basis);
  }
  EXPECT_EQ(take(warnings) + take(errors), "");
}

TEST_F(BasisFiles, AFailedReadLeavesTheBasisAlone) {
  ASSERT_EQ(read(put("good", "NAME\n XL x cap\nENDATA\n")), 0);
  const std::string before = stored();
  struct Case {
    std::string text;
    int code;
    const char* error;
  };
  for (const Case& c : std::initializer_list<Case>{
           {"", 1441, "Line 1: No NAME section"},
           {"* text\nROWS\n", 1441, "Line 2: No NAME section"},
           {"NAME\n XU x cap\n", 1552, "'ENDATA' missing"},
           {"NAME\n XU x cap\nROWS\n", 1552, "'ENDATA' missing"},
           {"NAME\n\n XX x\nENDATA\n", 1551, "Line 3: Unrecognized basis indicator 'XX'"},
           {"NAME\n BSX x\nENDATA\n", 1551, "Line 2: Unrecognized basis indicator 'BSX'"},
           {"NAME\n XU x\nENDATA\n", 1553, "Line 2: Wrong number of entries"},
           {"NAME\n BS\nENDATA\n", 1553, "Line 2: Wrong number of entries"},
           {"NAME\n BS x\nENDATA\n", 1550, "Basis missing some basic values"},
           {"NAME\n SR cap 1\nENDATA\n", 1550, "Basis missing some basic values"},
           {"NAME\n SC x 1.5\nENDATA\n", 1554, "Superbases are not allowed"},
           {"NAME\n SC long_name 2\nENDATA\n", 1554, "Superbases are not allowed"},
           {"NAME\n SC x 1z\nENDATA\n", 1434, "Line 2: Couldn't convert '1z' to a number"},
           {"NAME\n BS " + std::string(600, 'x') + "\nENDATA\n", 1465,
            "Line 2: Line longer than limit of 559 characters"},
       }) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(read(put("bad.bas", c.text)), c.code);
    EXPECT_EQ(take(errors), error_line(c.code, c.error));
    EXPECT_EQ(stored(), before);
  }
  const std::string missing = path("missing.bas.gz");
  EXPECT_EQ(read(missing), 1423);
  EXPECT_EQ(take(errors), error_line(1423, "Could not open file '" + missing + "' for reading"));
  EXPECT_EQ(read(put("bad.bas.gz", "no archive")), 1423);
  EXPECT_EQ(KLVreadcopybase(env, lp, nullptr), 1421);
  EXPECT_EQ(KLVreadcopybase(env, lp, ""), 1421);
  EXPECT_EQ(KLVreadcopybase(env, nullptr, "a.bas"), 1009);
  EXPECT_EQ(stored(), before);
}

TEST_F(BasisFiles, WarningsAreCounted) {
  std::string text = "NAME\n SC x\n BR cap\n XU nothing cap\n XU x nothing\n";
  for (int k = 0; k < 23; ++k) text += " UL none\n";
  for (int k = 0; k < 21; ++k) text += " BR cap\n";
  ASSERT_EQ(read(put("a.bas", text + "ENDATA\n")), 0);
  EXPECT_EQ(stored(), "ENDATA\n") << "a line with an unknown name does not count at all";
  const std::string told = take(warnings);
  EXPECT_EQ(told.substr(0, told.find("Warning, line 6")),
            "Line 2: Missing basic value.\nLine 3: Missing basic value.\n"
            "Warning, line 4: 'nothing' is not a column name.\n"
            "Warning, line 5: 'nothing' is not a row name.\n");
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 20 + 1 + 20 + 1);
  EXPECT_NE(told.find("\n3 warnings not printed.\n5 warnings not printed.\n"), std::string::npos);
}

TEST_F(BasisFiles, WritingNeedsABasis) {
  EXPECT_EQ(write("a.bas"), 1262);
  EXPECT_EQ(take(errors), error_line(1262, "No basis exists"));
  EXPECT_EQ(KLVmbasewrite(env, lp, nullptr), 1421);
  EXPECT_EQ(KLVmbasewrite(env, lp, ""), 1421);
  EXPECT_EQ(KLVmbasewrite(env, nullptr, "a.bas"), 1009);
  ASSERT_EQ(read(put("a", "NAME\n XL x cap\nENDATA\n")), 0);
  EXPECT_EQ(write("none/a.bas"), 1422);
  // Without its row the basic column is one too many.
  take(errors);
  ASSERT_EQ(KLVdelrows(env, lp, 0, 0), 0);
  EXPECT_EQ(write("a.bas"), 1555);
  EXPECT_EQ(take(errors), error_line(1555, "1 extra basic variable(s)"));
}

TEST_F(BasisFiles, AnOptimalBasisNeedsNoIterations) {
  const double best = optimum(lp);
  for (const char* name : {"opt.bas", "opt two.bas.gz"}) {
    SCOPED_TRACE(name);
    ASSERT_EQ(write(name), 0);
    KLVprob other = clone();
    const int index[] = {0};
    const char* again[] = {"x"};
    ASSERT_EQ(KLVchgcolname(env, other, 1, index, const_cast<char**>(again)), 0);
    ASSERT_EQ(KLVreadcopybase(env, other, path(name).c_str()), 0);
    ASSERT_EQ(KLVprimopt(env, other), 0);
    EXPECT_EQ(objective(other), best);
    EXPECT_EQ(KLVgetitcnt(env, other), 0);
    EXPECT_EQ(KLVfreeprob(env, &other), 0);
  }
  const std::string text = text_of("opt.bas");
  char head[80];
  std::snprintf(head, sizeof(head), "NAME          test  Iterations %d  Rows 4  Cols 3\n",
                KLVgetitcnt(env, lp));
  EXPECT_EQ(text.substr(0, text.find('\n') + 1), head);
  EXPECT_EQ(read(path("opt.bas")), 0);
  EXPECT_EQ(stored(), text.substr(text.find('\n') + 1));
}

TEST_F(BasisFiles, ReadingForgetsWhatCopyingForgets) {
  const auto codes = [&] {
    double low[3], high[3], row[4];
    int head[4];
    return std::vector<int>{KLVobjsa(env, lp, 0, 2, low, high), KLVbinvrow(env, lp, 0, row),
                            KLVgetbhead(env, lp, head, row)};
  };
  int columns[3], rows[4];
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  const std::vector<int> solved = codes();
  EXPECT_EQ(solved, (std::vector<int>{0, 0, 0}));
  ASSERT_EQ(write("opt.bas"), 0);
  ASSERT_EQ(KLVgetbase(env, lp, columns, rows), 0);
  ASSERT_EQ(KLVcopybase(env, lp, columns, rows), 0);
  const std::vector<int> copied = codes();
  EXPECT_NE(copied, solved);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  ASSERT_EQ(codes(), solved);
  ASSERT_EQ(read(path("opt.bas")), 0);
  EXPECT_EQ(codes(), copied);
}

TEST_F(BasisFiles, AProblemWithoutNamesUsesTheDefaultOnes) {
  ASSERT_EQ(KLVdelnames(env, lp), 0);
  ASSERT_EQ(read(put("a", "NAME\n XU x2 c4\n UL x1\nENDATA\n")), 0);
  EXPECT_EQ(stored(), " XU x2  c4\n UL x1\nENDATA\n");
}

}  // namespace
