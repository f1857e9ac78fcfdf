// The one allocator of the library.
//
// Every block starts on a 16-byte boundary. A request for n bytes takes n + 16 from the runtime,
// advances to the next multiple of 16 (by 1 to 16 bytes) and keeps the advance in the byte before
// the returned address, where release() finds it. A request for 0 bytes counts as 1 byte.
//
// Blocks are counted, and a test may make the k-th request fail, so that "nothing is lost when
// memory runs out" can be checked for every function of the library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace kelvo {

/// A 16-byte aligned block of `bytes` bytes, or null when there is no memory.
void* allocate(std::size_t bytes) noexcept;

/// Resizes a block (null: a new one) keeping its contents; on null the old block is untouched.
void* reallocate(void* block, std::size_t bytes) noexcept;

/// Gives a block back. Null is accepted.
void release(void* block) noexcept;

/// Number of blocks that were allocated and not yet released.
std::int64_t live_blocks() noexcept;

/// Lets `successes` further requests succeed and makes the one after them fail, once.
/// A negative number switches the failure off.
void fail_allocation_after(std::int64_t successes) noexcept;

/// True when the requested failure has happened (and has thereby switched itself off).
bool allocation_failed() noexcept;

/// Standard allocator over allocate(); throws std::bad_alloc.
template <class T>
struct Allocator {
  static_assert(alignof(T) <= 16);
  using value_type = T;

  Allocator() noexcept = default;
  template <class U>
  Allocator(const Allocator<U>&) noexcept {}

  T* allocate(std::size_t n) {
    if (n > std::numeric_limits<std::size_t>::max() / sizeof(T) - 16) throw std::bad_alloc();
    void* block = kelvo::allocate(n * sizeof(T));
    if (block == nullptr) throw std::bad_alloc();
    return static_cast<T*>(block);
  }
  void deallocate(T* block, std::size_t) noexcept { kelvo::release(block); }

  template <class U>
  bool operator==(const Allocator<U>&) const noexcept {
    return true;
  }
};

/// Destroys and releases an object made by make_owned().
template <class T>
struct OwnedDeleter {
  OwnedDeleter() noexcept = default;
  template <class U>
  requires std::is_convertible_v<U*, T*> OwnedDeleter(const OwnedDeleter<U>&)
  noexcept {}
  void operator()(T* object) const noexcept {
    if constexpr (std::is_polymorphic_v<T>) {
      void* block = dynamic_cast<void*>(object);
      object->~T();
      kelvo::release(block);
    } else {
      object->~T();
      kelvo::release(object);
    }
  }
};

/// Unique ownership of an object that lives in a block of the library's allocator.
template <class T>
using Owned = std::unique_ptr<T, OwnedDeleter<T>>;

/// Makes an object in a block of the library's allocator; throws std::bad_alloc.
template <class T, class... Args>
Owned<T> make_owned(Args&&... args) {
  static_assert(alignof(T) <= 16);
  void* block = kelvo::allocate(sizeof(T));
  if (block == nullptr) throw std::bad_alloc();
  try {
    return Owned<T>(::new (block) T(std::forward<Args>(args)...));
  } catch (...) {
    kelvo::release(block);
    throw;
  }
}

}  // namespace kelvo
