// Every reader and writer of files when the disk is full, when the file breaks off or holds an
// error anywhere, and what they leave behind in the process.
#include <sys/wait.h>

#include <cerrno>
#include <functional>
#include <iterator>
#include <numeric>

#include "file_fixture.h"

namespace {

namespace fs = std::filesystem;

struct Writer {
  const char* extension;
  int (*write)(KLVenv, KLVprob, const char*);
};

constexpr Writer kWriters[] = {
    {".lp", [](KLVenv e, KLVprob p, const char* f) { return KLVwriteprob(e, p, f, nullptr); }},
    {".rlp", [](KLVenv e, KLVprob p, const char* f) { return KLVwriteprob(e, p, f, nullptr); }},
    {".mps", [](KLVenv e, KLVprob p, const char* f) { return KLVwriteprob(e, p, f, nullptr); }},
    {".rew", [](KLVenv e, KLVprob p, const char* f) { return KLVwriteprob(e, p, f, nullptr); }},
    {".bas", KLVmbasewrite},
    {".ord", KLVordwrite},
    {".prm", [](KLVenv e, KLVprob, const char* f) { return KLVwriteparam(e, f); }},
    {".mst", [](KLVenv e, KLVprob p, const char* f) { return KLVwritemipstarts(e, p, f, 0, 0); }},
};

struct Reader {
  const char* extension;
  int (*read)(KLVenv, KLVprob, const char*);
};

constexpr Reader kReaders[] = {
    {".lp", [](KLVenv e, KLVprob p, const char* f) { return KLVreadcopyprob(e, p, f, nullptr); }},
    {".mps", [](KLVenv e, KLVprob p, const char* f) { return KLVreadcopyprob(e, p, f, nullptr); }},
    {".bas", KLVreadcopybase},
    {".ord", KLVreadcopyorder},
    {".prm", [](KLVenv e, KLVprob, const char* f) { return KLVreadcopyparam(e, f); }},
    {".mst", KLVreadcopymipstarts},
};

constexpr const char* kCompressions[] = {"", ".gz", ".bz2"};

class FileFaults : public FileTest {
 protected:
  /// A mixed-integer model of so many columns with a basis, an order and a changed parameter.
  void build(int columns) {
    std::string model = "min obj: x1\nst\n r:", bounds, types, basis = "NAME\n XU x1 r\n",
                order = "NAME\n";
    for (int j = 1; j <= columns; ++j) {
      const std::string name = "x" + std::to_string(j);
      model += " + " + name + "\n";
      bounds += name + " <= 9\n";
      types += " " + name + "\n";
      if (j > 1) basis += " UL " + name + "\n";
      order += " UP " + name + " 3\n";
    }
    model += " >= 1\nbounds\n" + bounds + "general\n" + types + "end\n";
    ASSERT_EQ(KLVreadcopyprob(env, lp, put("model.lp", model).c_str(), nullptr), 0);
    ASSERT_EQ(KLVgetnumcols(env, lp), columns);
    ASSERT_EQ(KLVreadcopybase(env, lp, put("basis.bas", basis + "ENDATA\n").c_str()), 0);
    ASSERT_EQ(KLVreadcopyorder(env, lp, put("order.ord", order + "ENDATA\n").c_str()), 0);
    ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ITLIM, 77), 0);
    std::vector<int> indices(columns);
    std::iota(indices.begin(), indices.end(), 0);
    const std::vector<double> values(columns, 1.5);
    ASSERT_EQ(KLVcopymipstart(env, lp, columns, indices.data(), values.data()), 0);
  }
  /// The full disk under a name of this folder.
  std::string full(const std::string& name) const {
    fs::create_symlink("/dev/full", path(name));
    return path(name);
  }
  static std::ptrdiff_t open_descriptors() {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  }
  static bool no_child_left() { return waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD; }
};

// What fits into the buffers fails when they are emptied at the end, what does not before that.
TEST_F(FileFaults, EveryWriterNoticesAFullDisk) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  for (const int columns : {2, 5000}) {
    build(columns);
    for (const Writer& writer : kWriters) {
      for (const char* compression : kCompressions) {
        const std::string file =
            full("full" + std::to_string(columns) + writer.extension + compression);
        SCOPED_TRACE(file);
        take(errors);
        EXPECT_EQ(writer.write(env, lp, file.c_str()), 1422);
        EXPECT_EQ(take(errors), error_line(1422, "Could not open file '" + file + "' for writing"));
      }
    }
  }
}

