#include "filters/lattice/Formats.h"

namespace trovan::filters {}
