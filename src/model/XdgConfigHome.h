#pragma once

#include <QString>

namespace lumetra {

// The user's configuration folder, found the way the XDG base directory specification
// says: XDG_CONFIG_HOME, else $HOME/.config, else the home directory the password database
// names (`accountHome`) plus /.config. Relative paths count as unset. Empty when none
// applies. Not QDir::homePath(): without HOME it answers "/", a folder of the whole machine.
QString xdgConfigHome(const QString& xdgConfigHome, const QString& home,
                      const QString& accountHome);

// The same for this process: its environment and its account.
QString currentXdgConfigHome();

} // namespace lumetra
