// The C library's locale during a test.
#pragma once

#include <clocale>
#include <string>

namespace trovan::test {

// Sets the locale for all categories while it lives, if the system has it.
class ScopedLocale {
 public:
  explicit ScopedLocale(const char* name)
      : before_(std::setlocale(LC_ALL, nullptr)), set_(std::setlocale(LC_ALL, name) != nullptr) {}
  ~ScopedLocale() { std::setlocale(LC_ALL, before_.c_str()); }
  ScopedLocale(const ScopedLocale&) = delete;
  ScopedLocale& operator=(const ScopedLocale&) = delete;

  bool IsSet() const { return set_; }

 private:
  std::string before_;
  bool set_;
};

}  // namespace trovan::test
