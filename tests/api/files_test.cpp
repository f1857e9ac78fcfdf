// Model files through the interface: choice of the format, compression, failures.
#include <cstdio>

#include "file_fixture.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kMps =
    "NAME          small\nROWS\n N  cost\n L  r1\n G  r2\nCOLUMNS\n"
    "    x  cost  1  r1  1\n    x  r2  1\n    y  cost  2  r1  1\n"
    "RHS\n    rhs  r1  4  r2  1\nBOUNDS\n UP bnd  x  3\nENDATA\n";
constexpr const char* kLp =
    "Minimize\n cost: x + 2 y\nSubject To\n r1: x + y <= 4\n r2: x >= 1\nBounds\n x <= 3\nEnd\n";

class ModelFiles : public FileTest {
 protected:
  int read(const std::string& file, const char* type = nullptr) {
    return KLVreadcopyprob(env, lp, file.c_str(), type);
  }
  /// The model of both texts above.
  void expect_small_model() {
    EXPECT_EQ(KLVgetnumrows(env, lp), 2);
    ASSERT_EQ(KLVgetnumcols(env, lp), 2);
    EXPECT_EQ(KLVgetnumnz(env, lp), 3);
    double upper[2], rhs[2];
    EXPECT_EQ(KLVgetub(env, lp, upper, 0, 1), 0);
    EXPECT_EQ(KLVgetrhs(env, lp, rhs, 0, 1), 0);
    EXPECT_EQ(upper[0], 3.0);
    EXPECT_EQ(rhs[0], 4.0);
    int index = -1;
    EXPECT_EQ(KLVgetcolindex(env, lp, "y", &index), 0);
    EXPECT_EQ(index, 1);
  }
  void clear_model() { ASSERT_EQ(KLVdelcols(env, lp, 0, KLVgetnumcols(env, lp) - 1), 0); }
};

TEST_F(ModelFiles, TheFormatFollowsTypeNameOrText) {
  struct Case {
    const char* name;
    const char* text;
    const char* type;
  };
  for (const Case& c :
       {Case{"a.mps", kMps, nullptr}, Case{"A.QPS", kMps, nullptr}, Case{"a.lp", kLp, nullptr},
        Case{"a.Lp", kLp, nullptr}, Case{"wrong.lp", kMps, "mps"}, Case{"wrong.mps", kLp, "lp"},
        Case{"data", kMps, nullptr}, Case{"model.txt", kLp, nullptr}}) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(read(put(c.name, c.text), c.type), 0);
    expect_small_model();
    clear_model();
  }
  EXPECT_EQ(read(put("comment", std::string("* text\n") + kMps)), 0);
  EXPECT_EQ(read(put("blank", std::string(" \n") + kLp)), 0);
  put("added.mps", kMps);
  EXPECT_EQ(read(path("added"), "MPS"), 0);
  EXPECT_EQ(take(errors), "");
}

TEST_F(ModelFiles, CompressedFilesAreReadAndWritten) {
  ASSERT_EQ(read(put("a.mps", kMps)), 0);
  for (const char* name : {"b.mps.gz", "B.MPS.BZ2", "c.lp.Gz", "d.mps.Z", "two words;'.lp.bz2"}) {
    SCOPED_TRACE(name);
    ASSERT_EQ(KLVwriteprob(env, lp, path(name).c_str(), nullptr), 0);
    std::ifstream file(path(name), std::ios::binary);
    EXPECT_TRUE(file.get() != 'N' && file.good()) << "the file is not compressed";
    clear_model();
    ASSERT_EQ(read(path(name)), 0);
    expect_small_model();
  }
  fs::copy_file(path("b.mps.gz"), path("named like nothing"));
  EXPECT_EQ(read(path("named like nothing")), 1424);
}

