// The named texts that every drawing object carries from the file that it was read from to the file
// that it is written to.
//
//   CParamList params;
//   params.Set(L"layer", L"roads");
//   params.Set(L"layer", L"rivers");  // replaces, in the same place
//   params.Get(L"layer");             // L"rivers"
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <corvel/Export.h>

namespace corvel {

// A list of pairs of key and value in the order in which the keys were first set. Each key stands
// there once; keys that differ in case differ. Made for the few entries of one object: finding one
// takes time in proportion to their number.
class CORVEL_API CParamList {
 public:
  using Entry = std::pair<std::wstring, std::wstring>;  // key, value
  using const_iterator = std::vector<Entry>::const_iterator;

  // Adds the pair at the end, or gives the key that is there its new value in its old place.
  void Set(std::wstring_view key, std::wstring_view value);

  // The value of the key; null if it is not there. Valid until the list changes.
  const std::wstring* Find(std::wstring_view key) const;

  // The value of the key, or `otherwise` if it is not there.
  std::wstring Get(std::wstring_view key, std::wstring_view otherwise = {}) const;

  // Takes the pair out; false if it was not there. The others keep their order.
  bool Remove(std::wstring_view key);

  void Clear() { entries_.clear(); }
  std::size_t Size() const { return entries_.size(); }
  bool IsEmpty() const { return entries_.empty(); }

  const_iterator begin() const { return entries_.begin(); }
  const_iterator end() const { return entries_.end(); }

  // The same pairs in the same order.
  friend bool operator==(const CParamList&, const CParamList&) = default;

 private:
  std::vector<Entry> entries_;
};

}  // namespace corvel
