#include "env/object_list.h"

namespace kelvo {

ObjectNode* ObjectList::add(ObjectKind kind, void* object, ReleaseObject release) {
  Owned<ObjectNode>& end = tail_ != nullptr ? tail_->next : head_;
  end = make_owned<ObjectNode>(ObjectNode{this, kind, object, release, tail_, nullptr});
  tail_ = end.get();
  return tail_;
}

void ObjectList::remove(ObjectNode* node) noexcept {
  if (node == nullptr) return;
  ObjectList& list = *node->list;
  ObjectNode* const previous = node->previous;
  (node->next != nullptr ? node->next->previous : list.tail_) = previous;
  Owned<ObjectNode>& link = previous != nullptr ? previous->next : list.head_;
  // The node is destroyed last, when the link that owned it holds its successor already.
  const Owned<ObjectNode> removed = std::move(link);
  link = std::move(removed->next);
}

void ObjectList::release_all() noexcept {
  while (head_ != nullptr) head_->release(head_->object);
}

}  // namespace kelvo
