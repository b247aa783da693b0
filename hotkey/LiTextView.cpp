#include "hotkey/LiTextView.h"

#include "foundation/Logging.h"

namespace tarnwell::hotkey {

bool LiTextView::performKeyEquivalent(const KeyEvent &event) const
{
    TARNWELL_SYSTEM_LOG(description(event));
    return false;
}

} // namespace tarnwell::hotkey
