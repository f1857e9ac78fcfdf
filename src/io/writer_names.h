// The names under which a model is written: its own ones, default ones for kinds without names, and
// legal copies where the format cannot take a name as it is. The model is not touched.
#pragma once

#include "base/messages.h"
#include "prob/model/model.h"

namespace kelvo {

/// One kind of names. Copies only what it has to.
class WrittenNames {
 public:
  /// `count` names from `store`, or, when it has none or `generic` is set, the letter followed by
  /// the index counted from 1. Keeps a pointer to the store.
  WrittenNames(const NameStore& store, int count, char letter, bool generic);

  const char* operator[](int i) const { return (*names_)[i]; }
  std::string_view view(int i) const { return names_->view(i); }
  /// Ask for the memory of a name that is wanted later, in two steps, see NameStore.
  void prefetch_place(int i) const { names_->prefetch_place(i); }
  void prefetch_text(int i) const { names_->prefetch_text(i); }
  int size() const { return names_->size(); }
  /// The names are default ones.
  bool generated() const { return generated_; }
  /// Longest name, in characters.
  int longest() const;
  /// True when each name is one field of an MPS-like line: 1 to 255 characters, none of them blank
  /// or a control character.
  bool all_are_fields() const;
  /// Replaces the whole kind by legal copies when one of them is not legal in LP files; true then.
  /// `labels`: the names come before a colon, where those of section keywords are read as
  /// them.
  bool make_legal(bool labels);
  /// Replaces names that are no fields of an MPS file; true when there were any.
  bool make_fields();
  /// Takes `name` for item i.
  void replace(int i, std::string_view name);

 private:
  const NameStore* names_;
  NameStore own_;
  bool generated_ = false;
};

/// True when the name can be read back from an LP file, as a label or elsewhere.
bool is_legal_lp_name(std::string_view name, bool label);
/// The legal form of a name: forbidden characters are mapped to others of the same shape.
String legal_lp_name(std::string_view name, bool label);
/// True when the name is a field of an MPS file: 1 to 255 characters, no blanks or control
/// characters.
bool is_field(std::string_view name);
/// A name that is a field, with '_' in the place of what is not.
String field_name(std::string_view name);

/// Makes the names of several kinds together with `last` (null: none) differ from each other: of
/// equal ones all but the first get a number behind them. True when a name changed.
bool make_distinct(WrittenNames* const* kinds, int count, String* last);

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
