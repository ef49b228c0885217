// An owned ICU converter.
#pragma once

#include <memory>

#include <unicode/ucnv.h>

namespace kerno {

struct IcuConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using IcuConverter = std::unique_ptr<UConverter, IcuConverterCloser>;

// Null if ICU does not know the name.
inline IcuConverter OpenIcuConverter(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  IcuConverter converter(ucnv_open(name, &error));
  return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

}  // namespace kerno
