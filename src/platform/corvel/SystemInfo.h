// What the program knows of the system and the user that it runs for.
//
//   Singleton<CSystemInfo>::Instance().DefDecimalChar();  // L',' for a German user
#pragma once

#include <atomic>

#include <corvel/Export.h>

namespace corvel {

// The one object of a class, made at its first use.
//
// Each shared library that instantiates the template has an object of its own. A class that must
// be one for the whole program declares a specialisation of Instance() in its header, and defines
// it in its library, as CSystemInfo does.
template <class T>
class Singleton {
 public:
  static T& Instance() {
    static T instance;
    return instance;
  }
};

// The user's settings, read once, when the object is made. All functions may be called from any
// thread at any time.
class CORVEL_API CSystemInfo {
 public:
  // Reads the settings of the environment. The program's own locale (setlocale) is neither used nor
  // changed.
  CSystemInfo();

  CSystemInfo(const CSystemInfo&) = delete;
  CSystemInfo& operator=(const CSystemInfo&) = delete;

  // The decimal character of the user's locale; '.' where the locale is unknown or has not exactly
  // one such character.
  wchar_t DefDecimalChar() const { return decimalChar_.load(std::memory_order_relaxed); }

  // For an application that lets its user choose.
  void SetDefDecimalChar(wchar_t decimalChar) {
    decimalChar_.store(decimalChar, std::memory_order_relaxed);
  }

 private:
  std::atomic<wchar_t> decimalChar_;
};

// One for the whole program, whichever library asks.
template <>
CORVEL_API CSystemInfo& Singleton<CSystemInfo>::Instance();

// Whether numbers have a point before their decimals in the C library's current locale (setlocale,
// uselocale), which strtod and printf go by.
CORVEL_API bool LocaleDecimalIsPoint();

}  // namespace corvel
