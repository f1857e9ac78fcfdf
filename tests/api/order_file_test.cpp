// Priority order files through the interface.
#include <algorithm>

#include "file_fixture.h"

namespace {

class OrderFiles : public FileTest {
 protected:
  OrderFiles() {
    const std::string model =
        put("model.lp",
            "min obj: a + 2 b + 3 c\nst\n r: a + b + c >= 1\nbounds\n a <= 10\n"
            "general\n a\nbinary\n c\nend\n");
    EXPECT_EQ(KLVreadcopyprob(env, lp, model.c_str(), nullptr), 0);
    EXPECT_EQ(KLVchgprobname(env, lp, "test"), 0);
  }
  int read(const std::string& file) { return KLVreadcopyorder(env, lp, file.c_str()); }
  /// The stored order as the file that is written for it.
  std::string stored() {
    return KLVordwrite(env, lp, path("stored.ord").c_str()) == 0 ? text_of("stored.ord") : "none";
  }
};

TEST_F(OrderFiles, LinesAreReadAndWritten) {
  ASSERT_EQ(
      read(put("a.ord", "NAME\n UP c 5\n dn    a   7.9\n    b         2100000000 text\nENDATA\n")),
      0);
  const std::string expected =
      "NAME          test   Priority Order\n"
      " UP c                             5\n"
      " DN a                             7\n"
      "    b                    2100000000\n"
      "ENDATA\n";
  EXPECT_EQ(stored(), expected);
  ASSERT_EQ(read(path("stored")), 0) << "the extension .ord is added";
  EXPECT_EQ(stored(), expected);
  EXPECT_EQ(take(warnings) + take(errors), "");

  const char* long_name[] = {"a_name_of_twenty_two_c"};
  const int index[] = {2};
  ASSERT_EQ(KLVchgcolname(env, lp, 1, index, const_cast<char**>(long_name)), 0);
  EXPECT_NE(stored().find(" UP a_name_of_twenty_two_c            5\n DN a                         "
                          "        7\n"),
            std::string::npos);
}

TEST_F(OrderFiles, RepeatedAndUnknownColumns) {
  std::string text = "NAME\n UP a 1\n UP c 2\n DN a 3\n";
  for (int k = 0; k < 24; ++k) text += " UP none 1\n";
  ASSERT_EQ(read(put("a.ord", text)), 0);
  EXPECT_NE(stored().find("\n DN a                             3\n UP c                 "),
            std::string::npos)
      << "the later line counts, at the place of the earlier one";
  const std::string told = take(warnings);
  EXPECT_EQ(told.substr(0, told.find("Warning, line 6")),
            "Warning, line 4: repeated entry for 'a'.\n"
            "Warning, line 5: 'none' is not a variable.\n");
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 20 + 2);
  EXPECT_NE(told.find("\n5 warnings not printed.\nWarning: 'ENDATA' missing.\n"),
            std::string::npos);

  const std::string before = stored();
  ASSERT_EQ(read(put("none.ord", "NAME\nENDATA\n")), 0);
  EXPECT_EQ(take(warnings), "Warning:  No priority order values read or loaded.\n");
  EXPECT_EQ(stored(), before);
}

