// What a filter raises when it cannot do its work on the given input: the message tells what is
// wrong, where, and what helps, in words for the person at the keyboard. UTF-8.
#pragma once

#include <stdexcept>

namespace trovan::filters {

class FilterError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace trovan::filters
