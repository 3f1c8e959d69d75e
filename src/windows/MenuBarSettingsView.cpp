#include "windows/MenuBarSettingsView.h"

#include "core/AppState.h"
#include "core/SystemMonitor.h"
#include "format/MetricCatalogue.h"
#include "menubar/MenuBarLabelView.h"
#include "settings/SettingsStore.h"
#include "windows/ControlBinding.h"
#include "windows/FormGroup.h"
#include "windows/MetricOrderModel.h"
#include "windows/SecondaryLabel.h"
#include "windows/ToggleSwitch.h"
#include "windows/WindowTheme.h"

#include <QComboBox>
#include <QEvent>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace lumetra {

namespace {

QString temperatureSample(TemperatureDisplayFormat format) {
    switch (format) {
    case TemperatureDisplayFormat::degreesOnly:
        return MenuBarSettingsView::tr("52°");
    case TemperatureDisplayFormat::degreesWithUnit:
        return MenuBarSettingsView::tr("52°C");
    case TemperatureDisplayFormat::labeledCPU:
        return MenuBarSettingsView::tr("CPU 52°C");
    case TemperatureDisplayFormat::labeledTemp:
        return MenuBarSettingsView::tr("Temp 52°C");
    }
    return {};
}

// A row of the Order list with a grip at its right end, the sign that rows can be dragged.
class OrderRowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        size.setHeight(std::max(size.height(), 24));
        return size;
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        painter->save();
        QColor grip = index.data(Qt::ForegroundRole).value<QColor>();
        grip.setAlphaF(grip.alphaF() * 0.6F);
        painter->setPen(QPen(grip, 1.4));
        const int right = option.rect.right() - 10;
        const int middle = option.rect.center().y();
        for (int dy : {-4, 0, 4})
            painter->drawLine(QPointF(right - 12, middle + dy + 0.5),
                              QPointF(right, middle + dy + 0.5));
        painter->restore();
    }
};

// A pop-up picker over every case of a settings enumeration, bound to the store.
template <typename E, typename Label>
QComboBox* enumPicker(const QString& name, SettingsStore& settings, E (SettingsStore::*get)() const,
                      void (SettingsStore::*set)(E), void (SettingsStore::*changed)(),
                      Label label) {
    auto* combo = new QComboBox;
    combo->setObjectName(name);
    constexpr auto cases = allCases<E>();
    for (E value : cases)
        combo->addItem(label(value));
    bindPicker(combo, cases, std::function<E()>([&settings, get] { return (settings.*get)(); }),
               std::function<void(E)>([&settings, set](E value) { (settings.*set)(value); }),
               &settings, changed);
    return combo;
}

} // namespace

