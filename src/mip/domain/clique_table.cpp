#include "mip/domain/clique_table.h"

namespace kelvo {

CliqueTable::CliqueTable(const MipProblem& mip) : rank_(mip.num_cols(), -1) {
  int binaries = 0;
  for (int j = 0; j < mip.num_cols(); ++j) {
    if (mip.is_binary(j)) rank_[j] = binaries++;
  }
  cliques_of_.resize(2 * static_cast<std::size_t>(binaries));
  edges_of_.resize(2 * static_cast<std::size_t>(binaries));
  place_.assign(2 * static_cast<std::size_t>(binaries), 0);
}

void CliqueTable::add_edge(int a, int b) {
  if (a == b) {
    forced_.push_back(opposite(a));
    return;
  }
  if (a == opposite(b) || are_in_clique(a, b)) return;
  edges_of_[slot(a)].push_back(b);
  edges_of_[slot(b)].push_back(a);
  ++num_edges_;
}

// Takes repeated and complementary literals out; false when nothing but forced literals is left.
bool CliqueTable::normalize(Vector<int>& literals) {
  std::sort(literals.begin(), literals.end());
  std::size_t kept = 0;
  int complementary = -1;
  for (std::size_t k = 0; k < literals.size(); ++k) {
    const int literal = literals[k];
    if (k > 0 && literal == literals[k - 1]) {
      forced_.push_back(opposite(literal));
      if (kept > 0 && literals[kept - 1] == literal) --kept;
      continue;
    }
    if (kept > 0 && literals[kept - 1] == opposite(literal)) complementary = variable_of(literal);
    literals[kept++] = literal;
  }
  literals.resize(kept);
  if (complementary < 0) return true;
  for (const int literal : literals) {
    if (variable_of(literal) != complementary) forced_.push_back(opposite(literal));
  }
  return false;
}

void CliqueTable::add(const int* literals, int length, bool equation) {
  scratch_.assign(literals, literals + length);
  if (!normalize(scratch_)) return;
  const int members = static_cast<int>(scratch_.size());
  if (members == 1 && equation) forced_.push_back(scratch_[0]);
  if (members == 2) {
    const int a = scratch_[0], b = scratch_[1];
    add_edge(a, b);
    if (equation) add_edge(opposite(a), opposite(b));
  }
  if (members <= 2) return;
  const int clique = end();
  start_.push_back(static_cast<int>(pool_.size()));
  length_.push_back(members);
  is_equation_.push_back(equation);
  pool_.insert(pool_.end(), scratch_.begin(), scratch_.end());
  for (const int literal : scratch_) cliques_of_[slot(literal)].push_back(clique);
  ++num_long_;
  num_literals_ += members;
}

void CliqueTable::remove(int clique) {
  for (const int literal : members(clique)) {
    Vector<int>& list = cliques_of_[slot(literal)];
    list.erase(std::lower_bound(list.begin(), list.end(), clique));
  }
  --num_long_;
  num_literals_ -= length_[clique];
  length_[clique] = 0;
}

void CliqueTable::extend(int clique, int literal) {
  // The members move to the end of the pool, unless they are there.
  const int length = length_[clique];
  if (start_[clique] + length != static_cast<int>(pool_.size())) {
    make_room(pool_, static_cast<std::size_t>(length) + 1);
    const int start = static_cast<int>(pool_.size());
    for (int k = 0; k < length; ++k) pool_.push_back(pool_[start_[clique] + k]);
    start_[clique] = start;
  }
  pool_.push_back(literal);
  ++length_[clique];
  Vector<int>& list = cliques_of_[slot(literal)];
  list.insert(std::lower_bound(list.begin(), list.end(), clique), clique);
  num_literals_ += 1.0;
}

void CliqueTable::take_forced(Vector<int>& literals) {
  literals.swap(forced_);
  forced_.clear();
}

bool CliqueTable::are_in_clique(int a, int b) const {
  if (a == opposite(b)) return true;
  const int slot_a = slot(a), slot_b = slot(b);
  const bool a_first = edges_of_[slot_a].size() <= edges_of_[slot_b].size();
  const Vector<int>& edges = edges_of_[a_first ? slot_a : slot_b];
  work_ += static_cast<double>(edges.size());
  if (std::find(edges.begin(), edges.end(), a_first ? b : a) != edges.end()) return true;
  const Vector<int>& of_a = cliques_of_[slot_a];
  const Vector<int>& of_b = cliques_of_[slot_b];
  std::size_t i = 0, k = 0;
  while (i < of_a.size() && k < of_b.size()) {
    if (of_a[i] == of_b[k]) {
      work_ += static_cast<double>(i + k);
      return true;
    }
    (of_a[i] < of_b[k]) ? ++i : ++k;
  }
  work_ += static_cast<double>(i + k);
  return false;
}

int CliqueTable::count_unassigned(const int* begin, const int* end, const Vector<int>& part) const {
  int count = 0;
  for (const int* literal = begin; literal != end; ++literal) {
    const int place = place_[slot(*literal)];
    count += place > 0 && part[place - 1] < 0;
  }
  return count;
}

void CliqueTable::assign(const int* begin, const int* end, int number, Vector<int>& part) const {
  for (const int* literal = begin; literal != end; ++literal) {
    const int place = place_[slot(*literal)];
    if (place > 0 && part[place - 1] < 0) part[place - 1] = number;
  }
}

int CliqueTable::partition(const Vector<int>& literals, Vector<int>& part) const {
  const int count = static_cast<int>(literals.size());
  part.assign(count, -1);
  for (int k = 0; k < count; ++k) place_[slot(literals[k])] = k + 1;
  int parts = 0;
  for (int k = 0; k < count; ++k) {
    if (part[k] >= 0) continue;
    part[k] = parts;
    int best = -1, most = 0;
    for (const int clique : cliques_of(literals[k])) {
      const LiteralSpan span = members(clique);
      work_ += span.length;
      const int covered = count_unassigned(span.begin(), span.end(), part);
      if (covered > most) {
        most = covered;
        best = clique;
      }
    }
    if (best >= 0) {
      const LiteralSpan span = members(best);
      assign(span.begin(), span.end(), parts, part);
    } else {
      for (const int other : edges_of(literals[k])) {
        const int place = place_[slot(other)];
        if (place == 0 || part[place - 1] >= 0) continue;
        part[place - 1] = parts;
        break;
      }
    }
    ++parts;
  }
  for (const int literal : literals) place_[slot(literal)] = 0;
  return parts;
}

}  // namespace kelvo
