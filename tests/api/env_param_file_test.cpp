// Parameter files: what is written, what is read back, and that a refused file changes nothing.
#include <cmath>
#include <cstdlib>
#include <limits>

#include "env_fixture.h"
#include "support/temporary_folder.h"

namespace {

class ParameterFiles : public EnvironmentTest {
 protected:
  std::string path(const std::string& name) const { return folder.path(name); }
  /// Reads a file of this text.
  int read(const std::string& text) {
    return KLVreadcopyparam(env, folder.put("read.prm", text).c_str());
  }
  const std::string header_ = "KELVO Parameter File Version " + std::string(KLVversion(env)) + "\n";
  int read_line(const std::string& line) { return read(header_ + line); }

  TemporaryFolder folder;
};

TEST_F(ParameterFiles, HoldWhatDiffersFromTheDefaults) {
  const std::string file = path("w.prm");
  EXPECT_EQ(KLVwriteparam(env, file.c_str()), 0);
  EXPECT_EQ(text_of_file(file), header_);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_BARORDER, 3), 0);
  EXPECT_EQ(KLVsetintparam(env, 1053, 1), 0);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_MIPCBREDLP, 0), 0);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_EPOPT, 1e-7), 0);
  EXPECT_EQ(KLVsetdblparam(env, 1090, -2.5), 0);
  EXPECT_EQ(KLVsetstrparam(env, KLV_PARAM_WORKDIR, "a \"b\" c"), 0);
  EXPECT_EQ(KLVwriteparam(env, file.c_str()), 0);
  const std::string start = "KLV_PARAM_EPOPT                  1.00000000000000e-07   \n";
  const std::string hidden_1053 = "1053                             1\n";
  const std::string middle =
      "KLV_PARAM_WORKDIR                \"a \"b\" c\"\n"
      "1090                             -2.50000000000000e+00  \n";
  const std::string reduced = "KLV_PARAM_MIPCBREDLP             0\n";
  const std::string end = "KLV_PARAM_BARORDER               3\n";
  EXPECT_EQ(text_of_file(file), header_ + start + hidden_1053 + middle + reduced + end);
  EXPECT_EQ(KLVEwriteparam(env, file.c_str()), 0);
  EXPECT_EQ(text_of_file(file), header_ + start + middle + end);
  EXPECT_EQ(get_int(KLV_PARAM_MIPCBREDLP), 0);

  EXPECT_EQ(KLVwriteparam(env, nullptr), 1421);
  EXPECT_EQ(KLVwriteparam(env, ""), 1421);
  take(errors);
  EXPECT_EQ(KLVwriteparam(env, "/no such directory/x.prm"), 1422);
  EXPECT_EQ(take(errors),
            "KELVO Error  1422: Could not open file '/no such directory/x.prm' for writing.\n");
  EXPECT_EQ(KLVwriteparam(env, "/dev/full"), 1422);
}

TEST_F(ParameterFiles, ReadBackToTheSameSettingsPlainAndCompressed) {
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ITLIM, 77), 0);
  EXPECT_EQ(KLVsetintparam(env, 1119, 4), 0);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_OBJLLIM, -1.25e300), 0);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_EPRHS, std::numeric_limits<double>::quiet_NaN()), 0);
  EXPECT_EQ(KLVsetstrparam(env, KLV_PARAM_WORKDIR, "with \"quotes\" and  blanks "), 0);
  EXPECT_EQ(KLVsetstrparam(env, 1106, ""), 0);
  for (const char* name : {"round.prm", "round.prm.gz", "round.prm.bz2"}) {
    const std::string file = path(name);
    ASSERT_EQ(KLVwriteparam(env, file.c_str()), 0);
    EXPECT_EQ(KLVsetdefaults(env), 0);
    EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 2), 0);  // not in the file
    ASSERT_EQ(KLVreadcopyparam(env, file.c_str()), 0) << errors;
    EXPECT_EQ(get_int(KLV_PARAM_ADVIND), 1);
    EXPECT_EQ(get_int(KLV_PARAM_ITLIM), 77);
    EXPECT_EQ(get_int(1119), 4);
    EXPECT_EQ(get_double(KLV_PARAM_OBJLLIM), -1.25e300);
    EXPECT_TRUE(std::isnan(get_double(KLV_PARAM_EPRHS)));
    EXPECT_EQ(get_text(KLV_PARAM_WORKDIR), "with \"quotes\" and  blanks ");
    EXPECT_EQ(get_text(1106), "");
  }
  // The extension may be left out.
  const std::string file = path("short.prm");
  EXPECT_EQ(KLVwriteparam(env, file.c_str()), 0);
  EXPECT_EQ(KLVreadcopyparam(env, file.substr(0, file.size() - 4).c_str()), 0);
  EXPECT_EQ(errors + warnings, "");
}

