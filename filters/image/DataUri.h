// Bytes that stand in an address (RFC 2397, "The data URL scheme").
//
//   DecodeDataUri("data:image/png;base64,iVBORw0K");
#pragma once

#include <string>
#include <string_view>

namespace trovan::filters {

// Whether the address has the scheme "data", in any case.
bool IsDataUri(std::string_view address);

// The bytes. The media type is passed over. Bytes may be given by a percent sign and two digits
// everywhere; white space within base64 (RFC 4648, section 4) does not count, and the padding at
// its end may be missing.
//
// Raises FilterError, in words without a subject in front, when there is no comma, and where base64
// has other characters or ends within a byte.
// REQUIRES: IsDataUri(address).
std::string DecodeDataUri(std::string_view address);

// The text with its bytes in place of what stands for them: "%20" is a blank. A percent sign
// without two digits behind it stands for itself.
std::string DecodePercents(std::string_view text);

}  // namespace trovan::filters
