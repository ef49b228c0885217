// A file as the sink of a filter.
#pragma once

#include <string_view>

#include <corvel/BufferedFile.h>

#include "filters/support/ByteSink.h"

namespace trovan::filters {

class FileSink : public ByteSink {
 public:
  // `file` is open for writing and outlives the sink.
  explicit FileSink(corvel::CBufferedFile& file) : file_(file) {}

  void Write(std::string_view bytes) override { file_.Write(bytes.data(), bytes.size()); }

 private:
  corvel::CBufferedFile& file_;
};

}  // namespace trovan::filters
