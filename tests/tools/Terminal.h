// Runs the trovan command on a terminal, with a person at the keyboard.
//
//   Terminal terminal({"lattice", "convert", "in.img", "out.vtk"});
//   ASSERT_TRUE(terminal.WaitFor("[y/N] "));
//   terminal.Type("y\n");
//   EXPECT_EQ(terminal.Wait(), 0) << terminal.Screen();
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace trovan::test {

class Terminal {
 public:
  // Raises when there is no terminal to be had or the command cannot be started.
  explicit Terminal(const std::vector<std::string>& arguments);
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // Reads until the screen shows the text. False when the command ends without it.
  bool WaitFor(const std::string& text);

  // As at a keyboard: "\x03" is Ctrl-C, "\x04" at the start of a line the end of the input.
  void Type(const std::string& keys) const;

  // All that came, echoes of the keys too. Lines end with CR LF.
  const std::string& Screen() const { return screen_; }

  // Reads the rest and waits for the end: its exit code, -1 when a signal ended the command.
  int Wait();

 private:
  bool ReadMore();

  pid_t id_ = -1;
  int keyboard_ = -1;
  bool reaped_ = false;
  std::string screen_;
};

}  // namespace trovan::test
