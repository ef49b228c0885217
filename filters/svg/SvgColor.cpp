#include "SvgColor.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include "SvgColorNames.h"
#include "SvgScanner.h"

namespace trovan::filters {
namespace {

using corvel::Color4b;

std::uint8_t ByteOf(double value) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

// #rgb and so on: one or two digits a part.
std::optional<Color4b> ParseHex(std::string_view digits) {
  const std::size_t count = digits.size();
  if (count != 3 && count != 4 && count != 6 && count != 8) return {};
  std::uint32_t value = 0;
  const auto parsed = std::from_chars(digits.data(), digits.data() + count, value, 16);
  if (parsed.ec != std::errc() || parsed.ptr != digits.data() + count) return {};
  const unsigned bits = count <= 4 ? 4 : 8;
  const unsigned mask = (1U << bits) - 1;
  const unsigned unit = count <= 4 ? 17 : 1;
  const unsigned parts = count == 3 || count == 6 ? 3 : 4;
  std::uint8_t bytes[4] = {0, 0, 0, 255};
  for (unsigned i = 0; i < parts; ++i) {
    bytes[i] = static_cast<std::uint8_t>((value >> bits * (parts - 1 - i) & mask) * unit);
  }
  return Color4b(bytes[0], bytes[1], bytes[2], bytes[3]);
}

struct Argument {
  double number = 0.0;
  bool isPercentage = false;
};

// How many degrees the unit of an angle has.
std::optional<double> DegreesIn(std::string_view unit) {
  if (unit.empty() || EqualsIgnoringCase(unit, "deg")) return 1.0;
  if (EqualsIgnoringCase(unit, "grad")) return 360.0 / 400.0;
  if (EqualsIgnoringCase(unit, "rad")) return 180.0 / std::numbers::pi;
  if (EqualsIgnoringCase(unit, "turn")) return 360.0;
  return {};
}

// Behind the parenthesis, to its end: numbers and percentages between commas, spaces or a slash.
std::optional<std::vector<Argument>> ReadArguments(SvgScanner& scanner) {
  std::vector<Argument> arguments;
  scanner.SkipSpace();
  Argument argument;
  while (scanner.ReadNumber(argument.number)) {
    if (!std::isfinite(argument.number)) return {};
    argument.isPercentage = scanner.Skip('%');
    if (!argument.isPercentage) {
      const auto degrees = DegreesIn(scanner.ReadName());
      if (!degrees) return {};
      argument.number *= *degrees;
    }
    arguments.push_back(argument);
    if (!scanner.SkipComma() && scanner.Skip('/')) scanner.SkipSpace();
  }
  if (!scanner.Skip(')') || !scanner.AtEnd()) return {};
  if (arguments.size() != 3 && arguments.size() != 4) return {};
  return arguments;
}

std::uint8_t Alpha(const std::vector<Argument>& arguments) {
  if (arguments.size() < 4) return 255;
  return ByteOf(arguments[3].number * 255.0 / (arguments[3].isPercentage ? 100.0 : 1.0));
}

std::uint8_t Part(const Argument& argument) {
  return ByteOf(argument.isPercentage ? argument.number * 255.0 / 100.0 : argument.number);
}

// One part of a colour of that hue, as "CSS Color Module Level 4" works it out in section 7.1:
// `turn` is 0 for red, 8 for green, 4 for blue.
std::uint8_t PartOfHue(double turn, double hue, double saturation, double lightness) {
  const double k = std::fmod(turn + hue / 30.0, 12.0);
  const double chroma = saturation * std::min(lightness, 1.0 - lightness);
  return ByteOf(255.0 * (lightness - chroma * std::clamp(std::min(k - 3.0, 9.0 - k), -1.0, 1.0)));
}

Color4b OfHue(const std::vector<Argument>& arguments) {
  double hue = std::fmod(arguments[0].number, 360.0);
  if (hue < 0.0) hue += 360.0;
  const double saturation = std::clamp(arguments[1].number / 100.0, 0.0, 1.0);
  const double lightness = std::clamp(arguments[2].number / 100.0, 0.0, 1.0);
  return {PartOfHue(0.0, hue, saturation, lightness), PartOfHue(8.0, hue, saturation, lightness),
          PartOfHue(4.0, hue, saturation, lightness), Alpha(arguments)};
}

std::optional<Color4b> ParseFunction(std::string_view text) {
  SvgScanner scanner(text);
  const std::string_view name = scanner.ReadName();
  const bool isRgb = EqualsIgnoringCase(name, "rgb") || EqualsIgnoringCase(name, "rgba");
  const bool isHsl = EqualsIgnoringCase(name, "hsl") || EqualsIgnoringCase(name, "hsla");
  if ((!isRgb && !isHsl) || !scanner.Skip('(')) return {};
  const auto arguments = ReadArguments(scanner);
  if (!arguments) return {};
  if (isHsl) return OfHue(*arguments);
  return Color4b(Part((*arguments)[0]), Part((*arguments)[1]), Part((*arguments)[2]),
                 Alpha(*arguments));
}

}  // namespace

std::optional<Color4b> ParseColor(std::string_view text, const Color4b& current) {
  text = TrimSpace(text);
  if (text.starts_with('#')) return ParseHex(text.substr(1));
  if (text.ends_with(')')) return ParseFunction(text);
  if (EqualsIgnoringCase(text, "currentcolor")) return current;
  if (EqualsIgnoringCase(text, "transparent")) return Color4b();
  return ColorOfName(text);
}

Color4b WithOpacity(const Color4b& color, double factor) {
  return {color.red, color.green, color.blue, ByteOf(color.alpha * factor)};
}

std::optional<SvgPaint> ParsePaint(std::string_view text) {
  text = TrimSpace(text);
  SvgPaint paint;
  if (EqualsIgnoringCase(text, "none")) return paint;
  std::string_view rest = text;
  paint.reference = ParseReference(text, &rest);
  paint.kind = paint.reference.empty() ? SvgPaint::Kind::kColor : SvgPaint::Kind::kReference;
  rest = TrimSpace(rest);
  const bool isReference = paint.kind == SvgPaint::Kind::kReference;
  if (isReference && (rest.empty() || EqualsIgnoringCase(rest, "none"))) return paint;
  // A colour by profile may follow the plain one: "#CD853F icc-color(acmecmyk, 0.11)".
  const std::size_t profile = rest.find("icc-color");
  const auto color = ParseColor(rest.substr(0, profile));
  if (!color) return {};
  paint.color = *color;
  paint.isCurrentColor = EqualsIgnoringCase(rest, "currentcolor");
  paint.hasFallback = isReference;
  return paint;
}

std::string ParseReference(std::string_view text, std::string_view* rest) {
  SvgScanner scanner(text);
  scanner.SkipSpace();
  if (!EqualsIgnoringCase(scanner.ReadName(), "url") || !scanner.Skip('(')) return {};
  const std::string_view inside = TrimSpace(scanner.ReadUntil(")"));
  if (!scanner.Skip(')')) return {};
  if (rest != nullptr) *rest = scanner.Rest();
  std::string_view name = inside;
  if (name.size() >= 2 && (name.front() == '"' || name.front() == '\'') &&
      name.back() == name.front()) {
    name = TrimSpace(name.substr(1, name.size() - 2));
  }
  if (!name.starts_with('#')) return {};
  return std::string(name.substr(1));
}

}  // namespace trovan::filters
