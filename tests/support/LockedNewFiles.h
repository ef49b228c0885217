// New files that cannot be opened a second time.
//
//   const LockedNewFiles locked;
//   EXPECT_THROW(MakeAndOpen(), corvel::Exception);   // made, but not opened
#pragma once

#include <linux/capability.h>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace trovan::test {

// While it lives, the files that this thread makes permit nothing to anybody. That counts for the
// superuser too, who gives up the power to overrule permissions meanwhile.
class LockedNewFiles {
 public:
  LockedNewFiles() {
    if (::syscall(SYS_capget, &header_, before_) != 0) throw std::runtime_error("no capabilities");
    __user_cap_data_struct fewer[_LINUX_CAPABILITY_U32S_3] = {before_[0], before_[1]};
    fewer[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
    if (::syscall(SYS_capset, &header_, fewer) != 0) {
      throw std::runtime_error("the capabilities cannot be changed");
    }
    mask_ = ::umask(0777);
  }
  ~LockedNewFiles() {
    ::umask(mask_);
    ::syscall(SYS_capset, &header_, before_);
  }
  LockedNewFiles(const LockedNewFiles&) = delete;
  LockedNewFiles& operator=(const LockedNewFiles&) = delete;

 private:
  __user_cap_header_struct header_{_LINUX_CAPABILITY_VERSION_3, 0};  // of this thread
  __user_cap_data_struct before_[_LINUX_CAPABILITY_U32S_3]{};
  mode_t mask_ = 0;
};

}  // namespace trovan::test
