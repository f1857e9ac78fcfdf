// Random walks through random programs: nothing that a domain derives may lose a point.
#include <gtest/gtest.h>

#include "mip/domain/clique_merging.h"
#include "mip/domain/clique_rows.h"
#include "mip/domain/conflict_analysis.h"
#include "mip/domain/dual_proof.h"
#include "mip/domain/proof_rows.h"
#include "mip/domain/reduced_costs.h"
#include "random_mip.h"

namespace kelvo {
namespace {

bool satisfies(const Vector<double>& point, const BoundLiteral& literal) {
  return is_as_tight(literal.bound, point[variable_of(literal.bound)], literal.value);
}

bool satisfies_all(const Vector<double>& point, const Vector<BoundLiteral>& literals) {
  return std::all_of(literals.begin(), literals.end(),
                     [&](const BoundLiteral& literal) { return satisfies(point, literal); });
}

class Walk {
 public:
  explicit Walk(int seed)
      : random_(seed + 1000),
        instance_(test::RandomMipBuilder(seed).build()),
        points_(instance_.points),
        cliques_(instance_.mip),
        implications_(instance_.mip),
        domain_(instance_.mip, cliques_, implications_),
        analysis_(domain_),
        proofs_(domain_, 3) {}

  void run() {
    domain_.propagate();
    check_state();
    if (!domain_.is_infeasible()) fill_tables();
    for (int step = 0; step < 60 && !domain_.is_infeasible() && !::testing::Test::HasFailure();
         ++step) {
      move();
      check_state();
    }
    if (domain_.is_infeasible()) {
      EXPECT_TRUE(points_.empty());
    }
  }

 private:
  const MipProblem& mip() const { return instance_.mip; }

  // Cliques of the rows, merged and grown, and implications by probing.
  void fill_tables() {
    add_cliques_of_rows(domain_, cliques_);
    check_cliques();
    Vector<char> conflicts = conflict_graph();
    merge_cliques(cliques_);
    EXPECT_EQ(conflict_graph(), conflicts);
    for (int j = 0; j < mip().num_cols(); ++j) {
      for (const int literal : {lower_of(j), upper_of(j)}) {
        if (cliques_.is_literal(literal) && !domain_.is_fixed(j)) probe(literal);
      }
    }
    conflicts = conflict_graph();
    grow_cliques(cliques_);
    EXPECT_EQ(conflict_graph(), conflicts);
    merge_cliques(cliques_);
    check_cliques();
    Vector<int> forced;
    cliques_.take_forced(forced);
    for (const int literal : forced) domain_.tighten_globally(literal, literal_value(literal));
    check_state();
  }

  void probe(int literal) {
    const DomainMark here = domain_.mark();
    domain_.decide(literal, literal_value(literal));
    if (domain_.propagate()) {
      domain_.bounds().for_each_changed(here, [&](int v) {
        if (v >= mip().num_cols() || v == variable_of(literal)) return;
        for (const int bound : {lower_of(v), upper_of(v)}) {
          add_implication(domain_, literal, {bound, domain_.bounds().bound(bound)}, cliques_,
                          implications_);
        }
      });
    }
    domain_.backtrack(here);
  }

  void check_cliques() {
    for (const Vector<double>& point : points_) {
      for (int a = 0; a < 2 * mip().num_cols(); ++a) {
        for (int b = 0; b < 2 * mip().num_cols(); ++b) {
          if (a == b || !cliques_.is_literal(a) || !cliques_.is_literal(b)) continue;
          EXPECT_FALSE(point[a / 2] == literal_value(a) && point[b / 2] == literal_value(b) &&
                       cliques_.are_in_clique(a, b));
        }
      }
      for (int c = 0; c < cliques_.end(); ++c) {
        const LiteralSpan members = cliques_.members(c);
        const auto is_true = [&](int l) { return point[l / 2] == literal_value(l); };
        if (members.length == 0 || !cliques_.is_equation(c)) continue;
        EXPECT_EQ(std::count_if(members.begin(), members.end(), is_true), 1);
      }
    }
  }

  Vector<char> conflict_graph() const {
    Vector<char> graph;
    for (int a = 0; a < 2 * mip().num_cols(); ++a) {
      for (int b = 0; b < a; ++b) {
        graph.push_back(cliques_.is_literal(a) && cliques_.is_literal(b) &&
                        cliques_.are_in_clique(a, b));
      }
    }
    return graph;
  }

