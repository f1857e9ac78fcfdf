// Solution files and MIP-start files through the interface.
#include <algorithm>

#include "file_fixture.h"
#include "random_lp.h"

namespace {

constexpr const char* kDeclaration = "<?xml version = \"1.0\" standalone=\"yes\"?>\n";

class SolutionFiles : public FileTest {
 protected:
  int read(const std::string& file) { return KLVreadcopysol(env, lp, file.c_str()); }
  int read_text(const std::string& text) { return read(put("read.sol", text)); }
  std::string written() {
    return KLVsolwrite(env, lp, path("written.sol").c_str()) == 0 ? text_of("written.sol") : "none";
  }
  std::vector<int> stored_basis() {
    std::vector<int> basis(KLVgetnumcols(env, lp) + KLVgetnumrows(env, lp), -1);
    if (KLVgetbase(env, lp, basis.data(), basis.data() + KLVgetnumcols(env, lp)) != 0) return {};
    return basis;
  }
  /// max 3x + 2y,  x + y <= 4,  x + 3y <= 7,  0 <= x <= 3: (3, 1), duals 2 and 0.
  void load_named() {
    const std::string model =
        put("m.lp",
            "max obj: 3 x + 2 y\nst\n cap: x + y <= 4\n low: x + 3 y <= 7\nbounds\n x <= 3\nend\n");
    ASSERT_EQ(KLVreadcopyprob(env, lp, model.c_str(), nullptr), 0);
    ASSERT_EQ(KLVchgprobname(env, lp, "test"), 0);
  }
};

TEST_F(SolutionFiles, ABasicSolutionToTheByte) {
  load_named();
  EXPECT_EQ(KLVsolwrite(env, lp, path("a.sol").c_str()), 1217);
  const char* odd[] = {"a<b&\"", "tab\there"};
  const int columns[] = {0, 1};
  ASSERT_EQ(KLVchgcolname(env, lp, 2, columns, odd), 0);
  set(KLV_PARAM_PREIND, 0);
  ASSERT_EQ(KLVprimopt(env, lp), 0);
  const std::string iterations = std::to_string(KLVgetitcnt(env, lp));
  const std::string text = written();
  const std::size_t kappa = text.find("\n  kappa=\"");
  ASSERT_NE(kappa, std::string::npos) << text;
  EXPECT_EQ(text.substr(0, kappa), kDeclaration +
                                       std::string("<KELVOSolution version=\"1.2\">\n"
                                                   " <header\n"
                                                   "  problemName=\"test\"\n"
                                                   "  objectiveValue=\"11\"\n"
                                                   "  solutionTypeValue=\"1\"\n"
                                                   "  solutionTypeString=\"basic\"\n"
                                                   "  solutionStatusValue=\"1\"\n"
                                                   "  solutionStatusString=\"optimal\"\n"
                                                   "  solutionMethodString=\"primal\"\n"
                                                   "  primalFeasible=\"1\"\n"
                                                   "  dualFeasible=\"1\"\n"
                                                   "  simplexIterations=\"") +
                                       iterations +
                                       "\"\n"
                                       "  writeLevel=\"1\"/>\n"
                                       " <quality\n"
                                       "  epRHS=\"1e-06\"\n"
                                       "  epOpt=\"1e-06\"\n"
                                       "  maxPrimalInfeas=\"0\"\n"
                                       "  maxDualInfeas=\"0\"\n"
                                       "  maxPrimalResidual=\"0\"\n"
                                       "  maxDualResidual=\"0\"\n"
                                       "  maxX=\"3\"\n"
                                       "  maxPi=\"2\"\n"
                                       "  maxSlack=\"1\"\n"
                                       "  maxRedCost=\"1\"");
  EXPECT_EQ(text.substr(text.find("/>\n", kappa)),
            "/>\n"
            " <linearConstraints>\n"
            "  <constraint name=\"cap\" index=\"0\" status=\"LL\" slack=\"0\" dual=\"2\"/>\n"
            "  <constraint name=\"low\" index=\"1\" status=\"BS\" slack=\"1\" dual=\"0\"/>\n"
            " </linearConstraints>\n"
            " <variables>\n"
            "  <variable name=\"a&lt;b&amp;&quot;\" index=\"0\" status=\"UL\" value=\"3\" "
            "reducedCost=\"1\"/>\n"
            "  <variable name=\"tab&#9;here\" index=\"1\" status=\"BS\" value=\"1\" "
            "reducedCost=\"0\"/>\n"
            " </variables>\n"
            "</KELVOSolution>\n");
  // Discrete columns: there are none.
  set(KLV_PARAM_WRITELEVEL, 2);
  EXPECT_NE(written().find(" <variables>\n </variables>\n"), std::string::npos);
}

TEST_F(SolutionFiles, WhatIsWrittenIsReadBack) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    random_lp(seed, {.m = 6, .n = 9, .degenerate = seed % 2 == 0}).load(env, lp);
    if (seed % 3 == 0) KLVchgname(env, lp, 'c', 2, "a name of its own");
    if (seed % 5 == 0) KLVchgname(env, lp, 'c', 3, "x5");  // of another column
    ASSERT_EQ(KLVlpopt(env, lp), 0);
    const double before = objective();
    const std::vector<int> basis = stored_basis();
    const std::string file = path(seed % 4 == 0 ? "b.sol.gz" : "b.sol");
    ASSERT_EQ(KLVsolwrite(env, lp, file.c_str()), 0);
    ASSERT_EQ(KLVcopybase(env, lp, std::vector<int>(9, 0).data(), std::vector<int>(6, 1).data()),
              0);
    take(warnings);
    ASSERT_EQ(read(file), 0);
    EXPECT_EQ(take(warnings), "Warning:  File contains basis.  Basis is loaded.\n");
    EXPECT_EQ(stored_basis(), basis);
    ASSERT_EQ(KLVlpopt(env, lp), 0);
    EXPECT_EQ(KLVgetitcnt(env, lp), 0);
    EXPECT_NEAR(objective(), before, 1e-9 * std::fabs(before) + 1e-9);
    // The values alone lead to the same point.
    set(KLV_PARAM_ADVIND, 0);
    ASSERT_EQ(read(file), 0);
    EXPECT_EQ(take(warnings),
              "Warning:  File contains basis.  Basis not loaded.\n"
              "Warning:  Advanced indicator is not set.\n");
    set(KLV_PARAM_ADVIND, 1);
    ASSERT_EQ(KLVlpopt(env, lp), 0);
    EXPECT_NEAR(objective(), before, 1e-9 * std::fabs(before) + 1e-9);
  }
}

