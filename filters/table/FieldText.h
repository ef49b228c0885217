// How the stored forms of values become text. Pure functions; what they append is ASCII.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace trovan::filters {

// `text` without blanks and NUL bytes at its end, or at both ends.
std::string_view TrimEnd(std::string_view text);
std::string_view TrimBoth(std::string_view text);

// Appends the date YYYYMMDD as YYYY-MM-DD. False, appending nothing, when `digits` is no date.
bool AppendIsoDate(std::string_view digits, std::string& out);

// Appends a day and a time of that day as YYYY-MM-DDTHH:MM:SS, with .mmm unless that is 0.
// `julianDay` counts from 1 January 4713 BC. False when the day lies outside the years 1 to 9999 or
// the time outside the day.
bool AppendDateTime(std::int64_t julianDay, std::int64_t milliseconds, std::string& out);

// Appends a time stamp of dBASE 7: milliseconds, counted from the day before 1 January of the year
// 1, as AppendDateTime does. False when it lies outside the years 1 to 9999.
bool AppendTimestamp(double milliseconds, std::string& out);

// Appends ten-thousandths as a number with four decimals.
void AppendCurrency(std::int64_t tenThousandths, std::string& out);

// Appends two hexadecimal digits for each byte.
void AppendHex(std::string_view bytes, std::string& out);

}  // namespace trovan::filters
