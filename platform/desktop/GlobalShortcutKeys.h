#pragma once

#include "ports/GlobalShortcuts.h"

#include <QStringView>

namespace tarnwell::desktop {

/// A combination as the toolkit writes it in one number, without the keypad's mark; 0 for a key
/// that it has no name for.
int toolkitKey(const ports::KeyCombination &combination);

/// Whether an accelerator such as "<Primary><Alt>t" or "<Super>Above_Tab" is the combination.
/// False for what is no accelerator.
bool isAccelerator(QStringView accelerator, const ports::KeyCombination &combination);

} // namespace tarnwell::desktop
