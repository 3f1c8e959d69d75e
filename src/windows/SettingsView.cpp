#include "windows/SettingsView.h"

#include "core/AppState.h"
#include "windows/AdvancedSettingsView.h"
#include "windows/AppearanceSettingsView.h"
#include "windows/GeneralSettingsView.h"
#include "windows/MenuBarSettingsView.h"
#include "windows/MonitoringSettingsView.h"
#include "windows/SymbolIcon.h"
#include "windows/WindowTheme.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
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
    : QWidget(parent), tabs_(new QTabWidget(this)) {
    setObjectName(QStringLiteral("SettingsView"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    setFixedWidth(kWidth);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 8, 0, 0);
    layout->addWidget(tabs_);
    tabs_->setDocumentMode(true);
    tabs_->setUsesScrollButtons(false);
    tabs_->tabBar()->setExpanding(false);
    tabs_->tabBar()->setDrawBase(true);
    tabs_->setStyleSheet(QStringLiteral("QTabWidget::tab-bar { alignment: center; }"));

    auto* general = new GeneralSettingsView(appState);
    connect(general, &GeneralSettingsView::supportRequested, this, &SettingsView::supportRequested);
    const std::array<QWidget*, 5> forms{
        general, new MenuBarSettingsView(appState), new AppearanceSettingsView(appState),
        new MonitoringSettingsView(appState), new AdvancedSettingsView(appState)};
    for (std::size_t i = 0; i < kTabs.size(); ++i)
        tabs_->addTab(scrolled(forms[i]), tr(kTabs[i].title));

    theme_ = new WindowTheme(this, appState.settings());
    refreshTabIcons();
    connect(tabs_, &QTabWidget::currentChanged, this, [this](int index) {
        setWindowTitle(tabs_->tabText(index));
        fitHeight();
    });
    setWindowTitle(tabs_->tabText(0));

    auto* close = new QShortcut(QKeySequence::Close, this);
    connect(close, &QShortcut::activated, this, &QWidget::close);
    fitHeight();
}

QWidget* SettingsView::page(int index) const {
    auto* area = qobject_cast<QScrollArea*>(tabs_->widget(index));
    return area ? area->widget() : nullptr;
}

void SettingsView::fitHeight() {
    // Like the panel's own settings windows elsewhere: the window takes the height of the tab
    // shown, within the screen; a taller tab scrolls.
    QWidget* form = page(tabs_->currentIndex());
    if (!form)
        return;
    const int contentWidth = kWidth;
    int content =
        form->hasHeightForWidth() ? form->heightForWidth(contentWidth) : form->sizeHint().height();
    content = std::max(content, form->minimumSizeHint().height());
    int height = content + tabs_->tabBar()->sizeHint().height() + 12;
    if (const QScreen* screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen())
        height = std::min(height, int(screen->availableGeometry().height() * 0.9));
    resize(kWidth, height);
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

void SettingsView::refreshTabIcons() {
    const QColor color = palette().color(QPalette::WindowText);
    for (std::size_t i = 0; i < kTabs.size(); ++i)
        tabs_->setTabIcon(int(i),
                          SymbolIcon::icon(QString::fromLatin1(kTabs[i].symbol), color, 16));
}

void SettingsView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        refreshTabIcons();
    QWidget::changeEvent(event);
}

} // namespace lumetra
