// Every reader and writer of files with each of its allocations failing in turn.
#include "fault/all_or_nothing.h"
#include "support/temporary_folder.h"

namespace {

using kelvo::test::AllocationFaults;
using kelvo::test::Call;
using kelvo::test::kKeepsRoom;

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

class FileFaults : public ::testing::Test {
 protected:
  FileFaults() {
    folder.put("a.lp", kModel);
    folder.put("a.mps", kMps);
    folder.put("linear.lp", "max x + y + z + b + s\nst\n cap: x + y <= 4\n rng: x + z >= 1\nend\n");
    folder.put("a.bas", "NAME\n XL x cap\n UL z\nENDATA\n");
    folder.put("a.sol",
               "<KELVOSolution><header solutionName='a plan'/><linearConstraints>"
               "<constraint name='cap' status='LL'/><constraint name='rng' status='BS'/>"
               "</linearConstraints><variables><variable name='x' status='BS' value='3'/>"
               "<variable name='y' status='LL' value='1'/><variable name='z' status='UL'/>"
               "<variable name='b' status='LL'/><variable name='s' status='LL' value='2'/>"
               "</variables></KELVOSolution>");
    folder.put("a.ord", "NAME\n UP z 1\n    b 2\nENDATA\n");
  }
  std::string path(const char* name) const { return folder.path(name); }
  template <class Use>
  Call on(Use use, const char* file) const {
    return [use, name = path(file)](KLVenv env, KLVprob lp) { return use(env, lp, name.c_str()); };
  }
  static int read(KLVenv env, KLVprob lp, const char* name) {
    return KLVreadcopyprob(env, lp, name, nullptr);
  }
  static int write(KLVenv env, KLVprob lp, const char* name) {
    return KLVwriteprob(env, lp, name, nullptr);
  }
  /// A call on a problem read from a file of the folder, with a basis and an order.
  void sweep(const char* model, const Call& call, AllocationFaults options = {}) {
    const auto fill = [&](KLVenv env, KLVprob lp) {
      int failures = read(env, lp, path(model).c_str());
      failures += KLVreadcopybase(env, lp, path("a.bas").c_str());
      const bool discrete = KLVgetprobtype(env, lp) != 0;
      return failures + KLVreadcopyorder(env, lp, path("a.ord").c_str()) - (discrete ? 0 : 3003);
    };
    kelvo::test::expect_all_or_nothing(fill, {{model, call}}, options);
  }

  TemporaryFolder folder;
};

TEST_F(FileFaults, Reading) {
  sweep("a.lp", on(read, "a.lp"));
  // Room that was made for larger models is given back only when that succeeds.
  sweep("a.lp", on(read, "a.mps"), {.may_survive = true});
  sweep("a.lp", on(KLVreadcopybase, "a.bas"));
  sweep("a.lp", on(KLVreadcopyorder, "a.ord"));
  sweep("a.lp", on(
                    [](KLVenv env, KLVprob, const char* name) {
                      const char* names[] = {"b", "z"};
                      int count, indices[2], priority[2], direction[2];
                      return KLVordread(env, name, 2, const_cast<char**>(names), &count, indices,
                                        priority, direction);
                    },
                    "a.ord"));
}

TEST_F(FileFaults, ReadingStarts) {
  for (const char* model : {"a.lp", "linear.lp"})
    sweep(model, on(KLVreadcopysol, "a.sol"), kKeepsRoom);
  sweep("a.lp", on(KLVreadcopymipstarts, "a.sol"), kKeepsRoom);
}

TEST_F(FileFaults, Writing) {
  for (const char* name : {"b.lp", "b.rlp", "b.mps", "b.rew"}) sweep("a.lp", on(write, name));
  sweep("linear.lp", on(KLVmbasewrite, "b.bas"));
  sweep("a.lp", on(KLVordwrite, "b.ord"));
  const auto solve = [](KLVenv env, KLVprob lp) {
    const double obj[] = {1, 1}, rhs[] = {1}, ones[] = {1, 1};
    const int begin[] = {0}, columns[] = {0, 1};
    return KLVnewcols(env, lp, 2, obj, nullptr, nullptr, nullptr, nullptr) +
           KLVaddrows(env, lp, 0, 1, 2, rhs, "G", begin, columns, ones, nullptr, nullptr) +
           KLVlpopt(env, lp);
  };
  kelvo::test::expect_all_or_nothing(solve, {{"solution", on(KLVsolwrite, "b.sol")},
                                             {"text report", on(KLVtxtsolwrite, "b.txt")},
                                             {"binary report", on(KLVbinsolwrite, "b.bin")}});
}

}  // namespace
