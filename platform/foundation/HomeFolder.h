#pragma once

namespace tarnwell::foundation {

/// Sees to it that HOME names the home folder, so that everything in this process and in those that
/// it starts means the same one: where it is empty or missing it becomes that of the account. False
/// when the account has none either. To be called first thing in a program, before it has threads.
bool provideHome();

} // namespace tarnwell::foundation