  void move() {
    const double kind = random_.uniform();
    if (kind < 0.05 && !points_.empty()) {
      lower_cutoff();
    } else if (kind < 0.1) {
      change_rows();
    } else if (kind < 0.2) {
      propagate_proof();
    } else if (kind < 0.3) {
      go_back(random_.below(domain_.level() + 1));
    } else {
      branch();
    }
    if (domain_.is_infeasible() || !domain_.propagate()) resolve_conflict();
  }

  void branch() {
    const int j = random_.below(mip().num_cols());
    if (domain_.is_fixed(j)) return;
    marks_.resize(domain_.level());
    marks_.push_back({domain_.mark(), bounds()});
    const Vector<double>& grid = instance_.grid[j];
    double value = grid[random_.below(static_cast<int>(grid.size()))];
    value = std::min(std::max(value, domain_.lower(j)), domain_.upper(j));
    const int bound = 2 * j + random_.below(2);
    domain_.decide(bound, value);
    decisions_.resize(domain_.level() - 1);
    decisions_.push_back({bound, value});
  }

  void lower_cutoff() {
    const Vector<double>& point = points_[random_.below(static_cast<int>(points_.size()))];
    const double cutoff = test::objective(mip(), point);
    domain_.set_cutoff(cutoff);
    std::erase_if(points_, [&](const Vector<double>& each) {
      return test::objective(mip(), each) > domain_.cutoff();
    });
  }

  // Adds a row that all points satisfy, or removes one.
  void change_rows() {
    if (!rows_.empty() && random_.uniform() < 0.5) {
      domain_.remove_row(rows_.back());
      rows_.pop_back();
      return;
    }
    Vector<int> index;
    Vector<double> value;
    for (int j = 0; j < mip().num_cols(); ++j) {
      index.push_back(j);
      value.push_back(random_.below(9) - 4.0);
    }
    double most = -1e9;
    for (const Vector<double>& point : points_) {
      double activity = 0.0;
      for (int j = 0; j < mip().num_cols(); ++j) activity += value[j] * point[j];
      most = std::max(most, activity);
    }
    rows_.push_back(
        domain_.add_row(index.data(), value.data(), static_cast<int>(index.size()), -kInf, most));
  }

  void propagate_proof() {
    Vector<double> y(mip().num_rows());
    for (double& each : y) each = random_.below(7) - 3.0;
    const bool bounds_objective = domain_.cutoff() < kInf && random_.uniform() < 0.7;
    const LinearProof proof =
        bounds_objective ? bound_proof(domain_, y, domain_.cutoff()) : farkas_proof(domain_, y);
    for (const Vector<double>& point : points_) {
      double activity = 0.0, size = std::abs(proof.rhs);
      for (std::size_t k = 0; k < proof.index.size(); ++k) {
        activity += proof.value[k] * point[proof.index[k]];
        size += std::abs(proof.value[k] * point[proof.index[k]]);
      }
      EXPECT_GE(activity, proof.rhs - 1e-6 - 1e-14 * size) << "proof";
    }
    LearnedClause learned;
    if (domain_.propagate() && analysis_.analyze(proof, ConflictCut::kFirstUip, learned)) {
      check_clause(learned.literals, "clause of a proof");
      analysis_.learn(learned);
    } else if (random_.uniform() < 0.5) {
      proofs_.add(proof);
    } else if (fix_by_proof(domain_, proof) < 0) {
      for (const Vector<double>& point : points_) {
        EXPECT_FALSE(satisfies_all(point, decisions_)) << "refuted by a proof";
      }
      go_back(0);
    }
  }

  void resolve_conflict() {
    for (const Vector<double>& point : points_) {
      EXPECT_FALSE(satisfies_all(point, decisions_)) << "conflict";
    }
    if (domain_.is_infeasible()) return;
    LearnedClause learned;
    const bool first_uip = random_.uniform() < 0.7;
    const bool found =
        analysis_.analyze(first_uip ? ConflictCut::kFirstUip : ConflictCut::kDecisions, learned);
    if (found) check_clause(learned.literals, "clause");
    const bool jump = found && random_.uniform() < 0.5;
    go_back(jump ? learned.backjump_level : random_.below(domain_.level()));
    if (found) {
      ++num_clauses_;
      analysis_.learn(learned);
    }
    if (!domain_.is_infeasible() && !domain_.propagate()) go_back(0);
  }

