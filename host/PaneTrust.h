#pragma once

#include <QString>

namespace tarnwell::host {

/// Whether a pane may be loaded only from folders that root alone can write: for root, who would
/// run the program of whoever can write it, and for anybody who opens another home than the own one
/// (the environment's HOME) that belongs to somebody else.
bool needsTrustedPane(const QString &home);

/// The first folder or file that makes a bundle one that somebody else than root can change, in
/// one sentence; empty for none. Looked at is every folder from the top of the file system down to
/// the bundle, everything in it, and the files that its links lead to. A folder above the bundle
/// may be open to all if nobody can take another's things out of it, as /tmp is.
QString reasonForDistrust(const QString &bundlePath);

} // namespace tarnwell::host