TEST_F(OrderFiles, AFailedReadLeavesTheOrderAlone) {
  ASSERT_EQ(read(put("good", "NAME\n UP a 1\nENDATA\n")), 0);
  const std::string before = stored();
  struct Case {
    const char* text;
    int code;
    const char* error;
  };
  for (const Case& c : std::initializer_list<Case>{
           {"", 1441, "Line 1: No NAME section"},
           {"\n UP a 1\n", 1441, "Line 2: No NAME section"},
           {"NAME\n ux a 1\n", 3012, "Line 2: Unrecognized direction 'UX'"},
           {"NAME\n x1 5\n", 3012, "Line 2: Unrecognized direction 'X1'"},
           {"NAME\n UP c 1\n DN a -2\n", 3006, "Negative priority entry 1"},
           {"NAME\n UP a 2100000001\n", 1463, "Line 2: Magnitude exceeds integer limit 2100000000"},
           {"NAME\n UP a one\n", 1434, "Line 2: Couldn't convert 'one' to a number"},
           {"NAME\n UP a\n", 1434, "Line 2: Couldn't convert '' to a number"},
       }) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(read(put("bad.ord", c.text)), c.code);
    EXPECT_EQ(take(errors), error_line(c.code, c.error));
    EXPECT_EQ(stored(), before);
  }
  EXPECT_EQ(read(path("missing")), 1423);
  EXPECT_EQ(KLVreadcopyorder(env, lp, nullptr), 1004);
  EXPECT_EQ(KLVreadcopyorder(env, nullptr, "a.ord"), 1009);
  EXPECT_EQ(stored(), before);
}

TEST_F(OrderFiles, WritingNeedsAnOrder) {
  EXPECT_EQ(KLVordwrite(env, lp, path("a.ord").c_str()), 3016);
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_MIPORDTYPE, 2), 0);
  EXPECT_EQ(stored(),
            "NAME          test   Priority Order\n"
            "    a                             2\n"
            "    c                            12\n"
            "ENDATA\n");
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_MIPORDTYPE, 1), 0);
  EXPECT_NE(stored().find("    c                             2\n"), std::string::npos);
  change_cost(0, -3);
  EXPECT_NE(
      stored().find(" a                             1\n    c                             1\n"),
      std::string::npos)
      << "equal costs";
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_MIPORDTYPE, 0), 0);
  EXPECT_EQ(stored(), "none") << "a generated order is not kept";

  ASSERT_EQ(read(put("a.ord", "NAME\n UP a 1\nENDATA\n")), 0);
  take(errors);
  EXPECT_EQ(KLVordwrite(env, lp, nullptr), 1421);
  EXPECT_EQ(KLVordwrite(env, lp, ""), 1421);
  EXPECT_EQ(KLVordwrite(env, lp, path("none/a.ord").c_str()), 1422);
  EXPECT_EQ(KLVordwrite(env, nullptr, "a.ord"), 1009);
  int status = 0;
  KLVprob linear = KLVcreateprob(env, &status, "linear");
  EXPECT_EQ(KLVordwrite(env, linear, path("a.ord").c_str()), 3003);
  EXPECT_EQ(KLVfreeprob(env, &linear), 0);
}

TEST_F(OrderFiles, NamesAloneAreEnoughToRead) {
  const std::string file = put("a.ord", "NAME\n UP two 5\n    one 6\nENDATA\n");
  const char* names[] = {"one", "two"};
  char* const* colnames = const_cast<char**>(names);
  int count = -1, indices[2], priority[2], direction[2];
  const auto ord_read = [&](const std::string& name, int n, char* const* columns) {
    count = -1;
    return KLVordread(env, name.c_str(), n, columns, &count, indices, priority, direction);
  };
  ASSERT_EQ(ord_read(file, 2, colnames), 0);
  ASSERT_EQ(count, 2);
  EXPECT_EQ(indices[0], 1);
  EXPECT_EQ(priority[0], 5);
  EXPECT_EQ(direction[0], 1);
  EXPECT_EQ(indices[1], 0);
  EXPECT_EQ(priority[1], 6);
  EXPECT_EQ(direction[1], 0);
  EXPECT_EQ(ord_read(file, 2, nullptr), 1219);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(ord_read(file, -1, colnames), 1003);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(ord_read(put("bad", "NAME\n UP one 1\n XX one 1\n"), 2, colnames), 3012);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(KLVordread(env, nullptr, 2, colnames, &count, indices, priority, direction), 1004);
  EXPECT_EQ(KLVordread(env, file.c_str(), 2, colnames, nullptr, indices, priority, direction),
            1004);
  EXPECT_EQ(KLVordread(env, file.c_str(), 2, colnames, &count, nullptr, priority, direction), 1004);
}

}  // namespace
