#include <quillon/IoManager.h>

namespace quillon {

IoManager::~IoManager() = default;

}  // namespace quillon