TEST_F(FileFaults, NeitherDescriptorsNorProcessesAreLeft) {
  if (!fs::exists("/proc/self/fd")) GTEST_SKIP() << "no /proc here";
  build(5000);
  const std::ptrdiff_t before = open_descriptors();
  const auto expect_clean = [&](const std::string& file, int status, bool good) {
    EXPECT_EQ(status == 0, good) << file << ": " << take(errors);
    EXPECT_EQ(open_descriptors(), before) << file;
    EXPECT_TRUE(no_child_left()) << file;
  };
  for (const Writer& writer : kWriters) {
    for (const char* compression : kCompressions) {
      const std::string name = std::string("a") + writer.extension + compression;
      expect_clean(name, writer.write(env, lp, path(name).c_str()), true);
      expect_clean(name, writer.write(env, lp, path("none/" + name).c_str()), false);
      if (fs::exists("/dev/full")) {
        expect_clean(name, writer.write(env, lp, full("full" + name).c_str()), false);
      }
    }
  }
  for (const Reader& reader : kReaders) {
    build(5000);  // a model that has been read has neither basis nor order
    for (const char* compression : kCompressions) {
      const std::string name = std::string("a") + reader.extension + compression;
      expect_clean(name, reader.read(env, lp, path(name).c_str()), true);
      expect_clean(name, reader.read(env, lp, path("none" + name).c_str()), false);
    }
    // Wrong at its start, with much behind it.
    std::string text = "\x02 wrong\n";
    while (text.size() < (1 << 20)) text += " more of the same that goes on for a while\n";
    const std::string name = std::string("wrong") + reader.extension;
    expect_clean(name, reader.read(env, lp, put(name, text).c_str()), false);
    // Cut off in the middle of the compressed data.
    const std::string half = std::string("a") + reader.extension + ".gz";
    fs::resize_file(path(half), fs::file_size(path(half)) / 2);
    expect_clean(half, reader.read(env, lp, path(half).c_str()), false);
  }
}

// The line of the error, not the one that has been read ahead: with the rest of the file behind it,
// and with more lines before it than one block of the reader holds.
TEST_F(FileFaults, ErrorsNameTheirLineAnywhereInAFile) {
  build(2);
  struct Case {
    int (*read)(KLVenv, KLVprob, const char*);
    const char* name;
    const char* before;
    const char* line;  // may stand any number of times
    const char* wrong;
    const char* after;
    const char* error;  // with %d for the line
  };
  for (const Case& c : std::initializer_list<Case>{
           {kReaders[0].read, "e.lp", "min x\nst\n", "x >= 1\n", "x >= q\n", "end\n",
            "KELVO Error  1615: Line %d: Expected number, found 'q'.\n"},
           {kReaders[0].read, "b.lp", "min x\nst\nx>=1\nbounds\n", "x <= 1\n", "x\n", "end\n",
            "KELVO Error  1621: Line %d: No bound sense.\n"},
           {kReaders[1].read, "e.mps",
            "NAME\nROWS\n N obj\nCOLUMNS\n x obj 1\nRHS\nBOUNDS\n UP b x 4\n", " UP c x 4\n",
            " UP b y 4\n", "ENDATA\n", "KELVO Error  1449: Line %d: 'y' is not a column name.\n"},
           {kReaders[2].read, "e.bas", "NAME\n", " UL x1\n", " UL\n", "ENDATA\n",
            "KELVO Error  1553: Line %d: "},
           {kReaders[3].read, "e.ord", "NAME\n", " UP x1 3\n", " XX x1 3\n", "ENDATA\n",
            "KELVO Error  3012: Line %d: Unrecognized direction 'XX'.\n"},
           {kReaders[5].read, "e.mst", "<KELVOSolutions>\n", "<KELVOSolution></KELVOSolution>\n",
            "<KELVOSolution></variables>\n", "",
            "KELVO Error  1425: XML parsing error at line %d: mismatched tag.\n"},
           {kReaders[4].read, "e.prm", "KELVO Parameter File Version 12.1.0\n",
            "KLV_PARAM_ITLIM 9\n", "KLV_PARAM_NONE 9\n", "", "KELVO Error  1028: Line %d: "},
       }) {
    for (const int lines : {1, 60000}) {
      std::string text = c.before;
      for (int k = 0; k < lines; ++k) text += c.line;
      const auto number = std::count(text.begin(), text.end(), '\n') + 1;
      text += c.wrong;
      for (int k = 0; k < 300; ++k) text += c.line;
      char expected[200];
      std::snprintf(expected, sizeof(expected), c.error, static_cast<int>(number));
      take(errors);
      EXPECT_NE(c.read(env, lp, put(c.name, text + c.after).c_str()), 0) << c.name;
      EXPECT_EQ(take(errors).substr(0, std::string(expected).size()), expected) << c.name;
    }
  }
}

}  // namespace
