#include "foundation/Logging.h"

namespace tarnwell::foundation {

Q_LOGGING_CATEGORY(systemLogCategory, "tarnwell.system")
Q_LOGGING_CATEGORY(zokLogCategory, "tarnwell.zok")

} // namespace tarnwell::foundation
