#include "SvgTextLayout.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include <corvel/Text.h>

#include "SvgElement.h"
#include "SvgScanner.h"

namespace trovan::filters {
namespace {

using corvel::Vec2d;

// In sizes of the font, for a common sans-serif face.
double GuessedAdvance(wchar_t c) {
  constexpr std::wstring_view kNarrow = L"iljtfrI.,:;'|!()[] \x00A0";
  constexpr std::wstring_view kWide = L"mwMW@%";
  if (kNarrow.find(c) != std::wstring_view::npos) return 0.3;
  if (kWide.find(c) != std::wstring_view::npos) return 0.85;
  if (c >= L'A' && c <= L'Z') return 0.68;
  const auto code = static_cast<unsigned long>(c);
  if (code >= 0x300 && code < 0x370) return 0.0;  // accents over what is before
  return code >= 0x2E80 ? 1.0 : 0.55;             // ideographs fill a square
}

// What an element says about the places of the characters within it.
struct Places {
  std::vector<double> x, y, dx, dy;
  std::size_t next = 0;  // character
};

using Place = std::shared_ptr<const SvgContext>;

class Layout {
 public:
  Layout(const SvgDocument& document, SvgGuard& guard, SvgRemarks& remarks)
      : document_(document), guard_(guard), remarks_(remarks) {}

  // NOLINTNEXTLINE(misc-no-recursion): the guard bounds the depth
  void Add(const pugi::xml_node& node, const SvgContext& context) {
    const auto place = std::make_shared<const SvgContext>(context);
    places_.push_back(ReadPlaces(node, context));
    NoteOmissions(node);
    for (const pugi::xml_node& child : node.children()) {
      const bool isText = child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata;
      if (isText) {
        AddText(corvel::WideFromUtf8(child.value()), node, place);
      } else if (!isText) {
        AddChild(child, context);
      }
    }
    places_.pop_back();
  }

  std::vector<SvgTextRun> Finish() {
    EndRun();
    EndChunk();
    return std::move(runs_);
  }

 private:
  // NOLINTNEXTLINE(misc-no-recursion): the guard bounds the depth
  void AddChild(const pugi::xml_node& child, const SvgContext& parent) {
    const std::string_view name = ElementName(child);
    if (name == "textPath") remarks_.Add("texts along paths are left out", child);
    if (name != "tspan" && name != "a") return;
    const SvgGuard::Visit visit(guard_, child);
    if (!visit) return;
    if (const auto context = Enter(child, parent, document_, remarks_)) {
      EndRun();
      Add(child, *context);
      EndRun();
    }
  }

  void NoteOmissions(const pugi::xml_node& node) {
    if (node.attribute("letter-spacing") || node.attribute("word-spacing")) {
      remarks_.Add("distances between letters and words are those of the font", node);
    }
    if (node.attribute("writing-mode")) remarks_.Add("all texts run from left to right", node);
    if (node.attribute("rotate")) remarks_.Add("letters are not turned by themselves", node);
    if (node.attribute("textLength")) remarks_.Add("texts are not fitted to a length", node);
  }

  static std::vector<double> Lengths(const pugi::xml_node& node, const char* name,
                                     const LengthBasis& basis, Axis axis) {
    std::vector<double> lengths;
    SvgScanner scanner(TrimSpace(Attribute(node, name)));
    while (!scanner.AtEnd()) {
      const auto length = ParseLength(scanner.ReadUntil(", \t\n\r\f"));
      if (!length) break;
      lengths.push_back(InPixels(*length, basis, axis));
      scanner.SkipComma();
    }
    return lengths;
  }

  static Places ReadPlaces(const pugi::xml_node& node, const SvgContext& context) {
    Places places;
    places.x = Lengths(node, "x", context.basis, Axis::kHorizontal);
    places.y = Lengths(node, "y", context.basis, Axis::kVertical);
    places.dx = Lengths(node, "dx", context.basis, Axis::kHorizontal);
    places.dy = Lengths(node, "dy", context.basis, Axis::kVertical);
    return places;
  }

