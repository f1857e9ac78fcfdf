#include "mip/domain/proof_rows.h"

#include <algorithm>

#include "mip/domain/dual_proof.h"

namespace kelvo {

bool ProofRows::add(const LinearProof& proof) {
  if (size() >= most_) remove_useless();
  make_room(rows_, 1);
  const int row = add_proof_row(domain_, proof);
  if (row >= 0) rows_.push_back({row, 0});
  return row >= 0;
}

void ProofRows::remove_useless() {
  const auto uses = [&](const Kept& kept) {
    return domain_.uses_of_row(kept.row) - kept.uses_before;
  };
  Vector<Kept> sorted(rows_);
  std::stable_sort(sorted.begin(), sorted.end(),
                   [&](const Kept& a, const Kept& b) { return uses(a) < uses(b); });
  sorted.resize((sorted.size() + 1) / 2);
  for (const Kept& each : sorted) {
    domain_.remove_row(each.row);
    std::erase_if(rows_, [&](const Kept& kept) { return kept.row == each.row; });
  }
  for (Kept& kept : rows_) kept.uses_before = domain_.uses_of_row(kept.row);
}

}  // namespace kelvo
