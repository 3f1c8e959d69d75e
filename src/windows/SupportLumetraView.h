#pragma once

#include <QString>
#include <QUrl>
#include <QWidget>

#include <functional>

class QCheckBox;
class QPushButton;

namespace lumetra {

class AppState;
class WindowTheme;

// The support window's content: the request for a donation, one button per donation link,
// "Don't show again" (ticked exactly while the prompt is dismissed for this version) and
// "Not Now".
class SupportLumetraView : public QWidget {
    Q_OBJECT

public:
    using UrlOpener = std::function<void(const QUrl&)>;
    using VersionSource = std::function<QString()>;

    // `currentVersion` defaults to the build's version; `openUrl` to the default browser.
    SupportLumetraView(AppState& appState, std::function<void()> onClose, QWidget* parent = nullptr,
                       VersionSource currentVersion = {}, UrlOpener openUrl = {});

    QCheckBox& dontShowAgain() const { return *dontShowAgain_; }
    QPushButton& notNow() const { return *notNow_; }
    QPushButton* linkButton(const QString& id) const;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showDismissal();

    AppState& appState_;
    std::function<void()> onClose_;
    VersionSource currentVersion_;
    UrlOpener openUrl_;
    QCheckBox* dontShowAgain_;
    QPushButton* notNow_;
    QPushButton* firstLink_ = nullptr;
};

} // namespace lumetra
