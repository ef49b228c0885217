// A picture of pixels.
//
//   TrImage photo(&bitmap, false);  // `bitmap` outlives the image
//   photo.SetPlacement(Box2d(0, 0, 40, 20));
//
//   TrImage made(new brindle::MemoryBitmap(w, h, kColorFormatBgra32), true);  // deletes the bitmap
#pragma once

#include <memory>
#include <string>

#include <brindle/GBitmap.h>
#include <corvel/Geometry.h>
#include <corvel/Matrix.h>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

// The pixels fill the placement, row 0 at its top (greatest y); the transform then takes that into
// the drawing.
class QUILLON_API TrImage : public TrBase {
 public:
  static const corvel::CTypeInfo* GetClassTypeId();

  // Without a bitmap, and so without pixels.
  TrImage();

  // With `owns` the image deletes the bitmap at its end, and a copy of the image gets a copy of the
  // bitmap. Without it the bitmap is borrowed: it must outlive the image and all its copies, which
  // share it. Null: an image without pixels.
  TrImage(brindle::GBitmap* bitmap, bool owns);

  TrImage(const TrImage& other);
  TrImage(TrImage&& other) noexcept;
  TrImage& operator=(const TrImage& other);
  TrImage& operator=(TrImage&& other) noexcept;
  ~TrImage() override;

  const corvel::CTypeInfo* GetTypeId() const override;
  std::unique_ptr<TrBase> Clone() const override;

  // Raises unless placement and transform are finite. A flipped placement, the empty one and an
  // image without pixels are valid.
  void AssertValid() const override;
  std::wstring Description() const override;

  // Null when there is none.
  const brindle::GBitmap* Bitmap() const { return bitmap_; }
  brindle::GBitmap* Bitmap() { return bitmap_; }
  bool OwnsBitmap() const { return owned_ != nullptr; }

  const corvel::Box2d& Placement() const { return placement_; }
  void SetPlacement(const corvel::Box2d& placement) { placement_ = placement; }
  const corvel::Mat4d& Transform() const { return transform_; }
  void SetTransform(const corvel::Mat4d& transform) { transform_ = transform; }

  // A mark of the application, which goes with the image. 0 at first.
  unsigned char Flag() const { return flag_; }
  void SetFlag(unsigned char flag) { flag_ = flag; }

 private:
  std::unique_ptr<brindle::GBitmap> owned_;
  brindle::GBitmap* bitmap_ = nullptr;  // the owned one or a borrowed one
  corvel::Box2d placement_;
  corvel::Mat4d transform_;
  unsigned char flag_ = 0;
};

}  // namespace quillon
