#pragma once

namespace tarnwell::foundation {

/// For a child between fork and exec: makes it wholly the user whose file-system ids the thread has
/// that forked it. Does nothing where that is the process's own user; ends the child when the
/// kernel refuses. Every program that is started gets it: root's pane shows somebody else's home
/// with that person's rights, and exec would give a program root's again.
void becomeFileUser();

} // namespace tarnwell::foundation
