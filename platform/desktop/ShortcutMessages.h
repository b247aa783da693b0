#pragma once

#include "desktop/GlobalShortcutKeys.h"
#include "ports/GlobalShortcuts.h"

#include <QDBusMessage>

#include <optional>

// What the desktops' own programs are asked over the bus, and how their answers are read. A
// malformed answer names nobody.

namespace tarnwell::desktop {

/// Asks KDE's service, up to version 5, for the holder of a key of the toolkit.
QDBusMessage kdeQuestion(int toolkitKey);
/// The same in the words that its later versions understand.
QDBusMessage kdeQuestionOfPlasma6(int toolkitKey);
std::optional<ports::GlobalShortcutHolder> holderFromKde(const QDBusMessage &reply);

/// Asks Xfce's store for all shortcuts.
QDBusMessage xfceQuestion();
std::optional<ports::GlobalShortcutHolder> holderFromXfce(const QDBusMessage &reply,
                                                          const ports::KeyCombination &combination);

} // namespace tarnwell::desktop
