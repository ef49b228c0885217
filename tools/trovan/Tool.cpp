#include "Tool.h"

#include <clocale>
#include <cstdio>
#include <exception>
#include <functional>
#include <new>

#include <CLI/CLI.hpp>

#include <corvel/Console.h>
#include <corvel/Exception.h>

#include "Printable.h"
#include "StandardOutput.h"
#include "clip/ClipCommand.h"
#include "lattice/LatticeCommand.h"
#include "table/TableCommand.h"
#include "text/TextCommand.h"

namespace trovan::tool {
namespace {

int Fail(const char* reason) {
  std::fprintf(stderr, "trovan: %s\n", Printable(reason).c_str());
  return kFailed;
}

// Parsing has happened; does what it asked for.
int Work(const std::function<int()>& work) {
  try {
    return work();
  } catch (const ClosedPipe&) {
    return kDone;  // whoever reads the output has seen enough
  } catch (const std::bad_alloc&) {
    return Fail("out of memory");
  } catch (const corvel::Exception& error) {
    return Fail(error.Message().c_str());  // the source file and line are no news to a user
  } catch (const std::exception& error) {
    return Fail(error.what());
  }
}

}  // namespace

int Run(int argc, char** argv) {
  // The character set of the user's locale is what GetACP goes by. All else stays as in C.
  std::setlocale(LC_CTYPE, "");
  corvel::WatchForInterrupt();
  CLI::App app("Reads what map filters read.");
  app.name("trovan");
  app.set_version_flag("--version", "trovan " TROVAN_VERSION);
  app.require_subcommand(1);
  app.footer("Exit codes: 0 done, 1 failed or done in part, 2 wrong arguments, 130 interrupted.");

  std::function<int()> work;
  AddTableCommand(app, work);
  AddClipCommand(app, work);
  AddLatticeCommand(app, work);
  AddTextCommand(app, work);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& wanted) {  // --help, --version
    return app.exit(wanted);
  } catch (const CLI::ParseError& error) {
    app.exit(error);
    return kBadUsage;
  }
  return Work(work);
}

}  // namespace trovan::tool
