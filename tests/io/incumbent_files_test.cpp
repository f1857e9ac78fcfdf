// Files of a mixed-integer problem's solution, which these tests put there themselves.
#include <gtest/gtest.h>
#include <kelvo.h>

#include <cmath>

#include "api/frame/problem_frame.h"
#include "io/number_format.h"
#include "support/temporary_folder.h"

namespace kelvo {
namespace {

class IncumbentFiles : public ::testing::Test {
 protected:
  /// n integer, b binary, x continuous, with a row, a quadratic and an indicator constraint.
  IncumbentFiles() {
    int status = -1;
    env = KLVopenKELVO(&status);
    lp = KLVcreateprob(env, &status, "plan & more");
    const std::string model =
        folder.put("m.lp",
                   "max n + x\nst\n r: n + x <= 9\n q: [ x^2 ] <= 4\n i: b = 1 -> x <= 1\n"
                   "bounds\n n <= 5\ngen\n n\nbin\n b\nend\n");
    EXPECT_EQ(KLVreadcopyprob(env, lp, model.c_str(), nullptr), 0);
    EXPECT_EQ(KLVchgprobname(env, lp, "plan & more"), 0);
    KLVchannel warning_channel = nullptr;
    KLVgetchannels(env, nullptr, &warning_channel, nullptr, nullptr);
    KLVaddfuncdest(env, warning_channel, &warnings,
                   [](void* to, const char* text) { *static_cast<std::string*>(to) += text; });
  }
  ~IncumbentFiles() override { KLVcloseKELVO(&env); }

  /// As if the search had found n, x, b = 4.75, 2.25, 0 and stopped at its node limit.
  void put_incumbent() {
    Problem& problem = *to_problem(lp);
    problem.solution_status = 105;
    problem.incumbent.present = problem.incumbent.has_values = true;
    problem.incumbent.objective = 7;
    problem.incumbent.x = {4.75, 2.25, 0};
    problem.incumbent.nodes = 12;
    problem.incumbent.iterations = 345;
  }
  std::string written(int (*write)(KLVenv, KLVprob, const char*)) {
    EXPECT_EQ(write(env, lp, folder.path("w").c_str()), 0);
    return folder.text_of("w");
  }