  void check_clause(const Vector<BoundLiteral>& literals, const char* what) {
    for (const Vector<double>& point : points_) {
      EXPECT_FALSE(satisfies_all(point, literals)) << what << " of " << literals.size();
    }
  }

  void go_back(int level) {
    if (level >= domain_.level()) return;
    const auto [mark, before] = marks_[level];
    domain_.backtrack(mark);
    decisions_.resize(level);
    marks_.resize(level);
    // What is known everywhere was applied at level 0.
    if (level > 0) {
      EXPECT_EQ(bounds(), before);
    }
  }

  Vector<double> bounds() const {
    const double* begin = domain_.bounds().bounds();
    return Vector<double>(begin, begin + 2 * domain_.bounds().num_vars());
  }

  void check_state() {
    if (domain_.in_conflict()) return;
    for (const Vector<double>& point : points_) {
      if (!satisfies_all(point, decisions_)) continue;
      for (int v = 0; v < domain_.bounds().num_vars(); ++v) {
        ASSERT_GE(point[v], domain_.lower(v) - 1e-9) << "lower bound of " << v;
        ASSERT_LE(point[v], domain_.upper(v) + 1e-9) << "upper bound of " << v;
      }
    }
    check_activities();
    check_explanations();
  }

  void check_activities() {
    if (!domain_.is_settled()) return;
    RowSystem fresh(mip(), domain_.bounds());
    for (int i = 0; i < mip().num_rows(); ++i) {
      const RowState& kept = domain_.rows().state(i);
      const RowState& summed = fresh.state(i);
      EXPECT_EQ(kept.min_infinite, summed.min_infinite);
      EXPECT_EQ(kept.max_infinite, summed.max_infinite);
      EXPECT_NEAR(kept.min_activity, summed.min_activity, kept.error + summed.error);
      EXPECT_NEAR(kept.max_activity, summed.max_activity, kept.error + summed.error);
    }
  }

  void check_explanations() {
    const LocalBounds& local = domain_.bounds();
    Explainer explainer(domain_);
    for (int p = local.level() == 0 ? local.size() : local.level_start(1); p < local.size(); ++p) {
      const DomainChange& change = local.change(p);
      Vector<BoundLiteral> explanation;
      const BoundLiteral literal{change.bound, change.new_value};
      if (!explainer.explain(literal, change.reason, p, explanation)) continue;
      ++num_explained_[static_cast<int>(change.reason.kind)];
      for (const BoundLiteral& each : explanation) {
        EXPECT_LT(local.position_of(each, p), p);
        EXPECT_TRUE(is_as_tight(each.bound, local.value_before(each.bound, p), each.value));
      }
      for (const Vector<double>& point : points_) {
        if (!satisfies_all(point, explanation)) continue;
        ASSERT_TRUE(satisfies(point, literal))
            << "explanation, reason " << static_cast<int>(change.reason.kind);
      }
    }
  }

  Random random_;
  test::RandomMip instance_;
  Vector<Vector<double>> points_;
  CliqueTable cliques_;
  ImplicationTable implications_;
  Domain domain_;
  ConflictAnalysis analysis_;
  ProofRows proofs_;
  Vector<BoundLiteral> decisions_;  // one a level
  Vector<std::pair<DomainMark, Vector<double>>> marks_;
  Vector<int> rows_;

 public:
  int num_clauses_ = 0;
  int num_explained_[static_cast<int>(ReasonKind::kProof) + 1] = {};
};

TEST(DomainProperty, KeepsAllPointsOnRandomWalks) {
  int clauses = 0;
  int explained[static_cast<int>(ReasonKind::kProof) + 1] = {};
  for (int seed = 0; seed < 400 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    Walk walk(seed);
    walk.run();
    clauses += walk.num_clauses_;
    for (int k = 0; k < static_cast<int>(std::size(explained)); ++k) {
      explained[k] += walk.num_explained_[k];
    }
  }
  // The walks come by everything there is.
  EXPECT_GT(clauses, 300);
  for (int k = static_cast<int>(ReasonKind::kRow); k < static_cast<int>(std::size(explained));
       ++k) {
    EXPECT_GT(explained[k], 20) << "explanations of reason " << k;
  }
}

}  // namespace
}  // namespace kelvo
