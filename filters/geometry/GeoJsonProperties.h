// The "properties" of a GeoJSON feature as named texts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <corvel/ParamList.h>

namespace trovan::filters {

// Takes the members as they stand in the file. A text becomes itself, a number its digits, a truth
// value "true" or "false"; null becomes nothing. An object or array in it becomes its JSON.
class GeoJsonProperties {
 public:
  void Clear();

  void Key(std::string_view key);
  void Text(std::string_view text);
  void Literal(std::string_view number);  // or truth value
  void Null();
  void Begin(char bracket);  // of an object or array as a value
  void End(char bracket);

  // Gives the property, unless there is one of this name. (The identifier of a feature stands
  // beside its properties.)
  void SetIfNew(std::string_view key, std::string_view text);

  const corvel::CParamList& Params() const { return params_; }

 private:
  void Separate();
  void Set(std::string_view text);

  corvel::CParamList params_;
  std::string key_;            // of the property that comes
  std::vector<bool> nesting_;  // of the arrays and objects in it: whether they have items
  std::string json_;           // what there is of them
  bool afterKey_ = false;      // the item that comes has its key
};

}  // namespace trovan::filters
