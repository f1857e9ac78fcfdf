// Sectional ("partial") pricing of the primal simplex method with a short candidate list.
//
// Reduced costs are not kept up to date. The row duals y are, in DualValues::row_duals, and
// d_j = c_j - a_j'y is computed for the variables that are looked at: the members of the candidate
// list at every choice, and the variables of the next sections, taken in turn, whenever the list
// has lost its good members. A whole turn without a candidate means that there is none.
// Sources: Maros (2003), chapter 9, on multiple and sectional pricing.
#pragma once

#include "base/containers.h"
#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

class SectionPricer {
 public:
  explicit SectionPricer(SimplexState& state) : state_(state) {}

  /// Sizes list and sections. `weight` [num_vars] divides squared reduced costs; it must outlive
  /// the run.
  void begin(const Vector<double>& weight);
  /// After the row duals were computed anew: an empty list, bans lifted.
  void rebuild(double tolerance);
  /// The best member of the list, filled up when need be; -1 when no variable is a candidate. Its
  /// reduced cost is up to date.
  int choose();
  /// Takes a variable out of the choice until the next rebuild().
  void ban(int variable);
  /// Matrix entries and variables looked at so far.
  double work() const { return work_; }

 private:
  struct Candidate {
    int variable;
    double merit;
  };
  /// Merit from a fresh reduced cost; 0 when the variable is no candidate.
  double evaluate(int variable);
  void review();
  void scan_section();

  SimplexState& state_;
  const double* weight_ = nullptr;
  Vector<Candidate> list_;        // at most list_size_, no order
  Vector<unsigned char> listed_;  // [num_vars] 1 in the list, 2 banned
  Vector<int> banned_;
  int list_size_ = 0;
  int section_ = 0;  // variables of a section
  int cursor_ = 0;   // where the next section begins
  double tolerance_ = 0.0;
  double good_ = 0.0;  // the list is filled up when its best merit falls below this
  double work_ = 0.0;
};

}  // namespace kelvo
