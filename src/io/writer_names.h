// The names under which a model is written: its own ones, default ones for kinds without names, and
// legal copies where the format cannot take a name as it is. The model is not touched.
#pragma once

#include "base/messages.h"
#include "prob/model.h"

namespace kelvo {

/// One kind of names. Copies only what it has to.
class WrittenNames {
 public:
  /// `count` names from `store`, or, when it has none or `generic` is set, the letter followed by
  /// the index counted from 1. Keeps a pointer to the store.
  WrittenNames(const NameStore& store, int count, char letter, bool generic);

  const char* operator[](int i) const { return (*names_)[i]; }
  std::string_view view(int i) const { return names_->view(i); }
  int size() const { return names_->size(); }
  /// The names are default ones.
  bool generated() const { return generated_; }
  /// Longest name, in characters.
  int longest() const;
  /// True when each name is one field of an MPS-like line: 1 to 255 characters, none of them blank
  /// or a control character.
  bool all_are_fields() const;
  /// Replaces the whole kind by legal copies when one of them is not legal in LP files; true then.
  bool make_legal();

 private:
  const NameStore* names_;
  NameStore own_;
  bool generated_ = false;
};

/// True when the name can be read back from an LP file.
bool is_legal_lp_name(const char* name);
/// The legal form of a name: forbidden characters are mapped to others of the same shape.
String legal_lp_name(const char* name);

/// The names of everything that a model file writes.
struct ModelNames {
  /// `generic`: default names for every kind, whatever the model has.
  ModelNames(const Model& model, bool generic);
  ModelNames(const ModelNames&) = delete;
  ModelNames& operator=(const ModelNames&) = delete;

  String objective;  // empty when the objective has no name
  WrittenNames columns;
  WrittenNames rows;
  WrittenNames sets;
  WrittenNames quadratics;
  WrittenNames indicators;
  WrittenNames user_cuts;
  WrittenNames lazy_constraints;
};

}  // namespace kelvo