TEST_F(ParameterFiles, FormsOfLinesAndValues) {
  EXPECT_EQ(read_line("\n  KLV_PARAM_ITLIM\t12\r\n1001 +2 and a remark\nKLV_PARAM_EPOPT 1E-1"), 0);
  EXPECT_EQ(get_int(KLV_PARAM_ITLIM), 12);
  EXPECT_EQ(get_int(KLV_PARAM_ADVIND), 2);
  EXPECT_EQ(take(errors), "");
  EXPECT_EQ(read_line("KLV_PARAM_ITLIM 10.5\nKLV_PARAM_EPOPT +.01\n"), 0);
  EXPECT_EQ(get_int(KLV_PARAM_ITLIM), 10);
  EXPECT_EQ(get_double(KLV_PARAM_EPOPT), 0.01);
  EXPECT_EQ(take(warnings),
            "Warning, line 2: non-integral value specified for integer parameter.\n");
  EXPECT_EQ(read("KELVO Parameter File Version 1.2.3\nKLV_PARAM_ITLIM 11\n"), 0);
  EXPECT_EQ(get_int(KLV_PARAM_ITLIM), 11);
  EXPECT_NE(warnings.find("(1.2.3) does not match\n          this KELVO version ("),
            std::string::npos);
  // Later lines win; the echo starts with the line that switches it on.
  EXPECT_EQ(read_line("1001 2\n1075 1\n1001 0\n"), 0);
  EXPECT_EQ(get_int(KLV_PARAM_ADVIND), 0);
  EXPECT_EQ(results, "Parameter 1075 set to 1.\nParameter 1001 set to 0.\n");
}

