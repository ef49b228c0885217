#include "SvgPathData.h"

#include <cmath>
#include <utility>

#include "SvgArc.h"
#include "SvgScanner.h"

namespace trovan::filters {
namespace {

using corvel::Vec2d;

// Reads commands one after the other. Lower case letters are relative to where the path has come.
class PathReader {
 public:
  explicit PathReader(std::string_view text) : scanner_(text) {}

  SvgPathData Read() {
    SvgPathData data;
    scanner_.SkipSpace();
    while (!scanner_.AtEnd()) {
      if (!ReadCommand()) {
        data.fault = scanner_.Position();
        break;
      }
    }
    data.outline = std::move(outline_);
    return data;
  }

 private:
  // The letter and all its arguments, each set of which is a command of its own.
  bool ReadCommand() {
    const char letter = scanner_.Peek();
    isRelative_ = letter >= 'a';
    char command = isRelative_ ? static_cast<char>(letter - 'a' + 'A') : letter;
    const bool isKnown = std::string_view("MLHVCSQTAZ").find(command) != std::string_view::npos;
    if (letter == '\0' || !isKnown || (!isStarted_ && command != 'M')) return false;
    scanner_.Skip(letter);
    scanner_.SkipSpace();
    if (command == 'Z') return Close();
    do {
      isFirst_ = true;
      if (!ReadArguments(command)) return false;
      last_ = command;
      if (command == 'M') command = 'L';  // more pairs are lines
    } while (MoreArguments());
    return true;
  }

  // A comma must be followed by one more set.
  bool MoreArguments() {
    scanner_.SkipSpace();
    const std::size_t end = scanner_.Position();
    const bool comma = scanner_.SkipComma();
    const char next = scanner_.Peek();
    const bool isNumber = (next >= '0' && next <= '9') || next == '.' || next == '-' || next == '+';
    if (comma && !isNumber) scanner_.MoveTo(end);
    return isNumber;
  }

  // Before each argument but the first one of a set.
  void SkipToArgument() {
    if (!isFirst_) scanner_.SkipComma();
    isFirst_ = false;
  }

  bool ReadArguments(char command) {
    switch (command) {
      case 'M':
        return Move();
      case 'L':
        return ReadPoint(to_) && Line();
      case 'H':
        to_ = here_;
        return ReadOne(to_.x, here_.x) && Line();
      case 'V':
        to_ = here_;
        return ReadOne(to_.y, here_.y) && Line();
      case 'C':
        return ReadPoint(control1_) && ReadPoint(control2_) && ReadPoint(to_) && Cubic();
      case 'S':
        control1_ = last_ == 'C' || last_ == 'S' ? Mirrored(control2_) : here_;
        return ReadPoint(control2_) && ReadPoint(to_) && Cubic();
      case 'Q':
        return ReadPoint(control1_) && ReadPoint(to_) && Quadratic();
      case 'T':
        control1_ = last_ == 'Q' || last_ == 'T' ? Mirrored(control1_) : here_;
        return ReadPoint(to_) && Quadratic();
      default:
        return Arc();
    }
  }

  bool ReadOne(double& value, double origin) {
    SkipToArgument();
    const std::size_t start = scanner_.Position();
    if (!scanner_.ReadNumber(value)) return false;
    if (isRelative_) value += origin;
    if (!std::isfinite(value)) {
      scanner_.MoveTo(start);
      return false;
    }
    return true;
  }

  bool ReadPoint(Vec2d& point) { return ReadOne(point.x, here_.x) && ReadOne(point.y, here_.y); }

  // Behind a closed line the next one starts where that one did.
  void StartIfClosed() {
    if (!isClosed_) return;
    outline_.MoveTo(here_);
    isClosed_ = false;
  }

  bool Move() {
    if (!ReadPoint(to_)) return false;
    outline_.MoveTo(to_);
    isStarted_ = true;
    isClosed_ = false;
    here_ = to_;
    start_ = to_;
    return true;
  }

  bool Line() {
    StartIfClosed();
    outline_.LineTo(to_);
    here_ = to_;
    return true;
  }

  bool Cubic() {
    StartIfClosed();
    outline_.CurveTo(control1_, control2_, to_);
    here_ = to_;
    return true;
  }

  bool Quadratic() {
    StartIfClosed();
    outline_.CurveTo(here_ + (control1_ - here_) * (2.0 / 3.0),
                     to_ + (control1_ - to_) * (2.0 / 3.0), to_);
    here_ = to_;
    return true;
  }

  bool ReadRadius(double& value) {
    const bool wasRelative = isRelative_;
    isRelative_ = false;
    const bool isRead = ReadOne(value, 0.0);
    isRelative_ = wasRelative;
    return isRead;
  }

  bool ReadFlag(bool& flag) {
    SkipToArgument();
    return scanner_.ReadFlag(flag);
  }

  bool Arc() {
    SvgArc arc;
    const bool isRead = ReadRadius(arc.xRadius) && ReadRadius(arc.yRadius) &&
                        ReadRadius(arc.rotation) && ReadFlag(arc.isLarge) &&
                        ReadFlag(arc.isSweep) && ReadPoint(to_);
    if (!isRead) return false;
    StartIfClosed();
    AddArc(arc, here_, to_, outline_);
    here_ = to_;
    return true;
  }

  bool Close() {
    if (!isClosed_) outline_.Close();
    isClosed_ = true;
    here_ = start_;
    last_ = 'Z';
    return true;
  }

  Vec2d Mirrored(const Vec2d& control) const { return here_ * 2.0 - control; }

  SvgScanner scanner_;
  SvgOutline outline_;
  bool isRelative_ = false;
  bool isFirst_ = true;  // of a set of arguments
  bool isStarted_ = false;
  bool isClosed_ = false;
  char last_ = 'Z';
  Vec2d here_;
  Vec2d start_;  // of the line
  Vec2d control1_;
  Vec2d control2_;
  Vec2d to_;
};

}  // namespace

SvgPathData ParsePathData(std::string_view text) { return PathReader(text).Read(); }

}  // namespace trovan::filters
