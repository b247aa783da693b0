#pragma once

namespace tarnwell::compositions {

/// Loads what the toolkit loads at its first use, and could not any more in a confined process.
void loadBeforeConfinement();

/// Plays compositions for whoever holds the other end of a socket, until that end is closed: see
/// preview/Messages.h. The process is confined before it reads the first byte of a composition.
/// A QGuiApplication has to be there.
[[noreturn]] void serve(int socket);

} // namespace tarnwell::compositions
