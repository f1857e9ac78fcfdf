// A place in a problem for something that a higher floor makes and keeps there. The type is known
// by name alone here; whoever stores an object knows how it is destroyed.
#pragma once

#include "base/memory.h"

namespace kelvo {

template <class T>
class KeptSlot {
 public:
  KeptSlot() = default;
  KeptSlot(const KeptSlot&) = delete;
  KeptSlot& operator=(const KeptSlot&) = delete;
  ~KeptSlot() { reset(); }

  T* get() const { return object_; }
  /// Stores an object, or nothing, in place of what was there.
  void put(Owned<T>&& object) noexcept {
    reset();
    object_ = object.release();
    destroy_ = [](T* kept) noexcept { Owned<T> gone(kept); };
  }
  Owned<T> take() noexcept {
    T* const object = object_;
    object_ = nullptr;
    return Owned<T>(object);
  }
  void reset() noexcept {
    if (object_ != nullptr) destroy_(object_);
    object_ = nullptr;
  }

 private:
  T* object_ = nullptr;
  void (*destroy_)(T*) noexcept = nullptr;
};

}  // namespace kelvo
