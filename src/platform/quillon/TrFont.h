// The font of the texts from now on.
//
//   TrFont font(L"DejaVu Sans");
//   font.SetSize(9.0);
//   font.SetFlags(TrFont::kItalic | 7);  // weight 700, slanted
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <corvel/Color.h>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

class QUILLON_API TrFont : public TrBase {
 public:
  // Bits of the flags.
  enum Flag : std::uint16_t {
    kWeightMask = 0x000F,  // the weight divided by 100: 4 is normal, 7 bold
    kItalic = 0x0010,
    kUnderline = 0x0020,
    kStrikeOut = 0x0040,
    kCharSetMask = 0x0700,
    kCharSetDefault = 0x0000,
    kCharSetAnsi = 0x0100,
    kCharSetSymbol = 0x0200,
    kCharSetShiftJis = 0x0300,
    kCharSetOem = 0x0400,
  };

  // Bits of pitch and family.
  enum PitchAndFamily : std::uint16_t {
    kPitchMask = 0x0003,
    kPitchDefault = 0,
    kPitchFixed = 1,
    kPitchVariable = 2,
    kFamilyMask = 0x00F0,  // as GDI encodes it: 0x10 serifs, 0x20 none, ..., 0x50 decorative
  };

  static const corvel::CTypeInfo* GetClassTypeId();

  // Size 12, aspect 0, normal weight, black. Without a name it is whatever the application takes
  // for its default.
  explicit TrFont(std::wstring faceName = {});

  const corvel::CTypeInfo* GetTypeId() const override;
  std::unique_ptr<TrBase> Clone() const override;

  // Raises unless size and aspect are finite; a negative size is valid.
  void AssertValid() const override;
  std::wstring Description() const override;

  const std::wstring& FaceName() const { return faceName_; }
  void SetFaceName(std::wstring name);

  // The height of the letters in the units of the drawing.
  double Size() const { return size_; }
  void SetSize(double size) { size_ = size; }

  // The height of the letters divided by their width; 0: as the font has it.
  double Aspect() const { return aspect_; }
  void SetAspect(double aspect) { aspect_ = aspect; }

  std::uint16_t Flags() const { return flags_; }
  void SetFlags(std::uint16_t flags) { flags_ = flags; }
  std::uint16_t GetPitchAndFamily() const { return pitchAndFamily_; }
  void SetPitchAndFamily(std::uint16_t value) { pitchAndFamily_ = value; }
  corvel::Color4b Color() const { return color_; }
  void SetColor(corvel::Color4b color) { color_ = color; }

 private:
  std::wstring faceName_;
  double size_ = 12.0;
  double aspect_ = 0.0;
  std::uint16_t flags_ = 4;
  std::uint16_t pitchAndFamily_ = 0;
  corvel::Color4b color_{0, 0, 0, 255};
};

}  // namespace quillon
