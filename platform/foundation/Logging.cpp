#include "foundation/Logging.h"

namespace tarnwell::foundation {

Q_LOGGING_CATEGORY(systemLogCategory, "tarnwell.system", QtInfoMsg)
Q_LOGGING_CATEGORY(zokLogCategory, "tarnwell.zok", QtInfoMsg)

} // namespace tarnwell::foundation
