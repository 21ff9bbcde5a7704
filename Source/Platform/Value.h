#pragma once

#include <Tova/Tova.h>

#include <atomic>
#include <exception>
#include <string>
#include <type_traits>

namespace Tova {

/// How deep collections may lie in one another: property lists beyond it are refused, and comparisons and descriptions
/// look no deeper, so that no nest overflows the stack.
inline constexpr int kMaximumDepth = 512;

/// What every Tova value starts with: its type and its reference count, 1 when made. Values are made with new, shared
/// by TovaRetain and destroyed by the last TovaRelease; immortal ones are never counted.
class Object {
 public:
  enum class Lifetime { kCounted, kImmortal };

  TovaTypeID Type() const { return type_; }
  void AddReference() const {
    if (lifetime_ == Lifetime::kCounted) references_.fetch_add(1, std::memory_order_relaxed);
  }
  /// True when that was the last reference.
  bool DropReference() const {
    return lifetime_ == Lifetime::kCounted && references_.fetch_sub(1, std::memory_order_acq_rel) == 1;
  }
  TovaIndex References() const { return references_.load(std::memory_order_relaxed); }

  /// Whether the contents are equal to those of another object of the same type.
  virtual bool IsEqual(const Object& other, int depth) const = 0;
  virtual size_t Hash(int depth) const = 0;
  virtual void Describe(std::string& text, int depth) const = 0;
  /// Frees the object alone, whatever its count.
  virtual void Destroy() const = 0;

 protected:
  constexpr explicit Object(TovaTypeID type, Lifetime lifetime = Lifetime::kCounted)
      : type_(type), lifetime_(lifetime) {}
  ~Object() = default;

 private:
  TovaTypeID type_;
  Lifetime lifetime_;
  mutable std::atomic<TovaIndex> references_{1};
};

/// A value that holds other values. Taken apart child by child when it dies, so that the depth of a nest does not
/// matter.
class Collection : public Object {
 public:
  /// Hands over a child with the reference held on it; null when none is left.
  virtual TovaTypeRef TakeChild() = 0;
  Collection* nextDead = nullptr;  ///< while being destroyed

 protected:
  using Object::Object;
  ~Collection() = default;
};

inline const Object* AsObject(TovaTypeRef value) { return static_cast<const Object*>(value); }

/// Equality, hash and description of values (possibly null) that lie at a depth in others.
bool AreEqual(TovaTypeRef first, TovaTypeRef second, int depth);
size_t HashOf(TovaTypeRef value, int depth);
void Describe(TovaTypeRef value, std::string& text, int depth);

/// Does the work of an exported function; an exception (out of memory) ends in the result's zero value.
template <class Action>
std::invoke_result_t<Action> Guarded(Action action) {
  try {
    return action();
  } catch (const std::exception&) {
    return std::invoke_result_t<Action>();
  }
}

}  // namespace Tova
