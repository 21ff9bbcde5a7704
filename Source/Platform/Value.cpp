#include "Platform/Value.h"

#include "Platform/String.h"

struct TovaAllocator {};

namespace Tova {
namespace {

constexpr TovaAllocator kAllocator;

void Destroy(const Object* object) {
  if (object->Type() != kTovaTypeArray && object->Type() != kTovaTypeDictionary) return object->Destroy();
  // The last reference is gone, so nobody else sees the collection change.
  auto* dead = const_cast<Collection*>(static_cast<const Collection*>(object));
  dead->nextDead = nullptr;
  while (dead) {
    Collection* collection = dead;
    dead = dead->nextDead;
    while (TovaTypeRef child = collection->TakeChild()) {
      const Object* orphan = AsObject(child);
      if (!orphan->DropReference()) continue;
      if (orphan->Type() != kTovaTypeArray && orphan->Type() != kTovaTypeDictionary) {
        orphan->Destroy();
        continue;
      }
      auto* next = const_cast<Collection*>(static_cast<const Collection*>(orphan));
      next->nextDead = dead;
      dead = next;
    }
    collection->Destroy();
  }
}

}  // namespace

bool AreEqual(TovaTypeRef first, TovaTypeRef second, int depth) {
  if (!first || !second) return false;
  if (first == second) return true;
  if (AsObject(first)->Type() != AsObject(second)->Type() || depth > kMaximumDepth) return false;
  return AsObject(first)->IsEqual(*AsObject(second), depth);
}

size_t HashOf(TovaTypeRef value, int depth) {
  return value && depth <= kMaximumDepth ? AsObject(value)->Hash(depth) : 0;
}

void Describe(TovaTypeRef value, std::string& text, int depth) {
  if (!value) {
    text += "(null)";
  } else if (depth > kMaximumDepth) {
    text += "...";
  } else {
    AsObject(value)->Describe(text, depth);
  }
}

}  // namespace Tova

TovaTypeRef TovaRetain(TovaTypeRef value) {
  if (value) Tova::AsObject(value)->AddReference();
  return value;
}

void TovaRelease(TovaTypeRef value) {
  if (value && Tova::AsObject(value)->DropReference()) Tova::Destroy(Tova::AsObject(value));
}

TovaIndex TovaGetRetainCount(TovaTypeRef value) { return value ? Tova::AsObject(value)->References() : 0; }

TovaTypeID TovaGetTypeID(TovaTypeRef value) { return value ? Tova::AsObject(value)->Type() : kTovaTypeNone; }

bool TovaEqual(TovaTypeRef first, TovaTypeRef second) { return Tova::AreEqual(first, second, 0); }

size_t TovaHash(TovaTypeRef value) { return Tova::HashOf(value, 0); }

TovaStringRef TovaCopyDescription(TovaTypeRef value) {
  if (!value) return nullptr;
  if (TovaGetTypeID(value) == kTovaTypeString) return static_cast<TovaStringRef>(TovaRetain(value));
  return Tova::Guarded([&] {
    std::string text;
    Tova::Describe(value, text, 0);
    return Tova::NewString(std::move(text));
  });
}

TovaAllocatorRef TovaGetAllocator(TovaTypeRef value) { return value ? &Tova::kAllocator : nullptr; }

TovaAllocatorRef TovaAllocatorGetDefault(void) { return &Tova::kAllocator; }
