#include "mip/domain/conflict_analysis.h"

#include <algorithm>

namespace kelvo {

ConflictAnalysis::ConflictAnalysis(Domain& domain, const ConflictSettings& settings)
    : domain_(domain),
      settings_(settings),
      explainer_(domain),
      scores_(domain.bounds().num_vars()),
      kept_at_(2 * static_cast<std::size_t>(domain.bounds().num_vars()), 0) {}

bool ConflictAnalysis::analyze(ConflictCut cut, LearnedClause& learned) {
  explanation_.clear();
  if (!explainer_.explain_conflict(explanation_)) return false;
  const Reason reason = domain_.conflict().reason;
  if (reason.kind == ReasonKind::kClause) domain_.mutable_clauses().bump(reason.index);
  return find_cut(cut, learned);
}

bool ConflictAnalysis::analyze(const LinearProof& proof, ConflictCut cut, LearnedClause& learned) {
  explanation_.clear();
  if (!explainer_.explain_violation(proof, explanation_)) return false;
  return find_cut(cut, learned);
}

void ConflictAnalysis::add(const BoundLiteral& literal, int before) {
  const LocalBounds& bounds = domain_.bounds();
  const int position = bounds.position_of(literal, before);
  if (position < 0 || bounds.level_of(position) == 0) return;
  if (is_queued_[position]) {
    if (is_tighter(literal.bound, literal.value, needed_[position])) {
      needed_[position] = literal.value;
    }
    return;
  }
  is_queued_[position] = 1;
  needed_[position] = literal.value;
  heap_.push_back(position);
  std::push_heap(heap_.begin(), heap_.end());
  open_ += position >= level_start_;
}

// Queues the literals of explanation_, which hold before a position.
void ConflictAnalysis::add_all(int before) {
  for (const BoundLiteral& literal : explanation_) add(literal, before);
  explanation_.clear();
}

int ConflictAnalysis::pop() {
  std::pop_heap(heap_.begin(), heap_.end());
  const int position = heap_.back();
  heap_.pop_back();
  return position;
}

// Whether the bound at a position belongs to the cut as it is.
bool ConflictAnalysis::is_stop(int position, ConflictCut cut) const {
  if (cut == ConflictCut::kDecisions) return false;
  // Limits of rows follow from their indicators; clauses speak of columns.
  if (variable_of(domain_.bounds().change(position).bound) >= domain_.mip().num_cols()) {
    return false;
  }
  return position < level_start_ || open_ == 1;
}

void ConflictAnalysis::keep(int position) {
  const int bound = domain_.bounds().change(position).bound;
  // A later change of the same bound says more.
  if (kept_at_[bound] != 0) return;
  kept_.push_back({position, needed_[position]});
  kept_at_[bound] = static_cast<int>(kept_.size());
}

// Replaces queued bounds by their explanations until the rest is the cut. False: too much work.
bool ConflictAnalysis::resolve(ConflictCut cut) {
  const LocalBounds& bounds = domain_.bounds();
  while (!heap_.empty()) {
    const int position = pop();
    const DomainChange& entry = bounds.change(position);
    const BoundLiteral needed{entry.bound, needed_[position]};
    is_queued_[position] = 0;
    if (is_exhausted()) {
      for (const int other : heap_) is_queued_[other] = 0;
      heap_.clear();
      return false;
    }
    scores_.bump(entry.bound);
    if (is_stop(position, cut) ||
        !explainer_.explain(needed, entry.reason, position, explanation_)) {
      keep(position);
      continue;
    }
    if (entry.reason.kind == ReasonKind::kClause) {
      domain_.mutable_clauses().bump(entry.reason.index);
    }
    open_ -= position >= level_start_;
    add_all(position);
  }
  return true;
}

bool ConflictAnalysis::find_cut(ConflictCut cut, LearnedClause& learned) {
  const LocalBounds& bounds = domain_.bounds();
  stop_at_ = explainer_.work() + settings_.work_limit;
  is_queued_.resize(std::max<std::size_t>(is_queued_.size(), bounds.size()), 0);
  needed_.resize(is_queued_.size());
  level_start_ = bounds.size();
  add_all(bounds.size());
  if (!heap_.empty()) level_start_ = bounds.level_start(bounds.level_of(heap_.front()));
  open_ = static_cast<int>(
      std::count_if(heap_.begin(), heap_.end(), [&](int p) { return p >= level_start_; }));
  bool accepted = resolve(cut);
  scores_.decay();
  if (accepted && settings_.minimize) drop_implied();
  accepted = accepted && static_cast<int>(kept_.size()) <= settings_.longest_clause;
  learned.literals.clear();
  learned.backjump_level = 0;
  if (kept_.size() > 1) {
    // Bounds without explanation may leave several of the last level.
    learned.backjump_level =
        std::min(bounds.level_of(kept_[1].position), bounds.level_of(kept_[0].position) - 1);
  }
  for (const Needed& each : kept_) {
    const int bound = bounds.change(each.position).bound;
    kept_at_[bound] = 0;
    if (accepted) learned.literals.push_back({bound, each.value});
  }
  kept_.clear();
  return accepted;
}

// Whether a kept literal follows from kept ones before it.
bool ConflictAnalysis::is_implied(const Needed& needed) {
  const LocalBounds& bounds = domain_.bounds();
  const DomainChange& entry = bounds.change(needed.position);
  explanation_.clear();
  const bool explained =
      explainer_.explain({entry.bound, needed.value}, entry.reason, needed.position, explanation_);
  return explained &&
         std::all_of(explanation_.begin(), explanation_.end(), [&](const BoundLiteral& literal) {
           const int position = bounds.position_of(literal, needed.position);
           if (position < 0 || bounds.level_of(position) == 0) return true;
           const int place = kept_at_[literal.bound];
           return place != 0 && kept_[place - 1].position < needed.position &&
                  is_as_tight(literal.bound, kept_[place - 1].value, literal.value);
         });
}

void ConflictAnalysis::drop_implied() {
  // The first literal is the one that the clause is for. Literals that were dropped keep their
  // place in kept_at_: they follow from others that stay.
  Vector<char> stays(kept_.size(), 1);
  for (std::size_t k = 1; k < kept_.size() && !is_exhausted(); ++k) {
    stays[k] = !is_implied(kept_[k]);
  }
  std::size_t end = 0;
  for (std::size_t k = 0; k < kept_.size(); ++k) {
    kept_at_[domain_.bounds().change(kept_[k].position).bound] = 0;
    if (stays[k]) kept_[end++] = kept_[k];
  }
  kept_.resize(end);
  explanation_.clear();
}

void ConflictAnalysis::learn(const LearnedClause& learned) {
  ++num_learned_;
  domain_.mutable_clauses().age();
  if (domain_.clauses().size() >= settings_.most_clauses) {
    domain_.mutable_clauses().reduce(domain_.bounds());
  }
  domain_.add_clause(learned.literals);
}

}  // namespace kelvo
