// The program's environment during a test.
#pragma once

#include <optional>
#include <stdlib.h>
#include <string>

namespace trovan::test {

// Sets a variable of the environment, or takes it away, while it lives.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::optional<std::string>& value) : name_(name) {
    if (const char* before = ::getenv(name)) before_ = before;
    Put(value);
  }
  ~ScopedVariable() { Put(before_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void Put(const std::optional<std::string>& value) {
    if (value) {
      ::setenv(name_.c_str(), value->c_str(), 1);
    } else {
      ::unsetenv(name_.c_str());
    }
  }

  std::string name_;
  std::optional<std::string> before_;
};

}  // namespace trovan::test
