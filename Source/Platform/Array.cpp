#include "Platform/Collections.h"

bool TovaArray::IsEqual(const Object& other, int depth) const {
  const auto& array = static_cast<const TovaArray&>(other);
  if (values.size() != array.values.size()) return false;
  for (size_t i = 0; i < values.size(); ++i) {
    if (!Tova::AreEqual(values[i].get(), array.values[i].get(), depth + 1)) return false;
  }
  return true;
}

size_t TovaArray::Hash(int depth) const {
  size_t hash = values.size();
  for (const Tova::Value& value : values) hash = hash * 31 + Tova::HashOf(value.get(), depth + 1);
  return hash;
}

void TovaArray::Describe(std::string& out, int depth) const {
  out += '{';
  for (size_t i = 0; i < values.size(); ++i) {
    if (i > 0) out += ", ";
    Tova::Describe(values[i].get(), out, depth + 1);
  }
  out += '}';
}

TovaTypeRef TovaArray::TakeChild() {
  if (values.empty()) return nullptr;
  TovaTypeRef child = values.back().Detach();
  values.pop_back();
  return child;
}

namespace {

TovaArray* CopyArray(TovaArrayRef array, bool canChange) {
  if (!array) return nullptr;
  return Tova::Guarded([&] {
    auto copy = Tova::Adopt(new TovaArray(canChange));
    copy.get()->values = array->values;
    return copy.Detach();
  });
}

}  // namespace

TovaMutableArrayRef TovaArrayCreateMutable(void) {
  return Tova::Guarded([] { return new TovaArray(true); });
}

TovaArrayRef TovaArrayCreateCopy(TovaArrayRef array) {
  if (array && !array->isMutable) return static_cast<TovaArrayRef>(TovaRetain(array));
  return CopyArray(array, false);
}

TovaMutableArrayRef TovaArrayCreateMutableCopy(TovaArrayRef array) { return CopyArray(array, true); }

TovaIndex TovaArrayGetCount(TovaArrayRef array) { return array ? static_cast<TovaIndex>(array->values.size()) : 0; }

TovaTypeRef TovaArrayGetValueAtIndex(TovaArrayRef array, TovaIndex index) {
  if (index < 0 || index >= TovaArrayGetCount(array)) return nullptr;
  return array->values[static_cast<size_t>(index)].get();
}

bool TovaArrayContainsValue(TovaArrayRef array, TovaTypeRef value) {
  if (!array) return false;
  for (const Tova::Value& element : array->values) {
    if (TovaEqual(element.get(), value)) return true;
  }
  return false;
}

void TovaArrayAppendValue(TovaMutableArrayRef array, TovaTypeRef value) {
  if (!array || !array->isMutable || !value) return;
  Tova::Guarded([&] { array->values.push_back(Tova::Share(value)); });
}

void TovaArrayAppendArray(TovaMutableArrayRef array, TovaArrayRef other) {
  if (!array || !array->isMutable || !other) return;
  Tova::Guarded([&] {
    const std::vector<Tova::Value> added = other->values;  // a copy: an array may be appended to itself
    array->values.insert(array->values.end(), added.begin(), added.end());
  });
}
