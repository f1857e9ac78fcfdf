#include "mip/presolve/components.h"

#include "mip/presolve/disjoint_sets.h"

namespace kelvo {

Vector<Component> find_components(const MipProblem& mip) {
  DisjointSets sets(mip.num_cols());
  const SparseMatrix& rows = mip.lp.rows;
  for (int i = 0; i < mip.num_rows(); ++i) {
    for (int k = rows.start[i] + 1; k < rows.start[i + 1]; ++k) {
      sets.join(rows.index[rows.start[i]], rows.index[k]);
    }
  }
  for (const OrderedSet& set : mip.sets) {
    for (const int j : set.members) sets.join(set.members[0], j);
  }
  for (const Indicator& indicator : mip.indicators) {
    const int first = rows.start[indicator.row];
    if (first < rows.start[indicator.row + 1]) sets.join(indicator.binary, rows.index[first]);
  }
  Vector<Component> components;
  Vector<int> place(mip.num_cols(), -1);  // of the component, by its representative
  for (int j = 0; j < mip.num_cols(); ++j) {
    int& at = place[sets.find(j)];
    if (at < 0) {
      at = static_cast<int>(components.size());
      components.emplace_back();
    }
    components[at].cols.push_back(j);
  }
  if (components.size() < 2) return {};
  for (int i = 0; i < mip.num_rows(); ++i) {
    if (rows.start[i] == rows.start[i + 1]) continue;
    components[place[sets.find(rows.index[rows.start[i]])]].rows.push_back(i);
  }
  std::stable_sort(
      components.begin(), components.end(),
      [](const Component& a, const Component& b) { return a.cols.size() < b.cols.size(); });
  return components;
}

}  // namespace kelvo