TEST_F(ParameterFiles, ARefusedFileChangesNothing) {
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 2), 0);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_TILIM, 60.0), 0);
  const std::string too_long(600, 'x');
  const struct {
    std::string text;
    int code;
    std::string message;
  } cases[] = {
      {"", 1661, "Line 1:  Missing or invalid header"},
      {"KLV_PARAM_ADVIND 0\n", 1661, "Line 1:  Missing or invalid header"},
      {"KELVO Parameter File Version\n", 1661, "Line 1:  Missing or invalid header"},
      {"KLV_PARAM_ADVIND 5", 1015, "Line 2: Parameter value too big"},
      {"\nKLV_PARAM_ADVIND -99999999999", 1014, "Line 3: Parameter value too small"},
      {"KLV_PARAM_NONE 5", 1028, "Line 2: Bad parameter name to KELVO parameter routine"},
      {"1011 5", 1013, "Line 2: Bad parameter number to KELVO parameter routine"},
      {"99999999999 5", 1013, "Line 2: Bad parameter number to KELVO parameter routine"},
      {"KLV_PARAM_ADVIND", 1660, "Line 2:  Not enough entries"},
      {"KLV_PARAM_EPOPT   \t", 1660, "Line 2:  Not enough entries"},
      {"KLV_PARAM_WORKDIR tmp", 1660, "Line 2:  Not enough entries"},
      {"KLV_PARAM_WORKDIR \"tmp", 1660, "Line 2:  Not enough entries"},
      {"KLV_PARAM_WORKDIR \"" + too_long + "\"", 1026, "Line 2: String parameter is too long"},
      {"KLV_PARAM_ADVIND one", 1434, "Line 2: Couldn't convert 'one' to a number"},
      {"KLV_PARAM_ITLIM 1e3", 1434, "Line 2: Couldn't convert '1e3' to a number"},
      {"KLV_PARAM_EPOPT 1,5", 1434, "Line 2: Couldn't convert '1,5' to a number"},
      {"KLV_PARAM_POLISHTIME 10\nKLV_PARAM_POLISHAFTERNODE 5", 1807,
       "Line 3: Incompatible parameters"},
      {std::string(5000, 'y'), 1465, "Line 2: Line longer than limit of 4096 characters"},
  };
  for (const auto& c : cases) {
    const bool bad_header = c.code == 1661;
    EXPECT_EQ(bad_header ? read(c.text) : read_line(c.text + "\n"), c.code) << c.text;
    char code[8];
    std::snprintf(code, sizeof code, "%5d", c.code);
    EXPECT_EQ(take(errors), std::string("KELVO Error ") + code + ": " + c.message + ".\n");
    // The good line before a bad one does not count either.
    EXPECT_EQ(read_line("KLV_PARAM_ITLIM 3\n1001 7\n"), 1015);
    take(errors);
    EXPECT_EQ(get_int(KLV_PARAM_ADVIND), 2);
    EXPECT_EQ(get_int(KLV_PARAM_ITLIM), 2100000000);
    EXPECT_EQ(get_double(KLV_PARAM_TILIM), 60.0);
    EXPECT_EQ(get_double(KLV_PARAM_POLISHTIME), 0.0);
  }
  EXPECT_EQ(KLVreadcopyparam(env, "/no such directory/x"), 1423);
  EXPECT_EQ(take(errors),
            "KELVO Error  1423: Could not open file '/no such directory/x' for reading.\n");
  EXPECT_EQ(KLVreadcopyparam(env, nullptr), 1004);
}

TEST_F(ParameterFiles, ScreenOutputFollowsTheFile) {
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(read_line("KLV_PARAM_SCRIND 1\n"), 0);
  KLVmsgstr(results_channel, "heard\n");
  EXPECT_EQ(read_line("KLV_PARAM_SCRIND 2\n"), 1015);
  EXPECT_EQ(read_line(""), 0);
  KLVmsgstr(results_channel, "unheard\n");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(),
            "heard\nKELVO Error  1015: Line 2: Parameter value too big.\n");
}

TEST_F(ParameterFiles, TheEnvironmentVariableNamesOneForOpening) {
  const std::string file =
      folder.put("override.prm", header_ + "KLV_PARAM_ADVIND 2\nKLV_PARAM_SCRIND 1\n");
  ASSERT_EQ(setenv("ZEPH_KELVO_PARAMETER_FILE", file.c_str(), 1), 0);
  ::testing::internal::CaptureStdout();
  int status = -1;
  KLVenv other = KLVopenKELVO(&status);
  folder.put("override.prm", header_ + "KLV_PARAM_ADVIND 9\n");
  KLVenv third = KLVopenKELVO(&status);
  unsetenv("ZEPH_KELVO_PARAMETER_FILE");
  const std::string reading = "Reading override parameter file '" + file + "' ";
  EXPECT_EQ(::testing::internal::GetCapturedStdout(),
            reading + "succeeded.\n" + reading + "failed.\n");
  std::swap(env, other);
  EXPECT_EQ(get_int(KLV_PARAM_ADVIND), 2);
  EXPECT_EQ(get_int(KLV_PARAM_SCRIND), 0);
  std::swap(env, other);
  EXPECT_EQ(KLVcloseKELVO(&other), 0);
  EXPECT_EQ(KLVcloseKELVO(&third), 0);
}

}  // namespace
