#include "NumberField.h"

#include <algorithm>
#include <string>

#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool ReadWithPoint(std::string_view number, double& value) {
  return IsNumber(number) && ParseNumber(number, value) == NumberStatus::kNumber;
}

}  // namespace

bool ReadNumberField(std::string_view text, char decimal, double& value) {
  const std::string_view number = WithoutBlanks(text);
  if (decimal == '.' || number.find(decimal) == std::string_view::npos) {
    const bool wrongPoint = decimal != '.' && number.find('.') != std::string_view::npos;
    return !wrongPoint && ReadWithPoint(number, value);
  }
  if (number.find('.') != std::string_view::npos) return false;
  std::string pointed(number);
  std::replace(pointed.begin(), pointed.end(), decimal, '.');
  return ReadWithPoint(pointed, value);
}

}  // namespace trovan::filters
