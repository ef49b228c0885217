#include "ElementRuns.h"

#include <utility>

namespace trovan::filters {
namespace {

void Put(OutputBuffer& out, const char* start, const char* name, const std::string& style,
         const std::string& rest) {
  out.Put(start);
  out.Put(name);
  out.Put(style);
  out.Put(rest);
  out.Put('\n');
}

}  // namespace

void ElementRuns::Add(const std::string& style, const char* name, std::string rest) {
  if (count_ > 0 && style != style_) End();
  if (count_ == 0) {
    style_ = style;
    firstName_ = name;
    firstRest_ = std::move(rest);
  } else {
    // Without a style there is nothing to share.
    const char* indented = style_.empty() ? "<" : "  <";
    if (count_ == 1) {
      if (!style_.empty()) Put(out_, "<", "g", style_, ">");
      Put(out_, indented, firstName_, {}, firstRest_);
    }
    Put(out_, indented, name, {}, rest);
  }
  ++count_;
  out_.FlushIfFull();
}

void ElementRuns::End() {
  if (count_ == 1) Put(out_, "<", firstName_, style_, firstRest_);
  if (count_ > 1 && !style_.empty()) out_.Put("</g>\n");
  count_ = 0;
  firstRest_.clear();
  out_.FlushIfFull();
}

}  // namespace trovan::filters
