// The program's environment during a test.
#pragma once

#include <optional>
#include <stdlib.h>
#include <string>

namespace trovan::test {

// Gives a variable of the environment another value while it lives; null takes the variable away.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* before = ::getenv(name)) before_ = before;
    Put(value);
  }
  ~ScopedVariable() { Put(before_ ? before_->c_str() : nullptr); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void Put(const char* value) const {
    if (value != nullptr) {
      ::setenv(name_.c_str(), value, 1);
    } else {
      ::unsetenv(name_.c_str());
    }
  }

  std::string name_;
  std::optional<std::string> before_;
};

}  // namespace trovan::test
