#include "Utf8Codec.h"

#include "Utf8Write.h"

namespace kerno {
namespace {

// What begins at a place of a text.
struct Sequence {
  enum Kind { kCharacter, kMalformed, kCut } kind;
  std::size_t length;  // if cut: all that is left
};

// The bytes that may follow a first byte. Only the second byte's range ever differs from 80..BF.
struct Followers {
  std::size_t count;  // 0: the byte begins nothing
  unsigned char secondLow;
  unsigned char secondHigh;
};

constexpr Followers FollowersOf(unsigned char first) {
  if (first < 0xC2) return {0, 0, 0};  // a follower itself, or overlong
  if (first < 0xE0) return {1, 0x80, 0xBF};
  if (first == 0xE0) return {2, 0xA0, 0xBF};  // below: overlong
  if (first == 0xED) return {2, 0x80, 0x9F};  // above: surrogates
  if (first < 0xF0) return {2, 0x80, 0xBF};
  if (first == 0xF0) return {3, 0x90, 0xBF};  // below: overlong
  if (first < 0xF4) return {3, 0x80, 0xBF};
  if (first == 0xF4) return {3, 0x80, 0x8F};  // above: beyond U+10FFFF
  return {0, 0, 0};
}

// REQUIRES: next != end.
Sequence SequenceAt(const char* next, const char* end) {
  const auto first = static_cast<unsigned char>(*next);
  if (first < 0x80) return {Sequence::kCharacter, 1};
  const Followers followers = FollowersOf(first);
  if (followers.count == 0) return {Sequence::kMalformed, 1};
  const auto available = static_cast<std::size_t>(end - next);
  unsigned char low = followers.secondLow;
  unsigned char high = followers.secondHigh;
  for (std::size_t i = 1; i <= followers.count; ++i) {
    if (i == available) return {Sequence::kCut, available};
    const auto byte = static_cast<unsigned char>(next[i]);
    if (byte < low || byte > high) return {Sequence::kMalformed, i};
    low = 0x80;
    high = 0xBF;
  }
  return {Sequence::kCharacter, followers.count + 1};
}

// The end of the well-formed text that begins at `next`.
const char* SkipCharacters(const char* next, const char* end) {
  while (next != end) {
    next = SkipAscii(next, end);
    while (next != end && static_cast<unsigned char>(*next) >= 0x80) {
      const Sequence sequence = SequenceAt(next, end);
      if (sequence.kind != Sequence::kCharacter) return next;
      next += sequence.length;
    }
  }
  return next;
}

}  // namespace

void Utf8Codec::Reset() { held_.clear(); }

std::size_t Utf8Codec::CompleteHeld(std::string_view& bytes, std::string& utf8) {
  while (!bytes.empty()) {
    held_ += bytes.front();
    const Sequence sequence = SequenceAt(held_.data(), held_.data() + held_.size());
    if (sequence.kind == Sequence::kMalformed) {
      // What was held cannot go on with this byte, which begins something of its own.
      held_.clear();
      utf8 += kReplacementUtf8;
      return 1;
    }
    bytes.remove_prefix(1);
    if (sequence.kind == Sequence::kCharacter) {
      utf8 += held_;
      held_.clear();
      return 0;
    }
  }
  return 0;
}

std::size_t Utf8Codec::AppendPiece(std::string_view bytes, bool last, std::string& utf8) {
  std::size_t malformed = 0;
  if (!held_.empty()) malformed += CompleteHeld(bytes, utf8);
  const char* next = bytes.data();
  const char* const end = next + bytes.size();
  while (next != end) {
    const char* const wrong = SkipCharacters(next, end);
    utf8.append(next, wrong);
    next = wrong;
    if (next == end) break;
    const Sequence sequence = SequenceAt(next, end);
    if (sequence.kind == Sequence::kCut) {
      held_.assign(next, end);
      break;
    }
    utf8 += kReplacementUtf8;
    ++malformed;
    next += sequence.length;
  }
  if (last && !held_.empty()) {
    held_.clear();
    utf8 += kReplacementUtf8;
    ++malformed;
  }
  return malformed;
}

std::size_t Utf8Codec::Encode(std::u32string_view text, std::string& bytes) {
  std::size_t unmappable = 0;
  for (const char32_t character : text) {
    if (character == kNoCharacter) {
      bytes += kReplacementUtf8;
      ++unmappable;
    } else {
      AppendUtf8(character, bytes);
    }
  }
  return unmappable;
}

}  // namespace kerno
