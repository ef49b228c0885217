// A drawing of another program in its own format, which is handed on as it is.
//
//   TrMetafile picture(bytes, Box2d(0, 0, 40, 20));
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <corvel/Geometry.h>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

class QUILLON_API TrMetafile : public TrBase {
 public:
  static const corvel::CTypeInfo* GetClassTypeId();

  // `bytes` are those of the metafile; it fills the box.
  explicit TrMetafile(std::vector<unsigned char> bytes = {}, const corvel::Box2d& box = {});

  const corvel::CTypeInfo* GetTypeId() const override;
  std::unique_ptr<TrBase> Clone() const override;

  // Raises unless the box is finite; nobody looks into the bytes.
  void AssertValid() const override;
  std::wstring Description() const override;

  const std::vector<unsigned char>& Bytes() const { return bytes_; }
  std::vector<unsigned char>& Bytes() { return bytes_; }
  const corvel::Box2d& Box() const { return box_; }
  void SetBox(const corvel::Box2d& box) { box_ = box; }

 private:
  std::vector<unsigned char> bytes_;
  corvel::Box2d box_;
};

}  // namespace quillon
