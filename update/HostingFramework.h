#pragma once

/// Of the framework that loads plug-ins: whether it does its own updating. A process without the
/// framework, such as a settings host, lacks the function, and then its address is null. It keeps
/// its visibility, or the linker would settle for null within a shared library.
extern "C" __attribute__((weak, visibility("default"))) bool ZOKHasUpdater();

namespace tarnwell::update {

/// Whether there is a framework in this process that does its own updating.
bool hostingFrameworkUpdatesItself();

} // namespace tarnwell::update
