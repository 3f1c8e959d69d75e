#include "windows/WelcomeView.h"

#include "core/AppState.h"
#include "format/MetricCatalogue.h"
#include "settings/SettingsStore.h"
#include "windows/FormGroup.h"
#include "windows/ProminentButton.h"
#include "windows/SecondaryLabel.h"
#include "windows/SymbolIcon.h"
#include "windows/TitleLabel.h"
#include "windows/WindowTheme.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace lumetra {

namespace {

QPushButton* primaryButton(const QString& text, QWidget* parent) {
    auto* button = new ProminentButton(text, {}, parent);
    button->setDefault(true);
    button->setMinimumWidth(160);
    return button;
}

} // namespace

WelcomeView::WelcomeView(AppState& appState, std::function<void()> onFinish, QWidget* parent)
    : QWidget(parent), appState_(appState), onFinish_(std::move(onFinish)),
      pages_(new QStackedWidget(this)) {
    setObjectName(QStringLiteral("WelcomeView"));
    setWindowTitle(tr("Welcome to lumetra"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(pages_);
    pages_->addWidget(buildWelcomePage());
    pages_->addWidget(buildConfigurePage());
    setFixedSize(420, 400);
    new WindowTheme(this, appState.settings());
    setStep(Step::welcome);
}

QWidget* WelcomeView::buildWelcomePage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(36, 40, 36, 32);
    layout->setSpacing(10);
    layout->addStretch(1);
    auto* symbol = new QLabel(page);
    symbol->setPixmap(SymbolIcon::pixmap(u"gauge.with.dots.needle.50percent",
                                         WindowTheme::palette(false).color(QPalette::Highlight), 64,
                                         devicePixelRatioF()));
    symbol->setAlignment(Qt::AlignCenter);
    layout->addWidget(symbol);
    layout->addSpacing(6);
    layout->addWidget(new TitleLabel(tr("Welcome to lumetra"), 24, QFont::Bold, page));
    auto* subtitle =
        new SecondaryLabel(tr("A lightweight system monitor that lives in your menu bar."), page);
    subtitle->setAlignment(Qt::AlignCenter);
    layout->addWidget(subtitle);
    layout->addStretch(1);
    getStarted_ = primaryButton(tr("Get Started"), page);
    getStarted_->setObjectName(QStringLiteral("getStarted"));
    connect(getStarted_, &QPushButton::clicked, this, [this] { setStep(Step::configure); });
    layout->addWidget(getStarted_, 0, Qt::AlignHCenter);
    return page;
}

QWidget* WelcomeView::buildConfigurePage() {
    const SettingsStore& settings = appState_.settings();
    const MenuBarMetricSet enabled = settings.enabledMetrics();

    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(36, 32, 36, 32);
    layout->setSpacing(12);
    layout->addWidget(new TitleLabel(tr("Choose what to show"), 19, QFont::DemiBold, page));
    layout->addSpacing(4);

    // The boxes start from what the menu bar shows now, so going through the flow again
    // changes nothing unless the user does.
    // A box is ticked when any of its metrics is shown.
    auto* metrics = new FormGroup(page);
    choices_.clear();
    for (const MetricDescription& row : metricCatalogue()) {
        auto shared = std::find_if(choices_.begin(), choices_.end(), [&](const Choice& choice) {
            return choice.box->objectName() == QLatin1StringView(row.choiceName);
        });
        if (shared == choices_.end()) {
            auto* check = new QCheckBox(tr(row.choice));
            check->setObjectName(QLatin1StringView(row.choiceName));
            metrics->addWidget(check);
            choices_.append(Choice{check, {}});
            shared = choices_.end() - 1;
        }
        shared->metrics.append(row.metric);
        if (enabled.contains(row.metric))
            shared->box->setChecked(true);
    }
    layout->addWidget(metrics);

    auto* login = new FormGroup(page);
    launchAtLogin_ = new QCheckBox(tr("Launch lumetra at login"));
    launchAtLogin_->setObjectName(QStringLiteral("launchAtLogin"));
    launchAtLogin_->setChecked(settings.launchAtLogin());
    login->addWidget(launchAtLogin_);
    layout->addWidget(login);
    layout->addStretch(1);

    done_ = primaryButton(tr("Done"), page);
    done_->setObjectName(QStringLiteral("done"));
    connect(done_, &QPushButton::clicked, this, &WelcomeView::finish);
    layout->addWidget(done_, 0, Qt::AlignHCenter);
    return page;
}

void WelcomeView::present() {
    if (!isVisible()) {
        if (const QScreen* screen = QGuiApplication::primaryScreen())
            move(screen->availableGeometry().center() - rect().center());
    }
    show();
    raise();
    activateWindow();
}

void WelcomeView::setStep(Step step) {
    step_ = step;
    pages_->setCurrentIndex(step == Step::welcome ? 0 : 1);
    if (step == Step::welcome)
        getStarted_->setFocus();
    else
        choices_.front().box->setFocus();
}

void WelcomeView::finish() {
    SettingsStore& settings = appState_.settings();
    MenuBarMetricSet metrics;
    for (const Choice& choice : choices_) {
        if (choice.box->isChecked())
            for (MenuBarMetric metric : choice.metrics)
                metrics.insert(metric);
    }
    // An equal set is still written but notifies nobody.
    settings.setEnabledMetrics(metrics);
    const bool login = launchAtLogin_->isChecked();
    settings.setLaunchAtLogin(login);
    appState_.applyLoginItem(login);
    settings.setHasCompletedOnboarding(true);
    if (onFinish_)
        onFinish_();
}

QCheckBox& WelcomeView::choice(MenuBarMetric metric) const {
    for (const Choice& choice : choices_) {
        if (choice.metrics.contains(metric))
            return *choice.box;
    }
    return *choices_.front().box;
}

void WelcomeView::keyPressEvent(QKeyEvent* event) {
    // Enter presses the page's button wherever the focus is.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        (step_ == Step::welcome ? getStarted_ : done_)->animateClick();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace lumetra
