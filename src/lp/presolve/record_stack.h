// A stack of records of several types, in the order in which they were made.
//
// The records of a type are in one array, so that each takes its own size and no more; a byte a
// record keeps the order. A walk, which goes through all records, counts its position in each
// array. What is done at a record is a function of its type: one that lacks an overload does not
// compile.
#pragma once

#include <array>
#include <tuple>
#include <utility>

#include "lp/presolve/undo_record.h"

namespace kelvo {

template <UndoRecord... Records>
class RecordStack {
 public:
  static constexpr int kNumKinds = sizeof...(Records);
  static constexpr std::array<const char*, sizeof...(Records)> kNames = {Records::kName...};

  /// Position of a type in the list.
  template <class Record>
  static constexpr int kind_of() {
    int kind = 0;
    static_cast<void>(((std::is_same_v<Record, Records> ? true : (++kind, false)) || ...));
    return kind;
  }

  template <class Record>
  void push(const Record& record) {
    std::get<Vector<Record>>(records_).push_back(record);
    order_.push_back(static_cast<unsigned char>(kind_of<Record>()));
  }

  int size() const { return static_cast<int>(order_.size()); }
  template <class Record>
  int count() const {
    return static_cast<int>(std::get<Vector<Record>>(records_).size());
  }
  /// Numbers of records, by kind.
  std::array<int, sizeof...(Records)> counts() const { return {count<Records>()...}; }

  /// Calls visit(record) from the first record to the last, as long as it returns true; false when
  /// it did not.
  template <class Visit>
  bool forward(Visit visit) const {
    return walk_forward(*this, visit);
  }
  template <class Visit>
  bool forward(Visit visit) {
    return walk_forward(*this, visit);
  }

  /// Calls visit(record) from the last record to the first.
  template <class Visit>
  void backward(Visit visit) const {
    std::array<int, sizeof...(Records)> next = counts();
    for (auto kind = order_.rbegin(); kind != order_.rend(); ++kind) {
      call(*this, *kind, --next[*kind], visit);
    }
  }

 private:
  template <class Self, class Visit>
  static bool walk_forward(Self& self, Visit& visit) {
    std::array<int, sizeof...(Records)> next = {};
    for (const unsigned char kind : self.order_) {
      if (!call(self, kind, next[kind]++, visit)) return false;
    }
    return true;
  }

  /// visit() on record k of a kind.
  template <class Self, class Visit>
  static auto call(Self& self, int kind, int k, Visit& visit) {
    using First = std::tuple_element_t<0, std::tuple<Records...>>;
    using Result = decltype(visit(std::declval<First&>()));
    using Function = Result (*)(Self&, int, Visit&);
    static constexpr Function kCalls[] = {[](Self& stack, int at, Visit& act) -> Result {
      return act(std::get<Vector<Records>>(stack.records_)[at]);
    }...};
    return kCalls[kind](self, k, visit);
  }

  std::tuple<Vector<Records>...> records_;
  Vector<unsigned char> order_;  // kinds
};

}  // namespace kelvo