TEST_F(ModelFiles, AFailedReadLeavesTheProblemAlone) {
  ASSERT_EQ(read(put("a.mps", kMps)), 0);
  ASSERT_EQ(KLVwriteprob(env, lp, path("b.mps.gz").c_str(), nullptr), 0);
  fs::resize_file(path("b.mps.gz"), fs::file_size(path("b.mps.gz")) - 6);
  struct Case {
    std::string file;
    const char* type;
    int code;
    std::string error;
  };
  const std::string missing = path("missing.mps");
  for (const Case& c : std::initializer_list<Case>{
           {missing, nullptr, 1423, "Could not open file '" + missing + "' for reading"},
           {path("b.mps.gz"), nullptr, 1423,
            "Could not open file '" + path("b.mps.gz") + "' for reading"},
           {put("x.gz", "no archive"), "MPS", 1423,
            "Could not open file '" + path("x.gz") + "' for reading"},
           {folder_.path(), "MPS", 1423,
            "Could not open file '" + folder_.path() + "' for reading"},
           {put("empty", ""), nullptr, 1424, "Invalid filetype"},
           {put("empty.mps", ""), nullptr, 1441, "Line 1: No NAME section"},
           {put("other", "What is this?\n"), nullptr, 1424, "Invalid filetype"},
           {put("binary", "\x01\x02"), nullptr, 1424, "Invalid filetype"},
           {put("net.min", "p min 1 1\n"), nullptr, 1538, "Unexpected end of network file"},
           {put("b.sav", "text"), nullptr, 1424, "Invalid filetype"},
           {path("a.mps"), "XYZ", 1424, "Invalid filetype"},
           {path("a.mps"), "", 1424, "Invalid filetype"},
       }) {
    SCOPED_TRACE(c.file);
    EXPECT_EQ(read(c.file, c.type), c.code);
    char line[400];
    std::snprintf(line, sizeof(line), "KELVO Error %5d: %s.\n", c.code, c.error.c_str());
    EXPECT_EQ(take(errors), line);
    expect_small_model();
  }
  EXPECT_EQ(KLVreadcopyprob(env, lp, nullptr, "LP"), 1004);
  EXPECT_EQ(KLVreadcopyprob(env, nullptr, "a.mps", nullptr), 1009);
}

TEST_F(ModelFiles, WritingChoosesTheFormat) {
  ASSERT_EQ(read(put("a.mps", kMps)), 0);
  const auto begins = [&](const std::string& name) {
    std::ifstream file(path(name));
    std::string line;
    std::getline(file, line);
    return line;
  };
  struct Case {
    const char* name;
    const char* type;
    int code;
  };
  for (const Case& c :
       {Case{"x.mps", nullptr, 0}, Case{"x.any", "mps", 0}, Case{"x.LP", nullptr, 0},
        Case{"x.rlp", nullptr, 0}, Case{"x.rew", nullptr, 0}, Case{"x.mps.z", nullptr, 1424},
        Case{"x.lpx", "lpx", 1424}, Case{"a.long", nullptr, 1424}, Case{"x", nullptr, 1424},
        Case{"x.mps", "long", 1424}, Case{"x.sav", nullptr, 1424},
        Case{"none/x.mps", nullptr, 1422}}) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(KLVwriteprob(env, lp, path(c.name).c_str(), c.type), c.code);
  }
  EXPECT_EQ(begins("x.any").substr(0, 4), "NAME");
  EXPECT_EQ(begins("x.mps").substr(0, 4), "NAME");
  EXPECT_EQ(KLVwriteprob(env, lp, nullptr, nullptr), 1421);
  EXPECT_EQ(KLVwriteprob(env, lp, "", "LP"), 1421);
  EXPECT_EQ(KLVmpswrite(env, lp, nullptr), 1421);
  EXPECT_EQ(KLVclpwrite(env, lp, ""), 1421);
  EXPECT_EQ(KLVclpwrite(env, lp, path("conflict.lp").c_str()), 1719);

  int index = -1;
  ASSERT_EQ(KLVmpsrewrite(env, lp, path("generic.mps").c_str()), 0);
  ASSERT_EQ(KLVlpwrite(env, lp, path("own.lp").c_str()), 0);
  ASSERT_EQ(read(path("generic.mps")), 0);
  EXPECT_EQ(KLVgetcolindex(env, lp, "x2", &index), 0);
  ASSERT_EQ(read(path("own.lp")), 0);
  expect_small_model();
}

}  // namespace
