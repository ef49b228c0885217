// The messages that are logged during a test.
#pragma once

#include <string>
#include <vector>

#include <corvel/Logger.h>

namespace trovan::test {

// Takes the messages of the global logger while it lives.
class CapturedLog {
 public:
  struct Message {
    int level;
    std::wstring text;
  };

  CapturedLog() {
    corvel::g_Logger.SetSink([this](int level, const std::wstring& text) {
      messages_.push_back({level, text});
    });
  }
  ~CapturedLog() { corvel::g_Logger.SetSink({}); }
  CapturedLog(const CapturedLog&) = delete;
  CapturedLog& operator=(const CapturedLog&) = delete;

  const std::vector<Message>& Messages() const { return messages_; }

 private:
  std::vector<Message> messages_;
};

}  // namespace trovan::test
