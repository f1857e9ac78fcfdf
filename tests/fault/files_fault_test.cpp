// Every reader and writer of files, with each of its allocations failing in turn: it returns 1001,
// the problem answers as before, and nothing is lost.
#include <kelvo.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "fault/allocation.h"

namespace {

namespace fs = std::filesystem;
using kelvo::test::AllocationFaults;
using kelvo::test::for_each_allocation_failure;

constexpr const char* kModel =
    "max profit: x + 2 y + 3 z + [ x^2 + x*y ] / 2\nst\n cap: x + y <= 4\n rng: x + z >= 1\n"
    " q: y + [ x^2 ] <= 9\n on: b = 1 -> x >= 1\nuser cuts\n u: x <= 9\nlazy constraints\n"
    " l: z <= 9\nbounds\n x <= 3\n y free\n s <= 7\nbin\n b\ngen\n z\nsemi\n s\n"
    "sos\n set: S1:: x:1 y:2\nend\n";
constexpr const char* kMps =
    "NAME small\nOBJSENSE\n MAX\nROWS\n N cost\n L r\n G s\n E q\n L i\nUSERCUTS\n L u\nLAZYCONS\n"
    " G l\nCOLUMNS\n x cost 1 r 1\n x s 1 q 1\n x i 1 u 1\n x l 1\n m 'MARKER' 'INTORG'\n"
    " y cost 1 r 2\n m 'MARKER' 'INTEND'\nRHS\n rhs r 5\nRANGES\n rng r 3\nBOUNDS\n UP bnd y 1\n"
    "SOS\n S1 set\n x 1\n y 2\nQMATRIX\n x x 2\nQCMATRIX q\n x x 1\nINDICATORS\n IF i y "
    "1\nENDATA\n";
constexpr const char* kBasis = "NAME\n XL x cap\n UL z\nENDATA\n";
constexpr const char* kOrder = "NAME\n UP z 1\n    b 2\nENDATA\n";

/// The files that are read; the tests write beside them.
class FolderOfFiles {
 public:
  FolderOfFiles() {
    char pattern[] = "/tmp/kelvo_faults_XXXXXX";
    folder_ = mkdtemp(pattern);
    put("a.lp", kModel);
    put("a.mps", kMps);
    put("linear.lp", "max x + y + z + b + s\nst\n cap: x + y <= 4\n rng: x + z >= 1\nend\n");
    put("a.bas", kBasis);
    put("a.ord", kOrder);
  }
  ~FolderOfFiles() { fs::remove_all(folder_); }
  FolderOfFiles(const FolderOfFiles&) = delete;
  FolderOfFiles& operator=(const FolderOfFiles&) = delete;

  std::string path(const std::string& name) const { return (folder_ / name).string(); }

 private:
  void put(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
  }
  fs::path folder_;
};

class FileFaults : public ::testing::Test {
 protected:
  /// A problem read from a file of the folder, with a basis and an order.
  struct Loaded {
    explicit Loaded(const FolderOfFiles& files, const char* model) : folder(files) {
      int status = -1;
      env = KLVopenKELVO(&status);
      lp = KLVcreateprob(env, &status, "faults");
      EXPECT_EQ(KLVreadcopyprob(env, lp, folder.path(model).c_str(), nullptr), 0);
      EXPECT_EQ(KLVreadcopybase(env, lp, folder.path("a.bas").c_str()), 0);
      const bool discrete = KLVgetprobtype(env, lp) != 0;
      EXPECT_EQ(KLVreadcopyorder(env, lp, folder.path("a.ord").c_str()), discrete ? 0 : 3003);
    }
    ~Loaded() { EXPECT_EQ(KLVcloseKELVO(&env), 0); }
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;

    /// All that the writers say about the problem.
    std::string answers() const {
      std::string text;
      for (const char* name : {"answer.lp", "answer.mps"}) {
        EXPECT_EQ(KLVwriteprob(env, lp, folder.path(name).c_str(), nullptr), 0);
        text += content(folder.path(name));
      }
      const std::string basis = folder.path("answer.bas"), order = folder.path("answer.ord");
      text += KLVmbasewrite(env, lp, basis.c_str()) == 0 ? content(basis) : "no basis";
      text += KLVordwrite(env, lp, order.c_str()) == 0 ? content(order) : "no order";
      return text;
    }
    static std::string content(const std::string& file) {
      std::ifstream stream(file, std::ios::binary);
      std::stringstream text;
      text << stream.rdbuf();
      return text.str();
    }

    const FolderOfFiles& folder;
    KLVenv env;
    KLVprob lp;
  };

  template <class Run>
  void sweep(const char* model, Run run, AllocationFaults options = {}) {
    const std::string before = Loaded(folder, model).answers();
    for_each_allocation_failure([&] { return Loaded(folder, model); },
                                [&](Loaded& loaded) { return run(loaded.env, loaded.lp); },
                                [&](Loaded& loaded) { EXPECT_EQ(loaded.answers(), before); },
                                options);
  }
  std::string path(const char* name) const { return folder.path(name); }

  FolderOfFiles folder;
};

TEST_F(FileFaults, Reading) {
  sweep("a.lp", [&](KLVenv env, KLVprob lp) {
    return KLVreadcopyprob(env, lp, path("a.lp").c_str(), nullptr);
  });
  // Room that was made for larger models is given back only when that succeeds.
  AllocationFaults options;
  options.may_survive = true;
  sweep(
      "a.lp",
      [&](KLVenv env, KLVprob lp) {
        return KLVreadcopyprob(env, lp, path("a.mps").c_str(), nullptr);
      },
      options);
  sweep("a.lp",
        [&](KLVenv env, KLVprob lp) { return KLVreadcopybase(env, lp, path("a.bas").c_str()); });
  sweep("a.lp",
        [&](KLVenv env, KLVprob lp) { return KLVreadcopyorder(env, lp, path("a.ord").c_str()); });
  sweep("a.lp", [&](KLVenv env, KLVprob) {
    const char* names[] = {"b", "z"};
    int count, indices[2], priority[2], direction[2];
    return KLVordread(env, path("a.ord").c_str(), 2, const_cast<char**>(names), &count, indices,
                      priority, direction);
  });
}

TEST_F(FileFaults, Writing) {
  for (const char* name : {"b.lp", "b.rlp", "b.mps", "b.rew"}) {
    sweep("a.lp", [&](KLVenv env, KLVprob lp) {
      return KLVwriteprob(env, lp, path(name).c_str(), nullptr);
    });
  }
  sweep("linear.lp",
        [&](KLVenv env, KLVprob lp) { return KLVmbasewrite(env, lp, path("b.bas").c_str()); });
  sweep("a.lp",
        [&](KLVenv env, KLVprob lp) { return KLVordwrite(env, lp, path("b.ord").c_str()); });
}

}  // namespace