TEST_F(SolutionFiles, EntriesThatCannotBeUsedAreSkippedWithWarnings) {
  load_named();
  std::string entries;
  for (int k = 0; k < 25; ++k) entries += "<variable name=\"no&lt;ne\" value=\"1\"/>\n";
  ASSERT_EQ(read_text("<KELVOSolution><variables>\n"
                      "<variable name=\"x\" index=\"1\" value=\"1\" other=\"2\"/>\n"
                      "<variable name=\"x\" value=\"2\"/>\n"
                      "<variable index=\"7\" value=\"1\"/>\n"
                      "<variable value=\"1\"/>\n"
                      "<variable index=\"0\"/>\n"
                      "<variable name=\"y\" value=\"1e999\"/>\n"
                      "</variables><linearConstraints>\n"
                      "<constraint name=\"cap\" slack=\"1\"/><constraint name=\"cap\"/>\n"
                      "<constraint index=\"1\"/><constraint index=\"1\"/>\n"
                      "<constraint index=\"-2\"/><constraint name=\"rim\"/>\n"
                      "</linearConstraints>\n"
                      "<quadraticConstraints><constraint index=\"9\"/></quadraticConstraints>\n" +
                      entries + "</KELVOSolution>"),
            0);
  const std::string told = take(warnings);
  const std::string start =
      "Warning, line 3: repeated entry for 'x'.\n"
      "Warning, line 4: Variable index '7' out of range.\n"
      "Warning, line 5: Variable index '-1' out of range.\n"
      "Warning, line 6: repeated entry for variable index 0.\n"
      "Warning, line 7: '1e999' is not a number.\n"
      "Warning, line 9: repeated entry for 'cap'.\n"
      "Warning, line 10: repeated entry for index 1.\n"
      "Warning, line 11: Constraint index '-2' out of range.\n"
      "Warning, line 11: 'rim' is not a constraint.\n"
      "Warning, line 14: 'no<ne' is not a variable.\n";
  EXPECT_EQ(told.substr(0, start.size()), start);
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 9 + 20 + 1);
  EXPECT_NE(told.find("\n5 warnings not printed.\n"), std::string::npos);

  ASSERT_EQ(read_text("<KELVOSolutions><KELVOSolution/><KELVOSolution/><KELVOSolution/>"
                      "</KELVOSolutions>"),
            0);
  EXPECT_EQ(take(warnings),
            "Warning: more than one KELVOSolution element in file, only first one processed.\n"
            "Warning: no values read, no start loaded.\n");
  ASSERT_EQ(read_text("<html><variable index='0' value='1'/></html>"), 0);
  EXPECT_EQ(take(warnings), "Warning: no values read, no start loaded.\n");
}

