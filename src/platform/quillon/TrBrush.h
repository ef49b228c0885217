// How areas are filled from now on.
//
//   TrBrush brush(TrBrush::kSolid, Color4b(200, 220, 255, 255));
#pragma once

#include <memory>
#include <string>

#include <corvel/Color.h>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

class QUILLON_API TrBrush : public TrBase {
 public:
  enum Pattern : int {
    kNone = 1,  // fills nothing
    kSolid = 2,
  };

  static const corvel::CTypeInfo* GetClassTypeId();

  // The colour is transparent black at first.
  explicit TrBrush(Pattern pattern = kNone, corvel::Color4b color = {})
      : pattern_(pattern), color_(color) {}

  const corvel::CTypeInfo* GetTypeId() const override;
  std::unique_ptr<TrBase> Clone() const override;

  // Every brush is valid.
  void AssertValid() const override;
  std::wstring Description() const override;

  Pattern GetPattern() const { return pattern_; }
  void SetPattern(Pattern pattern) { pattern_ = pattern; }
  corvel::Color4b Color() const { return color_; }
  void SetColor(corvel::Color4b color) { color_ = color; }

  // Whether areas are filled at all.
  bool Fills() const { return pattern_ != kNone; }

 private:
  Pattern pattern_;
  corvel::Color4b color_;
};

}  // namespace quillon
