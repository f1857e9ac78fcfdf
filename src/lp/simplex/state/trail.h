// What a trial changes in a SimplexState, written down so that it can be put back in time
// proportional to the changes.
//
// While recording() is true, whoever changes an entry first notes its old value; the same entry may
// be noted again, because SimplexState::undo_trial() goes backwards. A change of everything (a
// factorization and what follows it) copies the arrays once, and nothing needs to be noted any
// more. The factor has marks of its own for the purpose.
#pragma once

#include "base/containers.h"
#include "base/work_vector.h"

namespace kelvo {

class SimplexState;

class Trail {
 public:
  bool recording() const { return recording_; }

  // Each notes entries as they are before a change; nothing unless recording.
  void note_variable(const SimplexState& state, int variable);
  void note_bounds(const SimplexState& state, int variable);
  void note_cost(const SimplexState& state, int variable);
  void note_exchange(const SimplexState& state, int position);
  void note_position(const SimplexState& state, int position);
  /// Values and weights of the listed positions, or of all when there is no list.
  void note_positions(const SimplexState& state, const WorkVector& column);
  void note_reduced_cost(const SimplexState& state, int variable);
  void note_reduced_costs(const SimplexState& state, const WorkVector& row);
  void note_row_duals(const SimplexState& state, const WorkVector& y);
  void note_everything(const SimplexState& state);

 private:
  friend class SimplexState;

  bool noting() const { return recording_ && !everything_.taken; }

  struct Variable {
    int variable;
    int status;
    signed char move;
    double value;
  };
  struct Bounds {
    int variable;
    double lower;
    double upper;
  };
  struct Exchange {
    int position;
    int variable;
  };
  struct Position {
    int position;
    double value;
    double weight;
  };
  struct Number {
    int index;
    double value;
  };
  struct Everything {
    bool taken = false;
    Vector<int> header;
    Vector<int> status;
    Vector<signed char> move;
    Vector<unsigned char> held;
    Vector<double> value, cost, lower, upper, reduced_cost;
    Vector<double> basic_value, dual_weights, row_duals;
  };

  void clear();

  bool recording_ = false;
  Vector<Variable> variables_;
  Vector<Bounds> bounds_;
  Vector<Number> costs_;
  Vector<Exchange> exchanges_;
  Vector<Position> positions_;
  Vector<Number> reduced_costs_;
  Vector<Number> row_duals_;
  Everything everything_;
};

}  // namespace kelvo