  // The innermost element that says something about the next character.
  const double* Next(std::vector<double> Places::*list) const {
    const auto found = std::find_if(places_.rbegin(), places_.rend(), [list](const Places& places) {
      return places.next < (places.*list).size();
    });
    return found == places_.rend() ? nullptr : &((*found).*list)[found->next];
  }

  void AddText(const std::wstring& text, const pugi::xml_node& node, const Place& place) {
    const bool preservesSpace = place->style.preservesSpace;
    for (wchar_t c : text) {
      const bool isLineEnd = c == L'\n' || c == L'\r';
      if (isLineEnd && !preservesSpace) continue;
      if (isLineEnd || c == L'\t') c = L' ';
      if (c == L' ' && !preservesSpace && isBehindSpace_) continue;
      isBehindSpace_ = c == L' ';
      AddCharacter(c, node, place);
    }
  }

  void AddCharacter(wchar_t c, const pugi::xml_node& node, const Place& place) {
    const double* const x = Next(&Places::x);
    const double* const y = Next(&Places::y);
    const double* const dx = Next(&Places::dx);
    const double* const dy = Next(&Places::dy);
    for (Places& places : places_) ++places.next;
    if (x != nullptr || y != nullptr) {
      EndRun();
      EndChunk();
      if (x != nullptr) here_.x = *x;
      if (y != nullptr) here_.y = *y;
    }
    if (dx != nullptr || dy != nullptr) {
      EndRun();
      here_ = here_ + Vec2d(dx != nullptr ? *dx : 0.0, dy != nullptr ? *dy : 0.0);
    }
    if (run_.text.empty()) {
      run_.place = here_;
      run_.context = place;
      run_.node = node;
    }
    run_.text += c;
    const double advance = GuessedAdvance(c) * place->style.fontSize;
    run_.width += advance;
    here_.x += advance;
  }

  void EndRun() {
    if (!run_.text.empty()) runs_.push_back(std::move(run_));
    run_ = SvgTextRun();
  }

  // The runs since the last place that was given are aligned as one.
  void EndChunk() {
    TrimChunk();
    const std::size_t count = runs_.size() - chunk_;
    if (count > 0) {
      const TextAnchor anchor = runs_[chunk_].context->style.textAnchor;
      if (count == 1) runs_[chunk_].anchor = anchor;
      if (count > 1 && anchor != TextAnchor::kStart) ShiftChunk(anchor);
    }
    chunk_ = runs_.size();
  }

  // Space at the end of a line does not count.
  void TrimChunk() {
    if (runs_.size() == chunk_) return;
    SvgTextRun& last = runs_.back();
    if (last.context->style.preservesSpace || last.text.back() != L' ') return;
    last.text.pop_back();
    last.width -= GuessedAdvance(L' ') * last.context->style.fontSize;
    if (last.text.empty()) runs_.pop_back();
  }

  void ShiftChunk(TextAnchor anchor) {
    const SvgTextRun& last = runs_.back();
    const double width = last.place.x + last.width - runs_[chunk_].place.x;
    const double shift = anchor == TextAnchor::kMiddle ? width / 2 : width;
    for (std::size_t i = chunk_; i < runs_.size(); ++i) runs_[i].place.x -= shift;
  }

  const SvgDocument& document_;
  SvgGuard& guard_;
  SvgRemarks& remarks_;
  std::vector<Places> places_;  // of the elements around, the innermost last
  std::vector<SvgTextRun> runs_;
  SvgTextRun run_;
  std::size_t chunk_ = 0;  // its first run
  Vec2d here_;
  bool isBehindSpace_ = true;
};

}  // namespace

std::vector<SvgTextRun> LayOutText(const pugi::xml_node& node, const SvgContext& context,
                                   const SvgDocument& document, SvgGuard& guard,
                                   SvgRemarks& remarks) {
  Layout layout(document, guard, remarks);
  layout.Add(node, context);
  return layout.Finish();
}

}  // namespace trovan::filters