MenuBarSettingsView::MenuBarSettingsView(AppState& appState, QWidget* parent)
    : GroupedForm(parent), appState_(appState) {
    setObjectName(QStringLiteral("MenuBarSettingsView"));
    SettingsStore& settings = appState.settings();

    metricsGroup_ = addSection(tr("Metrics"));
    rebuildToggles();
    // Both the toggles and the list are built from the order, not from every metric.
    connect(&settings, &SettingsStore::metricOrderChanged, this,
            &MenuBarSettingsView::rebuildToggles);

    FormGroup* order = addSection(tr("Order"));
    orderModel_ = new MetricOrderModel(settings, this);
    orderList_ = new QListView;
    orderList_->setObjectName(QStringLiteral("metricOrderList"));
    orderList_->setAccessibleName(tr("Order"));
    orderList_->setModel(orderModel_);
    orderList_->setFixedHeight(150);
    orderList_->setDragDropMode(QAbstractItemView::InternalMove);
    orderList_->setDefaultDropAction(Qt::MoveAction);
    orderList_->setDragEnabled(true);
    orderList_->setDropIndicatorShown(true);
    orderList_->setSelectionMode(QAbstractItemView::SingleSelection);
    orderList_->setMovement(QListView::Snap);
    orderList_->setSpacing(1);
    orderList_->setItemDelegate(new OrderRowDelegate(orderList_));
    orderList_->setIconSize({16, 16});
    orderList_->setFrameShape(QFrame::NoFrame);
    orderList_->viewport()->setAutoFillBackground(false);
    orderList_->setAutoFillBackground(false);
    order->addWidget(orderList_);
    // From the keyboard: Alt+Up and Alt+Down move the selected row.
    orderList_->setAccessibleDescription(tr("Alt+Up and Alt+Down move the selected metric."));
    orderList_->installEventFilter(this);
    order->addNote(tr("Drag to reorder how metrics appear in the menu bar."));

    auto* style = enumPicker<MenuBarDisplayStyle>(
        QStringLiteral("menuBarDisplayStyle"), settings, &SettingsStore::menuBarDisplayStyle,
        &SettingsStore::setMenuBarDisplayStyle, &SettingsStore::menuBarDisplayStyleChanged,
        [](MenuBarDisplayStyle v) { return displayName(v); });
    addSection(tr("Menu Bar Style"))->addRow(tr("Menu Bar Style"), style);

    auto* separator = enumPicker<MenuBarSeparator>(
        QStringLiteral("separator"), settings, &SettingsStore::separator,
        &SettingsStore::setSeparator, &SettingsStore::separatorChanged,
        [](MenuBarSeparator v) { return displayName(v); });
    addSection(tr("Separator"))->addRow(tr("Separator"), separator);

    FormGroup* format = addSection(tr("Format"));
    format->addRow(tr("Memory format"),
                   enumPicker<MemoryDisplayFormat>(
                       QStringLiteral("memoryFormat"), settings, &SettingsStore::memoryFormat,
                       &SettingsStore::setMemoryFormat, &SettingsStore::memoryFormatChanged,
                       [](MemoryDisplayFormat v) { return displayName(v); }));
    format->addRow(tr("Temperature format"),
                   enumPicker<TemperatureDisplayFormat>(
                       QStringLiteral("temperatureFormat"), settings,
                       &SettingsStore::temperatureFormat, &SettingsStore::setTemperatureFormat,
                       &SettingsStore::temperatureFormatChanged, temperatureSample));
    afterToggles_ = {orderList_, style, separator,
                     findChild<QWidget*>(QStringLiteral("memoryFormat")),
                     findChild<QWidget*>(QStringLiteral("temperatureFormat"))};
    preview_ = new MenuBarLabelView;
    preview_->setObjectName(QStringLiteral("labelPreview"));
    preview_->bind(&appState.systemMonitor(), &settings);
    format->addRow(tr("Preview"), preview_);

    finish();
    updateRowColors();
}

void MenuBarSettingsView::rebuildToggles() {
    SettingsStore& settings = appState_.settings();
    metricsGroup_->clear();
    QWidget* previous = nullptr;
    for (MenuBarMetric metric : settings.metricOrder()) {
        auto* toggle = new ToggleSwitch;
        const std::string_view raw = rawValue(metric);
        toggle->setObjectName(QStringLiteral("metric.") +
                              QString::fromLatin1(raw.data(), qsizetype(raw.size())));
        metricsGroup_->addRow(metricName(metric), toggle, MetricOrderModel::symbolName(metric));
        bindToggle(
            toggle, [&settings, metric] { return settings.enabledMetrics().contains(metric); },
            [&settings, metric](bool on) { settings.setMetricEnabled(metric, on); }, &settings,
            &SettingsStore::enabledMetricsChanged);
        // Rebuilt switches would otherwise come last in the Tab order.
        if (previous)
            setTabOrder(previous, toggle);
        previous = toggle;
    }
    for (QWidget* next : afterToggles_) {
        if (previous)
            setTabOrder(previous, next);
        previous = next;
    }
}

bool MenuBarSettingsView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == orderList_ && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const int step = key->key() == Qt::Key_Up ? -1 : key->key() == Qt::Key_Down ? 1 : 0;
        const QModelIndex current = orderList_->currentIndex();
        if (step != 0 && key->modifiers() == Qt::AltModifier && current.isValid()) {
            const int row = current.row();
            const int target = row + step;
            if (target >= 0 && target < orderModel_->rowCount()) {
                // A move down goes in front of the row after the next one.
                orderModel_->moveRows({}, row, 1, {}, step > 0 ? target + 1 : target);
                orderList_->setCurrentIndex(orderModel_->index(target));
            }
            return true;
        }
    }
    return GroupedForm::eventFilter(watched, event);
}

void MenuBarSettingsView::updateRowColors() {
    orderModel_->setColors(palette().color(QPalette::WindowText),
                           WindowTheme::tertiaryText(palette()));
}

void MenuBarSettingsView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        updateRowColors();
    GroupedForm::changeEvent(event);
}

} // namespace lumetra
