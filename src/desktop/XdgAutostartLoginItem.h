#pragma once

#include "desktop/LoginItemService.h"

namespace lumetra {

// The login item as an XDG Autostart entry, `$XDG_CONFIG_HOME/autostart/<app id>.desktop`.
// It counts as enabled when the file exists and does not say Hidden=true (a desktop's
// settings panel hides an entry that way instead of deleting it).
class XdgAutostartLoginItem final : public LoginItemService {
public:
    // `autostartDirectory` empty: the user's; `executable` empty: this process's binary.
    explicit XdgAutostartLoginItem(QString autostartDirectory = {}, QString executable = {});

    bool isEnabled() const override;
    std::optional<QString> registerItem() override;
    std::optional<QString> unregisterItem() override;

    QString filePath() const;
    static QString standardDirectory();
    // The entry written for `executable`; a path with spaces or quotes is quoted as the
    // Desktop Entry specification asks.
    static QByteArray entryText(const QString& executable);

private:
    QString directory_;
    QString executable_;
};

} // namespace lumetra
