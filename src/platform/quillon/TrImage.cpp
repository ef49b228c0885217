#include <quillon/TrImage.h>

#include <utility>

#include <corvel/Text.h>

#include "Finite.h"

namespace quillon {
namespace {

constexpr const char* kFile = "TrImage";

}  // namespace

const corvel::CTypeInfo* TrImage::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrImage", TrBase::GetClassTypeId());
  return &record;
}

TrImage::TrImage() = default;

TrImage::TrImage(brindle::GBitmap* bitmap, bool owns)
    : owned_(owns ? bitmap : nullptr), bitmap_(bitmap) {}

TrImage::TrImage(const TrImage& other)
    : TrBase(other),
      owned_(other.owned_ ? other.owned_->Clone() : nullptr),
      bitmap_(owned_ ? owned_.get() : other.bitmap_),
      placement_(other.placement_),
      transform_(other.transform_),
      flag_(other.flag_) {}

TrImage::TrImage(TrImage&& other) noexcept
    : TrBase(std::move(other)),
      owned_(std::move(other.owned_)),
      bitmap_(std::exchange(other.bitmap_, nullptr)),
      placement_(other.placement_),
      transform_(other.transform_),
      flag_(other.flag_) {}

TrImage& TrImage::operator=(const TrImage& other) { return *this = TrImage(other); }

TrImage& TrImage::operator=(TrImage&& other) noexcept {
  if (this == &other) return *this;
  TrBase::operator=(static_cast<TrBase&&>(other));
  owned_ = std::move(other.owned_);
  bitmap_ = std::exchange(other.bitmap_, nullptr);
  placement_ = other.placement_;
  transform_ = other.transform_;
  flag_ = other.flag_;
  return *this;
}

TrImage::~TrImage() = default;

const corvel::CTypeInfo* TrImage::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrImage::Clone() const { return std::make_unique<TrImage>(*this); }

void TrImage::AssertValid() const {
  if (!IsFinite(placement_)) ThrowInvalidObject(kFile, __LINE__, "the placement is not finite");
  if (!IsFinite(transform_)) ThrowInvalidObject(kFile, __LINE__, "the transform is not finite");
}

std::wstring TrImage::Description() const {
  std::wstring text;
  const unsigned width = bitmap_ == nullptr ? 0 : bitmap_->GetWidth();
  const unsigned height = bitmap_ == nullptr ? 0 : bitmap_->GetHeight();
  corvel::FormatString(text, L"Image, %u x %u pixels", width, height);
  return text;
}

}  // namespace quillon
