// A filter that reads files: it makes an object of each thing that it finds, and hands it to the
// application's manager.
#pragma once

#include <string>

#include <corvel/Geometry.h>

#include <quillon/Export.h>
#include <quillon/IoFilter.h>
#include <quillon/IoManager.h>
#include <quillon/TrBase.h>

namespace quillon {

// The order of the virtual operations is fixed.
class QUILLON_API IoImportFilter : public IoFilter {
 public:
  // How much of a file may be read to tell about it.
  enum FileScanMode : int {
    kScanHeader = 0,  // little: its start
    kScanFile = 1,    // all of it
  };

  // What is known of a file before it is imported.
  struct ImportFileInfo {
    bool isKnown = false;  // the rest says something
    corvel::Box2d extent;  // of what it holds; the empty box: not known
    std::wstring summary;  // in a few words, for the user
  };

  ~IoImportFilter() override;

  // Here: nothing is known.
  virtual ImportFileInfo GetImportFileInfo(FileScanMode mode, const std::wstring& path);

  // Whether objects may come after ImportFromFile has returned. Here: no.
  virtual bool HasDelayedImport();

  // Reads the file, or its bytes, and delivers what it holds by ImportObject. `isPreview`: the user
  // only looks, so that a rough result is enough.
  //
  // Here: raises std::runtime_error, since the filter reads no files, or no bytes.
  virtual void ImportFromFile(const std::wstring& path, bool isPreview);
  virtual void ImportFromMemory(const unsigned char* bytes, unsigned int count, bool isPreview);

  // Delivers an object to the manager.
  virtual void ImportObject(TrBase& object) const;

 protected:
  // `manager` is borrowed and must outlive the filter.
  explicit IoImportFilter(IoManager& manager);

 private:
  IoManager& manager_;
};

}  // namespace quillon
