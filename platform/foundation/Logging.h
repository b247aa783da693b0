#pragma once

#include <QLoggingCategory>

namespace tarnwell::foundation {

/// What the classes say to the system log.
Q_DECLARE_LOGGING_CATEGORY(systemLogCategory) // "tarnwell.system"

/// What the plain functions say through the plug-in framework's log.
Q_DECLARE_LOGGING_CATEGORY(zokLogCategory) // "tarnwell.zok"

} // namespace tarnwell::foundation

/// One line in the system log: a QString, built only when somebody listens.
#define TARNWELL_SYSTEM_LOG(text)                                                                  \
    qCInfo(tarnwell::foundation::systemLogCategory).noquote() << (text)

/// One line in the plug-in framework's log, likewise.
#define TARNWELL_ZOK_LOG(text) qCInfo(tarnwell::foundation::zokLogCategory).noquote() << (text)
