#pragma once

#include <QStringList>

namespace tarnwell::compositions {

/// Makes the process run no other program, open no socket and write no file but those that are open
/// already. It still reads programs' data, fonts with their configuration and caches, and time
/// zones. It binds all of its threads, those to come too; but for what may be read, which binds the
/// calling thread and its later ones alone. Returns what the system could not do, in words for the
/// log; nothing when all of it is done.
QStringList confine();

} // namespace tarnwell::compositions
