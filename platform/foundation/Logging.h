#pragma once

#include "foundation/ForeignText.h"

#include <QLoggingCategory>

namespace tarnwell::foundation {

/// What the classes say to the system log. Debug messages, the lines of every single row and cell,
/// are off unless the user's logging rules switch them on.
Q_DECLARE_LOGGING_CATEGORY(systemLogCategory) // "tarnwell.system"

/// What the plain functions say through the plug-in framework's log, likewise.
Q_DECLARE_LOGGING_CATEGORY(zokLogCategory) // "tarnwell.zok"

} // namespace tarnwell::foundation

/// One line in the system log: a QString, built only when somebody listens. It may hold texts of
/// strangers: whatever it says is escaped and bounded.
#define TARNWELL_SYSTEM_LOG(text)                                                                  \
    qCInfo(tarnwell::foundation::systemLogCategory).noquote()                                      \
        << tarnwell::foundation::loggedText(text)

/// The same for what is said of every row or cell; off by default.
#define TARNWELL_SYSTEM_DETAIL(text)                                                               \
    qCDebug(tarnwell::foundation::systemLogCategory).noquote()                                     \
        << tarnwell::foundation::loggedText(text)

/// One line in the plug-in framework's log, likewise.
#define TARNWELL_ZOK_LOG(text)                                                                     \
    qCInfo(tarnwell::foundation::zokLogCategory).noquote() << tarnwell::foundation::loggedText(text)
