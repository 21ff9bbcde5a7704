#include <utility>

#include "Platform/Collections.h"
#include "Platform/String.h"

namespace {

/// Up to this many entries are searched one after the other.
constexpr size_t kSearchedInOrder = 8;

}  // namespace

bool TovaDictionary::IsEqual(const Object& other, int depth) const {
  const auto& dictionary = static_cast<const TovaDictionary&>(other);
  if (entries.size() != dictionary.entries.size()) return false;
  for (const Entry& entry : entries) {
    const size_t place = dictionary.Find(entry.key.get());
    if (place == dictionary.entries.size()) return false;
    if (!Tova::AreEqual(entry.value.get(), dictionary.entries[place].value.get(), depth + 1)) return false;
  }
  return true;
}

size_t TovaDictionary::Hash(int depth) const {
  size_t hash = entries.size();  // a sum: the order of the entries does not count
  for (const Entry& entry : entries)
    hash += TovaHash(entry.key.get()) ^ 31 * Tova::HashOf(entry.value.get(), depth + 1);
  return hash;
}

void TovaDictionary::Describe(std::string& out, int depth) const {
  out += '{';
  for (const Entry& entry : entries) {
    if (&entry != entries.data()) out += ", ";
    out += entry.key.get()->text;
    out += ": ";
    Tova::Describe(entry.value.get(), out, depth + 1);
  }
  out += '}';
}

TovaTypeRef TovaDictionary::TakeChild() {
  if (!places_.empty()) places_.clear();
  if (entries.empty()) return nullptr;
  TovaTypeRef child = entries.back().value.Detach();
  entries.pop_back();
  return child;
}

size_t TovaDictionary::Find(TovaStringRef key) const {
  if (!places_.empty()) {
    const auto found = places_.find(key->text);
    return found == places_.end() ? entries.size() : found->second;
  }
  size_t place = 0;
  while (place < entries.size() && entries[place].key.get() != key && entries[place].key.get()->text != key->text) {
    ++place;
  }
  return place;
}

void TovaDictionary::Append(Tova::String key, Tova::Value value) {
  entries.push_back({std::move(key), std::move(value)});
  if (!places_.empty()) {
    IndexFrom(entries.size() - 1);
  } else if (entries.size() > kSearchedInOrder) {
    IndexFrom(0);
  }
}

void TovaDictionary::Remove(size_t place) {
  places_.clear();
  entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(place));
  if (entries.size() > kSearchedInOrder) IndexFrom(0);
}

void TovaDictionary::IndexFrom(size_t first) {
  try {
    for (size_t i = first; i < entries.size(); ++i) places_.emplace(entries[i].key.get()->text, i);
  } catch (...) {
    places_.clear();  // a search in order finds everything, an incomplete index does not
    throw;
  }
}

namespace {

TovaDictionary* CopyDictionary(TovaDictionaryRef dictionary, bool canChange) {
  if (!dictionary) return nullptr;
  return Tova::Guarded([&] {
    auto copy = Tova::Adopt(new TovaDictionary(canChange));
    copy.get()->entries.reserve(dictionary->entries.size());
    for (const TovaDictionary::Entry& entry : dictionary->entries) copy.get()->Append(entry.key, entry.value);
    return copy.Detach();
  });
}

void Store(TovaMutableDictionaryRef dictionary, TovaStringRef key, TovaTypeRef value, bool replace) {
  if (!dictionary || !dictionary->isMutable || !key || !value) return;
  Tova::Guarded([&] {
    const size_t place = dictionary->Find(key);
    if (place == dictionary->entries.size()) {
      dictionary->Append(Tova::Share(key), Tova::Share(value));
    } else if (replace) {
      dictionary->entries[place].value = Tova::Share(value);
    }
  });
}

}  // namespace

TovaMutableDictionaryRef TovaDictionaryCreateMutable(void) {
  return Tova::Guarded([] { return new TovaDictionary(true); });
}

TovaDictionaryRef TovaDictionaryCreateCopy(TovaDictionaryRef dictionary) {
  if (dictionary && !dictionary->isMutable) return static_cast<TovaDictionaryRef>(TovaRetain(dictionary));
  return CopyDictionary(dictionary, false);
}

TovaMutableDictionaryRef TovaDictionaryCreateMutableCopy(TovaDictionaryRef dictionary) {
  return CopyDictionary(dictionary, true);
}

TovaIndex TovaDictionaryGetCount(TovaDictionaryRef dictionary) {
  return dictionary ? static_cast<TovaIndex>(dictionary->entries.size()) : 0;
}

TovaTypeRef TovaDictionaryGetValue(TovaDictionaryRef dictionary, TovaStringRef key) {
  if (!dictionary || !key) return nullptr;
  const size_t place = dictionary->Find(key);
  return place < dictionary->entries.size() ? dictionary->entries[place].value.get() : nullptr;
}

TovaStringRef TovaDictionaryGetKeyAtIndex(TovaDictionaryRef dictionary, TovaIndex index) {
  if (index < 0 || index >= TovaDictionaryGetCount(dictionary)) return nullptr;
  return dictionary->entries[static_cast<size_t>(index)].key.get();
}

TovaTypeRef TovaDictionaryGetValueAtIndex(TovaDictionaryRef dictionary, TovaIndex index) {
  if (index < 0 || index >= TovaDictionaryGetCount(dictionary)) return nullptr;
  return dictionary->entries[static_cast<size_t>(index)].value.get();
}

void TovaDictionaryAddValue(TovaMutableDictionaryRef dictionary, TovaStringRef key, TovaTypeRef value) {
  Store(dictionary, key, value, false);
}

void TovaDictionarySetValue(TovaMutableDictionaryRef dictionary, TovaStringRef key, TovaTypeRef value) {
  Store(dictionary, key, value, true);
}

void TovaDictionaryRemoveValue(TovaMutableDictionaryRef dictionary, TovaStringRef key) {
  if (!dictionary || !dictionary->isMutable || !key) return;
  Tova::Guarded([&] {
    const size_t place = dictionary->Find(key);
    if (place < dictionary->entries.size()) dictionary->Remove(place);
  });
}
