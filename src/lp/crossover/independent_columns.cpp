#include "lp/crossover/independent_columns.h"

#include <algorithm>

#include "lp/factor/basis_factor.h"

namespace kelvo {

namespace {

// Columns that did not find a place among the first are offered again so often.
constexpr int kRounds = 5;
// No pivot of the selection is smaller than this share of its column's largest entry.
constexpr double kPivotThreshold = 0.1;

}  // namespace

Vector<char> choose_independent(const LpProblem& lp, const Vector<int>& offered) {
  const int n = lp.num_cols, m = lp.num_rows;
  // Column n has no entries: a position that holds it has to be repaired, with a slack.
  SparseMatrix columns = lp.columns;
  columns.start.push_back(columns.start.back());
  ++columns.num_major;
  const int nothing = n, first_slack = n + 1;
  FactorSettings settings;
  settings.markowitz_threshold = kPivotThreshold;
  settings.singularity_limit = (kRounds + 1) * (m + 1);
  BasisFactor factor(columns, settings, nullptr);
  Vector<int> header;
  Vector<BasisRepair> repairs;
  std::size_t next = 0;
  Vector<char> filler(m, 0);  // [rows] the slack came with a repair
  for (int round = 0; round < kRounds && (round == 0 || next < offered.size()); ++round) {
    Vector<int> kept;
    for (const int v : header) {
      if (v < first_slack || !filler[v - first_slack]) kept.push_back(v);
    }
    header.swap(kept);
    while (static_cast<int>(header.size()) < m && next < offered.size()) {
      const int v = offered[next++];
      header.push_back(v < n ? v : v + 1);
    }
    header.resize(m, nothing);
    repairs.clear();
    std::fill(filler.begin(), filler.end(), 0);
    static_cast<void>(factor.factorize(header, true, repairs));
    for (const BasisRepair& repair : repairs) filler[repair.row] = 1;
  }
  Vector<char> chosen(n + m, 0);
  for (const int v : header) {
    if (v != nothing) chosen[v < nothing ? v : v - 1] = 1;
  }
  return chosen;
}

}  // namespace kelvo
