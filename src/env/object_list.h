// The objects that live in an environment (problems, extra channels, child environments, network
// problems), in the order of their creation.
//
// The list does not know what the objects are: the code that adds one says how to release it. An
// object keeps the node it was given and takes it out of the list when it is freed by itself.
#pragma once

#include "base/memory.h"

namespace kelvo {

enum class ObjectKind { problem = 1, channel = 2, environment = 3, network = 4 };

/// Frees an object completely. Must take the object's node out of its list.
using ReleaseObject = void (*)(void* object) noexcept;

class ObjectList;

struct ObjectNode {
  ObjectList* list;
  ObjectKind kind;
  void* object;
  ReleaseObject release;
  ObjectNode* previous;
  Owned<ObjectNode> next;
};

class ObjectList {
 public:
  ObjectList() = default;
  ObjectList(const ObjectList&) = delete;
  ObjectList& operator=(const ObjectList&) = delete;
  ~ObjectList() { release_all(); }

  /// Adds an object at the end. Throws std::bad_alloc, leaving the list as it was. The node stays
  /// valid until remove().
  ObjectNode* add(ObjectKind kind, void* object, ReleaseObject release);
  /// Takes a node (null: nothing) out of the list that holds it; the object is not touched.
  static void remove(ObjectNode* node) noexcept;
  /// Releases every object, the oldest first.
  void release_all() noexcept;

  bool empty() const { return head_ == nullptr; }

 private:
  Owned<ObjectNode> head_;
  ObjectNode* tail_ = nullptr;
};

}  // namespace kelvo
