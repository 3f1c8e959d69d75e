#include "windows/SettingsView.h"

#include "appearance/GlassBackground.h"
#include "core/AppState.h"
#include "windows/AdvancedSettingsView.h"
#include "windows/AppearanceSettingsView.h"
#include "windows/GeneralSettingsView.h"
#include "windows/MenuBarSettingsView.h"
#include "windows/MonitoringSettingsView.h"
#include "windows/SymbolIcon.h"
#include "windows/WindowTheme.h"

#include <QButtonGroup>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <array>

namespace lumetra {

namespace {

struct Tab {
    const char* title;
    const char* symbol;
};

constexpr std::array<Tab, 5> kTabs{{
    {QT_TRANSLATE_NOOP("lumetra::SettingsView", "General"), "gearshape"},
    {QT_TRANSLATE_NOOP("lumetra::SettingsView", "Menu Bar"), "menubar.rectangle"},
    {QT_TRANSLATE_NOOP("lumetra::SettingsView", "Appearance"), "paintbrush"},
    {QT_TRANSLATE_NOOP("lumetra::SettingsView", "Monitoring"), "waveform.path.ecg"},
    {QT_TRANSLATE_NOOP("lumetra::SettingsView", "Advanced"), "wrench.and.screwdriver"},
}};

QScrollArea* scrolled(QWidget* form) {
    auto* area = new QScrollArea;
    area->setWidget(form);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->viewport()->setAutoFillBackground(false);
    form->setAutoFillBackground(false);
    return area;
}

} // namespace

SettingsView::SettingsView(AppState& appState, QWidget* parent)
    : QWidget(parent), appState_(appState), tabButtons_(new QButtonGroup(this)),
      toolbar_(new QWidget), pages_(new QStackedWidget) {
    setObjectName(QStringLiteral("SettingsView"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    setFixedWidth(kWidth);
    // The window draws its background as the popover does, from the appearance in effect, so
    // a change on the Appearance tab shows here too. A decorated window stays opaque.
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    background_ = new GlassBackground(this);
    background_->setCornerRadius(0);
    background_->setOpaque(true);
    outer->addWidget(background_);
    auto* layout = new QVBoxLayout(background_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    // The tabs as a toolbar of symbol-over-title buttons, as settings windows have them.
    auto* bar = new QHBoxLayout(toolbar_);
    bar->setContentsMargins(8, 6, 8, 4);
    bar->setSpacing(2);
    bar->addStretch(1);
    layout->addWidget(toolbar_);
    auto* rule = new QFrame(background_);
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Plain);
    rule->setFixedHeight(1);
    rule->setForegroundRole(QPalette::Mid);
    layout->addWidget(rule);
    layout->addWidget(pages_, 1);

    auto* general = new GeneralSettingsView(appState);
    connect(general, &GeneralSettingsView::supportRequested, this, &SettingsView::supportRequested);
    const std::array<QWidget*, 5> forms{
        general, new MenuBarSettingsView(appState), new AppearanceSettingsView(appState),
        new MonitoringSettingsView(appState), new AdvancedSettingsView(appState)};
    for (std::size_t i = 0; i < kTabs.size(); ++i) {
        auto* button = new QToolButton(toolbar_);
        button->setText(tr(kTabs[i].title));
        button->setAccessibleName(button->text());
        button->setObjectName(QStringLiteral("tab.") + QString::fromLatin1(kTabs[i].symbol));
        button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        button->setIconSize({20, 20});
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setMinimumWidth(76);
        tabButtons_->addButton(button, int(i));
        bar->addWidget(button);
        pages_->addWidget(scrolled(forms[i]));
    }
    bar->addStretch(1);
    tabButtons_->setExclusive(true);
    connect(tabButtons_, &QButtonGroup::idClicked, this, &SettingsView::setCurrentIndex);

    theme_ = new WindowTheme(this, appState.settings());
    refreshTabIcons();
    connect(theme_, &WindowTheme::darkChanged, this, &SettingsView::applyAppearance);
    connect(&appState, &AppState::effectiveAppearanceChanged, this, &SettingsView::applyAppearance);
    applyAppearance();
    setCurrentIndex(0);

    auto* close = new QShortcut(QKeySequence::Close, this);
    connect(close, &QShortcut::activated, this, &QWidget::close);
    // Ctrl+Tab and Ctrl+Shift+Tab walk the tabs, as in tab widgets.
    auto* next = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab), this);
    connect(next, &QShortcut::activated, this,
            [this] { setCurrentIndex((currentIndex() + 1) % count()); });
    auto* previous = new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab), this);
    connect(previous, &QShortcut::activated, this,
            [this] { setCurrentIndex((currentIndex() + count() - 1) % count()); });
}

int SettingsView::count() const {
    return pages_->count();
}

int SettingsView::currentIndex() const {
    return pages_->currentIndex();
}

void SettingsView::setCurrentIndex(int index) {
    if (index < 0 || index >= count())
        return;
    tabButtons_->button(index)->setChecked(true);
    pages_->setCurrentIndex(index);
    setWindowTitle(tabTitle(index));
    fitHeight();
}

QString SettingsView::tabTitle(int index) const {
    QAbstractButton* button = tabButtons_->button(index);
    return button ? button->text() : QString();
}

QToolButton* SettingsView::tabButton(int index) const {
    return qobject_cast<QToolButton*>(tabButtons_->button(index));
}

QWidget* SettingsView::page(int index) const {
    auto* area = qobject_cast<QScrollArea*>(pages_->widget(index));
    return area ? area->widget() : nullptr;
}

int SettingsView::preferredHeight(int index) const {
    QWidget* form = page(index);
    if (!form)
        return 0;
    int content =
        form->hasHeightForWidth() ? form->heightForWidth(kWidth) : form->sizeHint().height();
    content = std::max(content, form->minimumSizeHint().height());
    return content + toolbar_->sizeHint().height() + 1;
}

void SettingsView::fitHeight() {
    // The window takes the height of the tab shown, within the screen; a taller tab scrolls.
    int height = preferredHeight(currentIndex());
    const QScreen* screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
    if (screen)
        height = std::min(height, int(screen->availableGeometry().height() * 0.9));
    resize(kWidth, height);
    // A taller tab must not push the window's bottom off the screen.
    if (screen && isVisible()) {
        const QRect available = screen->availableGeometry();
        const int overflow = frameGeometry().bottom() - available.bottom();
        if (overflow > 0)
            move(x(), std::max(available.top(), y() - overflow));
    }
}

void SettingsView::present() {
    if (!isVisible()) {
        fitHeight();
        if (const QScreen* screen = QGuiApplication::primaryScreen())
            move(screen->availableGeometry().center() - rect().center());
    }
    show();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void SettingsView::applyAppearance() {
    background_->setConfiguration(appState_.effectiveAppearance());
    background_->setDark(theme_->isDark());
}

void SettingsView::refreshTabIcons() {
    const QColor color = palette().color(QPalette::WindowText);
    for (std::size_t i = 0; i < kTabs.size(); ++i)
        tabButtons_->button(int(i))->setIcon(
            SymbolIcon::icon(QString::fromLatin1(kTabs[i].symbol), color, 20));
}

void SettingsView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        refreshTabIcons();
    QWidget::changeEvent(event);
}

} // namespace lumetra
