#include "windows/SupportLumetraView.h"

#include "core/AppState.h"
#include "settings/SettingsStore.h"
#include "windows/DonationLink.h"
#include "windows/ProminentButton.h"
#include "windows/SecondaryLabel.h"
#include "windows/SymbolIcon.h"
#include "windows/TitleLabel.h"
#include "windows/WindowTheme.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace lumetra {

namespace {

const QColor kPink(0xFF, 0x37, 0x8A);

} // namespace

SupportLumetraView::SupportLumetraView(AppState& appState, std::function<void()> onClose,
                                       QWidget* parent, VersionSource currentVersion,
                                       UrlOpener openUrl)
    : QWidget(parent), appState_(appState), onClose_(std::move(onClose)),
      currentVersion_(currentVersion ? std::move(currentVersion)
                                     : VersionSource(&AppState::currentAppVersion)),
      openUrl_(openUrl ? std::move(openUrl)
                       : UrlOpener([](const QUrl& url) { QDesktopServices::openUrl(url); })) {
    setObjectName(QStringLiteral("SupportLumetraView"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 24, 28, 18);
    layout->setSpacing(12);
    layout->addStretch(1);

    auto* heart = new QLabel(this);
    heart->setPixmap(SymbolIcon::pixmap(u"heart.fill", kPink, 40, devicePixelRatioF()));
    heart->setAlignment(Qt::AlignCenter);
    layout->addWidget(heart);

    layout->addWidget(new TitleLabel(tr("Support lumetra"), 20, QFont::DemiBold, this));

    auto* text = new SecondaryLabel(
        tr("lumetra is free and built to stay lightweight. Donations fund development, testing, "
           "and debugging across new Linux and Apple Silicon releases."),
        this);
    text->setAlignment(Qt::AlignCenter);
    layout->addWidget(text);
    layout->addSpacing(4);

    for (const DonationLink& link : DonationLink::all()) {
        auto* button = new ProminentButton(link.displayName, link.symbolName, this);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setObjectName(QStringLiteral("donate.") + link.id);
        button->setAccessibleName(link.displayName);
        // The window stays open: the page opens in the browser beside it.
        connect(button, &QPushButton::clicked, this, [this, url = link.url] { openUrl_(url); });
        layout->addWidget(button);
        if (!firstLink_)
            firstLink_ = button;
    }
    layout->addStretch(2);

    dontShowAgain_ = new QCheckBox(tr("Don't show again"), this);
    dontShowAgain_->setObjectName(QStringLiteral("dontShowAgain"));
    QFont caption = dontShowAgain_->font();
    caption.setPixelSize(11);
    dontShowAgain_->setFont(caption);
    layout->addWidget(dontShowAgain_, 0, Qt::AlignHCenter);
    SettingsStore& settings = appState_.settings();
    connect(dontShowAgain_, &QCheckBox::clicked, this, [this, &settings](bool on) {
        if (on)
            settings.setSupportPromptDismissedVersion(currentVersion_());
        else
            settings.setSupportPromptDismissedVersion(std::nullopt);
    });
    connect(&settings, &SettingsStore::supportPromptDismissedVersionChanged, this,
            &SupportLumetraView::showDismissal);
    showDismissal();

    notNow_ = new QPushButton(tr("Not Now"), this);
    notNow_->setObjectName(QStringLiteral("notNow"));
    notNow_->setFlat(true);
    notNow_->setFont(caption);
    notNow_->setCursor(Qt::PointingHandCursor);
    connect(notNow_, &QPushButton::clicked, this, [this] {
        if (onClose_)
            onClose_();
    });
    layout->addWidget(notNow_, 0, Qt::AlignHCenter);

    // Keyboard: the first link is where focus starts; Tab walks links, box, "Not Now".
    if (firstLink_)
        setFocusProxy(firstLink_);
}

QPushButton* SupportLumetraView::linkButton(const QString& id) const {
    return findChild<QPushButton*>(QStringLiteral("donate.") + id);
}

void SupportLumetraView::showDismissal() {
    const std::optional<QString> dismissed = appState_.settings().supportPromptDismissedVersion();
    dontShowAgain_->setChecked(dismissed.has_value() && *dismissed == currentVersion_());
}

void SupportLumetraView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        if (onClose_)
            onClose_();
        return;
    }
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // Enter presses the focused button (a donation link when the window opens).
        if (auto* button = qobject_cast<QPushButton*>(focusWidget())) {
            button->animateClick();
            return;
        }
    }
    QWidget::keyPressEvent(event);
}

} // namespace lumetra
