#include "base/memory.h"

#include <sys/mman.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace kelvo {
namespace {

constexpr std::size_t kAlignment = 16;

std::atomic<std::int64_t> live{0};
std::atomic<std::int64_t> successes_left{-1};
std::atomic<bool> failed{false};

/// True when this request is the one that a test wants to fail.
bool must_fail() noexcept {
  if (successes_left.load(std::memory_order_relaxed) < 0) return false;
  if (successes_left.fetch_sub(1, std::memory_order_relaxed) != 0) return false;
  failed.store(true, std::memory_order_relaxed);
  return true;
}

/// Moves a raw block to the next multiple of 16 and notes the advance in the byte before it.
void* advance(void* raw) noexcept {
  auto* bytes = static_cast<unsigned char*>(raw);
  const auto address = reinterpret_cast<std::uintptr_t>(bytes);
  const std::size_t step = kAlignment - address % kAlignment;
  bytes += step;
  bytes[-1] = static_cast<unsigned char>(step);
  return bytes;
}

/// Blocks of this size and more are worth whole huge pages.
constexpr std::size_t kHugePage = std::size_t{1} << 21;
constexpr std::size_t kManyPages = 2 * kHugePage;

/// Tables and matrices of large models are read in no order, which costs as much for the look-up of
/// addresses as for the data unless pages are huge. A system without them still works.
void ask_for_huge_pages(void* raw, std::size_t bytes) noexcept {
  if (bytes < kManyPages) return;
  const auto begin = reinterpret_cast<std::uintptr_t>(raw);
  const std::uintptr_t first = (begin + kHugePage - 1) / kHugePage * kHugePage;
  const std::uintptr_t last = (begin + bytes) / kHugePage * kHugePage;
  if (first < last) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

void* raw_of(void* block) noexcept {
  auto* bytes = static_cast<unsigned char*>(block);
  return bytes - bytes[-1];
}

}  // namespace

void* allocate(std::size_t bytes) noexcept {
  if (must_fail()) return nullptr;
  if (bytes == 0) bytes = 1;
  if (bytes > std::numeric_limits<std::size_t>::max() - kAlignment) return nullptr;
  void* raw = std::malloc(bytes + kAlignment);
  if (raw == nullptr) return nullptr;
  ask_for_huge_pages(raw, bytes);
  live.fetch_add(1, std::memory_order_relaxed);
  return advance(raw);
}

void* reallocate(void* block, std::size_t bytes) noexcept {
  if (block == nullptr) return allocate(bytes);
  if (must_fail()) return nullptr;
  if (bytes == 0) bytes = 1;
  if (bytes > std::numeric_limits<std::size_t>::max() - kAlignment) return nullptr;
  const std::size_t old_step = static_cast<unsigned char*>(block)[-1];
  void* raw = std::realloc(raw_of(block), bytes + kAlignment);
  if (raw == nullptr) return nullptr;
  auto* base = static_cast<unsigned char*>(raw);
  const std::size_t step = kAlignment - reinterpret_cast<std::uintptr_t>(base) % kAlignment;
  // The runtime may return an address with another remainder; the contents then move along.
  if (step != old_step) std::memmove(base + step, base + old_step, bytes);
  return advance(raw);
}

void release(void* block) noexcept {
  if (block == nullptr) return;
  live.fetch_sub(1, std::memory_order_relaxed);
  std::free(raw_of(block));
}

std::int64_t live_blocks() noexcept {
  return live.load(std::memory_order_relaxed);
}

void fail_allocation_after(std::int64_t successes) noexcept {
  failed.store(false, std::memory_order_relaxed);
  successes_left.store(successes, std::memory_order_relaxed);
}

bool allocation_failed() noexcept {
  return failed.load(std::memory_order_relaxed);
}

}  // namespace kelvo