  KLVenv env = nullptr;
  KLVprob lp = nullptr;
  std::string warnings;
  TemporaryFolder folder;
};

TEST_F(IncumbentFiles, SolutionToTheByte) {
  EXPECT_EQ(KLVsolwrite(env, lp, "a"), 1217);
  put_incumbent();
  const std::string text = written(KLVsolwrite);
  EXPECT_EQ(text,
            "<?xml version = \"1.0\" standalone=\"yes\"?>\n"
            "<KELVOSolution version=\"1.2\">\n"
            " <header\n"
            "  problemName=\"plan &amp; more\"\n"
            "  solutionName=\"incumbent\"\n"
            "  solutionIndex=\"-1\"\n"
            "  objectiveValue=\"7\"\n"
            "  solutionTypeValue=\"3\"\n"
            "  solutionTypeString=\"primal\"\n"
            "  solutionStatusValue=\"105\"\n"
            "  solutionStatusString=\"node limit exceeded\"\n"
            "  solutionMethodString=\"mip\"\n"
            "  primalFeasible=\"1\"\n"
            "  dualFeasible=\"0\"\n"
            "  MIPNodes=\"12\"\n"
            "  MIPIterations=\"345\"\n"
            "  writeLevel=\"1\"/>\n"
            " <quality\n"
            "  epInt=\"1e-05\"\n"
            "  epRHS=\"1e-06\"\n"
            "  maxIntInfeas=\"0.25\"\n"
            "  maxPrimalInfeas=\"0\"\n"
            "  maxX=\"4.75\"\n"
            "  maxSlack=\"2\"\n"
            "  maxQCSlackInfeas=\"1.0625\"\n"
            "  maxQCSlack=\"1.0625\"/>\n"
            " <linearConstraints>\n"
            "  <constraint name=\"r\" index=\"0\" slack=\"2\"/>\n"
            " </linearConstraints>\n"
            " <variables>\n"
            "  <variable name=\"n\" index=\"0\" value=\"4.75\"/>\n"
            "  <variable name=\"x\" index=\"1\" value=\"2.25\"/>\n"
            "  <variable name=\"b\" index=\"2\" value=\"0\"/>\n"
            " </variables>\n"
            " <quadraticConstraints>\n"
            "  <constraint name=\"q\" index=\"0\" slack=\"-1.0625\"/>\n"
            " </quadraticConstraints>\n"
            " <indicatorConstraints>\n"
            "  <constraint name=\"i\" index=\"0\" slack=\"-1.25\"/>\n"
            " </indicatorConstraints>\n"
            "</KELVOSolution>\n");
  EXPECT_EQ(KLVsolwritesolnpool(env, lp, -1, folder.path("p").c_str()), 0);
  EXPECT_EQ(folder.text_of("p"), text);
  EXPECT_EQ(KLVsolwritesolnpool(env, lp, 0, folder.path("p").c_str()), 3024);
  to_problem(lp)->incumbent.has_values = false;
  EXPECT_EQ(KLVsolwrite(env, lp, "a"), 3023);
}

TEST_F(IncumbentFiles, StartsInBothForms) {
  put_incumbent();
  const std::string start =
      "<?xml version = \"1.0\" standalone=\"yes\"?>\n"
      "<KELVOSolutions version=\"1.2\">\n"
      " <KELVOSolution version=\"1.2\">\n"
      "  <header\n"
      "   problemName=\"plan &amp; more\"\n"
      "   solutionName=\"incumbent\"\n"
      "   solutionIndex=\"-1\"\n"
      "   MIPStartEffortLevel=\"0\"\n"
      "   writeLevel=\"2\"/>\n"
      "  <variables>\n"
      "   <variable name=\"n\" index=\"0\" value=\"4.75\"/>\n"
      "   <variable name=\"b\" index=\"2\" value=\"0\"/>\n"
      "  </variables>\n"
      " </KELVOSolution>\n"
      "</KELVOSolutions>\n";
  EXPECT_EQ(written(KLVmstwrite), start);
  EXPECT_EQ(KLVmstwritesolnpool(env, lp, -1, folder.path("p").c_str()), 0);
  EXPECT_EQ(folder.text_of("p"), start);
  ASSERT_EQ(KLVreadcopymipstarts(env, lp, folder.path("p").c_str()), 0);
  int index = -1;
  EXPECT_EQ(KLVgetmipstartindex(env, lp, "incumbent", &index), 0);

  ASSERT_EQ(KLVsetintparam(env, 1102, 0), 0);
  to_problem(lp)->incumbent.x = {-4.123456789012, 1e19, 9e-14};
  EXPECT_EQ(written(KLVmstwrite),
            "NAME          plan & more    MIP Start\n"
            "    n                          -4.123456789\n"
            "    x                  \n"
            "    b                                     0\n"
            "ENDATA\n");
  ASSERT_EQ(KLVdelnames(env, lp), 0);
  put_incumbent();
  EXPECT_NE(written(KLVmstwrite).find("\n    x1" + std::string(33, ' ') + "4.75\n"),
            std::string::npos);
  EXPECT_EQ(warnings, "Default variable names x1, x2 ... to be created.\n");
  to_problem(lp)->incumbent = Incumbent();
  EXPECT_EQ(KLVmstwrite(env, lp, "a"), 3020);
}

TEST(GeneralNumbers, AreThoseOfPrintf) {
  std::uint64_t state = 1;
  char expected[64], text[kNumberText];
  const auto expect_same = [&](double x) {
    std::snprintf(expected, sizeof expected, "%.15g", x);
    EXPECT_EQ(format_general(x, text), static_cast<int>(std::string(expected).size()));
    EXPECT_STREQ(text, expected);
  };
  for (const double x : {0.0, 1.0, -1.5, 1e-4, 1e-5, 9.9999999999999995e-5, 1e15, 999999999999999.9,
                         1e22, 1e100, 5e-324, -1e-300, 0.1, 1e14, 123456789012345678.0}) {
    expect_same(x);
  }
  for (int k = 0; k < 20000; ++k) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    const double mantissa = static_cast<double>(state >> 11) / 9007199254740992.0 - 0.5;
    expect_same(std::ldexp(mantissa, static_cast<int>(state % 160) - 80));
  }
}

}  // namespace
}  // namespace kelvo
