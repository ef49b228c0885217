// Where virtual operations stand in the table of their class.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace quillon {

#if defined(__x86_64__) && !defined(_WIN32)
#define QUILLON_TEST_KNOWS_SLOTS

// The slot of an operation behind the destructor, which has slot 0. Itanium C++ ABI, 2.3 and 2.5.2:
// a pointer to a virtual member is 1 plus the offset in the table, which has two entries for the
// destructor.
template <class Member>
std::size_t SlotOf(Member member) {
  std::uintptr_t words[2];
  static_assert(sizeof member == sizeof words);
  std::memcpy(words, &member, sizeof words);
  return (words[0] - 1) / sizeof(void*) - 1;
}
#endif

}  // namespace quillon
