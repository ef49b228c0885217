// The SHA-256 of bytes in hexadecimal, as `sha256sum` prints it.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include <openssl/evp.h>

namespace trovan::test {

inline std::string Sha256(std::string_view bytes) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned length = 0;
  if (EVP_Digest(bytes.data(), bytes.size(), digest, &length, EVP_sha256(), nullptr) != 1) {
    throw std::runtime_error("the cryptographic library cannot work out a SHA-256");
  }
  std::string text;
  for (unsigned i = 0; i < length; ++i) {
    text += "0123456789abcdef"[digest[i] >> 4];
    text += "0123456789abcdef"[digest[i] & 0xF];
  }
  return text;
}

}  // namespace trovan::test
