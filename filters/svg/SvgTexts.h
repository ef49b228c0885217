// Runs of text as translator objects.
#pragma once

#include <quillon/TrFont.h>
#include <quillon/TrText.h>

#include <corvel/Color.h>

#include "filters/svg/SvgTextLayout.h"

namespace trovan::filters {

// The font of the run, its size in units of the drawing.
quillon::TrFont FontOf(const SvgTextRun& run, const corvel::Color4b& color);

// The run as it is placed in the drawing; its bounds are guessed, rather too large than too small.
quillon::TrText TextOf(const SvgTextRun& run);

}  // namespace trovan::filters
