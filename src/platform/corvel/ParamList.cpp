#include <corvel/ParamList.h>

#include <algorithm>

namespace corvel {
namespace {

// Finds in a list that may or may not be changed.
template <typename Entries>
auto FindKey(Entries& entries, std::wstring_view key) {
  return std::find_if(entries.begin(), entries.end(),
                      [key](const CParamList::Entry& entry) { return entry.first == key; });
}

}  // namespace

void CParamList::Set(std::wstring_view key, std::wstring_view value) {
  const auto found = FindKey(entries_, key);
  if (found != entries_.end()) {
    found->second = value;
  } else {
    // Copied before the list grows: the texts may be its own.
    entries_.push_back(Entry(key, value));  // NOLINT(modernize-use-emplace): see above.
  }
}

const std::wstring* CParamList::Find(std::wstring_view key) const {
  const auto found = FindKey(entries_, key);
  return found == entries_.end() ? nullptr : &found->second;
}

std::wstring CParamList::Get(std::wstring_view key, std::wstring_view otherwise) const {
  const std::wstring* value = Find(key);
  return value != nullptr ? *value : std::wstring(otherwise);
}

bool CParamList::Remove(std::wstring_view key) {
  const auto found = FindKey(entries_, key);
  if (found == entries_.end()) return false;
  entries_.erase(found);
  return true;
}

}  // namespace corvel