TEST_F(SolutionFiles, AFailedReadLeavesTheStartAlone) {
  load_named();
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  const std::vector<int> basis = stored_basis();
  const std::string good = written();
  std::string bomb = "<!DOCTYPE a [\n<!ENTITY e0 \"ha\">\n";
  for (int k = 1; k < 40; ++k) {
    const std::string before = "&e" + std::to_string(k - 1) + ";";
    bomb += "<!ENTITY e" + std::to_string(k) + " \"" + before + before + "\">\n";
  }
  struct Case {
    std::string text;
    const char* error;
  };
  for (const Case& c : std::initializer_list<Case>{
           {"", "line 1: no element found"},
           {good.substr(0, good.size() / 2), nullptr},
           {"<a/>\n<more/>", "line 2: junk after document element"},
           {"<KELVOSolution>\n<variables>\n</KELVOSolution>", "line 3: mismatched tag"},
           {"<a>\n&unknown;</a>", "line 2: undefined entity"},
           {bomb + "]>\n<a name=\"&e39;\"/>", "line 2: entity declarations are not accepted"},
           {"<!DOCTYPE a SYSTEM \"/etc/passwd\" [\n<!ATTLIST a b CDATA \"c\">]><a/>",
            "line 2: attribute declarations are not accepted"},
       }) {
    SCOPED_TRACE(c.text.substr(0, 60));
    EXPECT_EQ(read_text(c.text), 1425);
    const std::string told = take(errors);
    const std::string expected =
        "KELVO Error  1425: XML parsing error at " + (c.error != nullptr ? c.error : std::string());
    EXPECT_EQ(told.substr(0, expected.size()), expected);
    EXPECT_EQ(stored_basis(), basis);
  }
  EXPECT_EQ((Codes{read(path("missing")), KLVreadcopysol(env, lp, nullptr), read(""),
                   KLVreadcopysol(env, nullptr, "a"), KLVsolwrite(env, lp, ""),
                   KLVsolwrite(env, lp, path("none/a.sol").c_str()),
                   KLVsolwritesolnpool(env, lp, -1, "a"), KLVsolwritesolnpoolall(env, lp, "a"),
                   KLVmstwrite(env, lp, "a"), KLVwritemipstarts(env, lp, "a", 0, 0),
                   KLVreadcopymipstarts(env, lp, "a")}),
            (Codes{1423, 1421, 1421, 1009, 1421, 1422, 3024, 3024, 3003, 3003, 3003}));
}

