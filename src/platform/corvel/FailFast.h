// gsl::fail_fast: what a broken precondition of the program raises, such as a null buffer.
//
// Releases of the Guidelines Support Library differ: some declare it, others end the program
// instead. Where the installed one declares nothing, it is declared here, so that callers can rely
// on an exception everywhere.
#pragma once

#include <stdexcept>

#include <corvel/Export.h>

#if defined(CORVEL_GSL_HAS_FAIL_FAST)
#include <gsl/gsl>
#else
namespace gsl {

struct CORVEL_API fail_fast : std::logic_error {
  using std::logic_error::logic_error;
};

}  // namespace gsl
#endif