// Bytes are what counts, and UTF-16 becomes UTF-8.
TEST_F(SolutionFiles, EncodingsAndNamesOfAnyBytes) {
  const std::string long_name = std::string(100, '<') + "end";
  const std::vector<std::string> names = {
      "caf\xc3\xa9",   "\xe9t\xe9",     "x\x01y", "tab\tline\nend",
      long_name + "1", long_name + "2", "a'b>c",  " "};
  const int count = static_cast<int>(names.size());
  std::vector<const char*> texts;
  for (const std::string& name : names) texts.push_back(name.c_str());
  ASSERT_EQ(KLVnewcols(env, lp, count, std::vector<double>(count, 1).data(), nullptr, nullptr,
                       nullptr, texts.data()),
            0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  const std::string text = written();
  EXPECT_NE(text.find("name=\"caf\xc3\xa9\" index"), std::string::npos);
  EXPECT_NE(text.find("<variable index=\"2\""), std::string::npos) << "no XML can hold \\x01";
  const std::size_t cut = text.find("&lt;&lt;");
  EXPECT_EQ(text.find('"', cut) - cut, 252u) << "whole entities within 255 characters";
  const auto expect_read = [&](const std::string& file_text) {
    const std::vector<int> upper(count, 2);
    ASSERT_EQ(KLVcopybase(env, lp, upper.data(), upper.data()), 0);
    take(warnings);
    ASSERT_EQ(read_text(file_text), 0) << take(errors);
    EXPECT_EQ(take(warnings), "Warning:  File contains basis.  Basis is loaded.\n");
    EXPECT_EQ(stored_basis(), std::vector<int>(count, 0));
  };
  expect_read(text);
  expect_read("\xef\xbb\xbf" + text);
  for (const char* encoding : {"utf-8", "iso-8859-1", "us-ascii", "unheard-of"}) {
    expect_read("<?xml version=\"1.0\" encoding=\"" + std::string(encoding) + "\"?>" +
                text.substr(text.find('\n')));
  }
  const std::string small =
      "<KELVOSolution><variable name=\"caf\xe9\" value=\"2\"/></KELVOSolution>";
  for (const bool big : {false, true}) {
    std::string wide = big ? "\xfe\xff" : "\xff\xfe";
    for (const char c : small) {
      if (big) wide += '\0';
      wide += c;
      if (!big) wide += '\0';
    }
    ASSERT_EQ(read_text(wide), 0) << take(errors);
    EXPECT_EQ(take(warnings), "");
  }
}

class StartFiles : public SolutionFiles {
 protected:
  StartFiles() {
    const char* const names[] = {"n", "b", "x"};
    EXPECT_EQ(KLVnewcols(env, lp, 3, nullptr, nullptr, nullptr, "IBC", names), 0);
  }
  std::string starts() {
    const int last = KLVgetnummipstarts(env, lp) - 1;
    return KLVwritemipstarts(env, lp, path("w.mst").c_str(), 0, last) == 0 ? text_of("w.mst")
                                                                           : "none";
  }
};

TEST_F(StartFiles, AreWrittenToTheByteAndReadBack) {
  EXPECT_EQ(starts(), "none");
  EXPECT_EQ(take(errors), error_line(3020, "No MIP start exists"));
  const int begin[] = {0, 3}, columns[] = {0, 1, 2, 0}, effort[] = {0, 4};
  const double values[] = {3, 0, 0.125, -2};
  const char* const names[] = {"first & best", "second"};
  ASSERT_EQ(KLVaddmipstarts(env, lp, 2, 4, begin, columns, values, effort, names), 0);
  const auto start = [](const std::string& name, int index, int effort_level, int level,
                        const std::string& variables) {
    return " <KELVOSolution version=\"1.2\">\n  <header\n   problemName=\"test\"\n"
           "   solutionName=\"" +
           name + "\"\n   solutionIndex=\"" + std::to_string(index) +
           "\"\n   MIPStartEffortLevel=\"" + std::to_string(effort_level) + "\"\n   writeLevel=\"" +
           std::to_string(level) + "\"/>\n  <variables>\n" + variables +
           "  </variables>\n </KELVOSolution>\n";
  };
  const auto file = [&](int level, const std::string& one, const std::string& two) {
    return kDeclaration + std::string("<KELVOSolutions version=\"1.2\">\n") +
           start("first &amp; best", 0, 0, level, one) + start("second", 1, 4, level, two) +
           "</KELVOSolutions>\n";
  };
  const std::string n = "   <variable name=\"n\" index=\"0\" value=\"3\"/>\n";
  const std::string b = "   <variable name=\"b\" index=\"1\" value=\"0\"/>\n";
  const std::string x = "   <variable name=\"x\" index=\"2\" value=\"0.125\"/>\n";
  const std::string second = "   <variable name=\"n\" index=\"0\" value=\"-2\"/>\n";
  EXPECT_EQ(starts(), file(2, n + b, second)) << "discrete columns";
  set(KLV_PARAM_WRITELEVEL, 3);
  EXPECT_EQ(starts(), file(3, n + x, second)) << "non-zero values";
  set(KLV_PARAM_WRITELEVEL, 4);
  EXPECT_EQ(starts(), file(4, n, second));
  set(KLV_PARAM_WRITELEVEL, 1);
  const std::string all = starts();
  EXPECT_EQ(all, file(1, n + b + x, second));

  ASSERT_EQ(KLVdelmipstarts(env, lp, 0, 1), 0);
  ASSERT_EQ(KLVreadcopymipstarts(env, lp, path("w").c_str()), 0) << "the extension is added";
  EXPECT_EQ(starts(), all);
  ASSERT_EQ(KLVreadcopymipstart(env, lp, path("w.mst").c_str()), 0);
  EXPECT_EQ(KLVgetnummipstarts(env, lp), 4) << "starts with equal names are both kept";
  EXPECT_EQ(take(warnings) + take(errors), "");
  EXPECT_EQ(KLVwritemipstarts(env, lp, "a", 0, 4), 1200);
  EXPECT_NE(take(errors).find("KLVwritemipstarts"), std::string::npos);
}

TEST_F(StartFiles, SolutionsAndFilesWithoutValues) {
  ASSERT_EQ(read_text("<KELVOSolution><header solutionName=\"plan\"/><variables>"
                      "<variable name=\"n\" status=\"BS\" value=\"2\"/></variables>"
                      "</KELVOSolution>"),
            0);
  EXPECT_EQ(take(warnings), "");
  int index = -1;
  EXPECT_EQ(KLVgetmipstartindex(env, lp, "plan", &index), 0);
  const char* none = "Warning: no MIP start values read, no MIP start loaded.\n";
  ASSERT_EQ(read_text("<KELVOSolution/>"), 0);
  EXPECT_EQ(take(warnings), none);
  const std::string two = put("two.mst",
                              "<KELVOSolutions><KELVOSolution><header MIPStartEffortLevel='-1'/>"
                              "<variable index='0' value='1'/></KELVOSolution><KELVOSolution>"
                              "<header solutionName=''/></KELVOSolution></KELVOSolutions>");
  ASSERT_EQ(KLVreadcopymipstarts(env, lp, two.c_str()), 0);
  EXPECT_EQ(take(warnings), "Warning, line 1: '-1' is not an effort level.\n");
  EXPECT_EQ(KLVgetnummipstarts(env, lp), 2) << "one of the two has no values";
  ASSERT_EQ(KLVreadcopymipstarts(env, lp, put("e.mst", "<KELVOSolutions/>").c_str()), 0);
  EXPECT_EQ(take(warnings), none);
  EXPECT_EQ(KLVreadcopymipstarts(env, lp, put("f.mst", "<KELVOSolutions>").c_str()), 1425);
  EXPECT_EQ(KLVgetnummipstarts(env, lp), 2);
  EXPECT_EQ((Codes{KLVsolwrite(env, lp, "a"), KLVmstwrite(env, lp, "a"),
                   KLVmstwritesolnpool(env, lp, 0, "a"), KLVmstwritesolnpoolall(env, lp, "a"),
                   KLVreadcopymipstarts(env, lp, nullptr)}),
            (Codes{1217, 1217, 3024, 3024, 1421}));
}

}  // namespace
