#include "dashboard/DashboardView.h"

#include "core/SystemMonitor.h"
#include "dashboard/CardExtras.h"
#include "dashboard/ClassicMetricCard.h"
#include "dashboard/CompactMetricsCard.h"
#include "dashboard/DashboardCard.h"
#include "dashboard/DashboardGlanceStrip.h"
#include "dashboard/DiskCardView.h"
#include "dashboard/FigureSources.h"
#include "dashboard/FooterButton.h"
#include "dashboard/MetricGridCard.h"
#include "dashboard/MetricPresentation.h"
#include "dashboard/PaintHelpers.h"
#include "dashboard/RatesCardView.h"
#include "dashboard/RingMetricCard.h"
#include "dashboard/SectionHeader.h"
#include "dashboard/SparklineAreaMetricCard.h"
#include "dashboard/TopApplicationsSection.h"
#include "format/MetricCatalogue.h"
#include "settings/SettingsStore.h"

#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <cmath>
#include <memory>
#include <vector>

namespace lumetra {

namespace {

constexpr double kHeaderIconSize = 14;
constexpr double kHeaderFontSize = 12;
constexpr double kHeaderSpacing = 6;
constexpr double kRingLineWidth = 6;
constexpr double kRingDiameter = 64;
constexpr double kRingSpacing = 10;
constexpr double kFooterSpacing = 14;

// A metric card under its title, in a card frame, with its extras under the body: the
// classic and sparkline styles.
class TitledCard final : public PaintedView {
public:
    TitledCard(const MetricPresentation& metric, std::unique_ptr<PaintedView> body,
               const DashboardTheme& theme)
        : header_(metric.title, metric.systemImage), body_(std::move(body)),
          extras_(metric, theme) {}

    double heightFor(double width, const DashboardTheme& theme) const override {
        return card().heightFor(width, theme);
    }
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override {
        card().paint(painter, rect, theme);
    }

private:
    DashboardCard card() const {
        if (extras_.isEmpty())
            return DashboardCard({&header_, body_.get()});
        return DashboardCard({&header_, body_.get(), &extras_});
    }

    SectionHeader header_;
    std::unique_ptr<PaintedView> body_;
    CardExtras extras_;
};

// The extras of cards whose style has no room for them inside (rings, grid cells), in one
// card frame under the row, in the cards' order: the CPU's cores, then lines such as swap.
class ExtrasCard final : public PaintedView {
public:
    ExtrasCard(const std::vector<MetricPresentation>& metrics, const DashboardTheme& theme) {
        for (const MetricPresentation& metric : metrics) {
            CardExtras extras(metric, theme);
            if (!extras.isEmpty())
                extras_.push_back(std::move(extras));
        }
    }

    bool isEmpty() const { return extras_.empty(); }
    double heightFor(double width, const DashboardTheme& theme) const override {
        return card().heightFor(width, theme);
    }
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override {
        card().paint(painter, rect, theme);
    }

private:
    DashboardCard card() const {
        std::vector<const PaintedView*> pieces;
        for (const CardExtras& extras : extras_)
            pieces.push_back(&extras);
        return DashboardCard(std::move(pieces));
    }

    std::vector<CardExtras> extras_;
};

// Rings side by side, 10 apart, in equal columns.
class RingRow final : public PaintedView {
public:
    explicit RingRow(std::vector<MetricPresentation> metrics) : metrics_(std::move(metrics)) {}

    double heightFor(double width, const DashboardTheme& theme) const override {
        double height = 0;
        for (const MetricPresentation& metric : metrics_)
            height = std::max(height, RingMetricCard(metric, kRingLineWidth, kRingDiameter)
                                          .heightFor(columnWidth(width), theme));
        return height;
    }
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override {
        // One title size for the row: a title that must shrink takes the others with it.
        double titleSize = RingMetricCard::kTitleSize;
        for (const MetricPresentation& metric : metrics_)
            titleSize =
                std::min(titleSize, RingMetricCard(metric, kRingLineWidth, kRingDiameter)
                                        .fittingTitleSize(columnWidth(rect.width()), theme));
        for (std::size_t i = 0; i < metrics_.size(); ++i)
            RingMetricCard(metrics_[i], kRingLineWidth, kRingDiameter, titleSize)
                .paint(painter, columnRect(i, rect), theme);
    }
    QRectF columnRect(std::size_t index, const QRectF& rect) const {
        const double width = columnWidth(rect.width());
        return {rect.left() + static_cast<double>(index) * (width + kRingSpacing), rect.top(),
                width, rect.height()};
    }

private:
    double columnWidth(double width) const {
        const auto count = static_cast<double>(std::max<std::size_t>(metrics_.size(), 1));
        return (width - (count - 1) * kRingSpacing) / count;
    }

    std::vector<MetricPresentation> metrics_;
};

struct Block {
    std::unique_ptr<PaintedView> view;
    QRectF rect;
};

} // namespace

// Everything one redraw paints, laid out at the fixed width.
struct DashboardView::Content {
    std::vector<MetricPresentation> cards; // the level cards, in catalogue order
    QString glanceName;
    QRectF headerRect;
    std::vector<Block> blocks; // strip, cards, disk card, network card
    std::vector<double> dividers;
    QRectF stripRect;
    QRectF topRect; // the "Top" section's widget
    double footerTop = 0;
    double height = 0;
    std::vector<std::pair<QRectF, QString>> toolTips;
};

DashboardView::DashboardView(SystemMonitor& monitor, SettingsStore& settings, QWidget* parent,
                             TopApplicationsMonitor* top)
    : QWidget(parent), monitor_(monitor), settings_(settings),
      theme_(DashboardTheme::fromPalette(false, palette(), font())) {
    setObjectName(QStringLiteral("DashboardView"));
    setAttribute(Qt::WA_TranslucentBackground);
    auto themeOf = [this]() -> const DashboardTheme& { return theme_; };
    settingsButton_ = new FooterButton(QStringLiteral("gearshape"), tr("Settings"), themeOf, this);
    supportButton_ = new FooterButton(QStringLiteral("heart"), QString(), themeOf, this);
    supportButton_->setToolTip(tr("Support lumetra"));
    supportButton_->setAccessibleName(tr("Support lumetra"));
    quitButton_ = new FooterButton(QStringLiteral("power"), tr("Quit lumetra"), themeOf, this);
    // The strip is painted with the rest; this empty child gives it a place and a name for
    // accessibility tools.
    glanceStrip_ = new QWidget(this);
    glanceStrip_->setObjectName(QLatin1String(DashboardGlanceStrip::kIdentifier));
    glanceStrip_->setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(settingsButton_, &QAbstractButton::clicked, this, &DashboardView::settingsRequested);
    connect(supportButton_, &QAbstractButton::clicked, this, &DashboardView::supportRequested);
    connect(quitButton_, &QAbstractButton::clicked, this, &DashboardView::quitRequested);

    connect(&monitor_, &SystemMonitor::metricsChanged, this, &DashboardView::contentChanged);
    connect(&monitor_, &SystemMonitor::historiesChanged, this, &DashboardView::historyChanged);
    connect(&monitor_, &SystemMonitor::diskVolumesChanged, this, &DashboardView::contentChanged);
    connect(&settings_, &SettingsStore::metricCardStyleChanged, this,
            &DashboardView::contentChanged);
    if (top) {
        topSection_ = new TopApplicationsSection(*top, settings_, themeOf, this);
        connect(topSection_, &TopApplicationsSection::preferredHeightChanged, this,
                &DashboardView::contentChanged);
    }
    refreshTheme();
}

DashboardView::~DashboardView() = default;

void DashboardView::setDark(bool dark) {
    if (dark == dark_)
        return;
    dark_ = dark;
    refreshTheme();
    emit darkChanged();
}

void DashboardView::setFixedLook(const QString& fontFamily) {
    fixedFamily_ = fontFamily.isEmpty() ? std::nullopt : std::optional(fontFamily);
    refreshTheme();
}

void DashboardView::refreshTheme() {
    theme_ = fixedFamily_ ? DashboardTheme::fixed(dark_, *fixedFamily_)
                          : DashboardTheme::fromPalette(dark_, QApplication::palette(),
                                                        QApplication::font());
    for (FooterButton* button : {settingsButton_, supportButton_, quitButton_}) {
        button->resize(button->sizeHint());
        button->update();
    }
    if (topSection_)
        topSection_->update();
    contentChanged();
}

void DashboardView::setFixedState(std::optional<DashboardState> state) {
    fixedState_ = std::move(state);
    contentChanged();
}

namespace {

const MetricPresentation* cardOf(const std::vector<MetricPresentation>& cards,
                                 MenuBarMetric metric) {
    const QString id = QString::fromLatin1(rawValue(metric));
    for (const MetricPresentation& card : cards) {
        if (card.id == id)
            return &card;
    }
    return nullptr;
}

// Where a card's figure comes from, for its tooltip: the sensors behind the temperature, the
// interfaces behind the network's rates, the disks behind the disks' rates.
QString sourcesOf(const QString& id, const SystemMetrics& metrics) {
    if (id == QLatin1StringView(rawValue(MenuBarMetric::temperature)))
        return temperatureSourcesText(metrics.temperatureSources);
    if (id == QLatin1StringView(rawValue(MenuBarMetric::download)))
        return networkInterfacesText(metrics.networkInterfaces);
    return {};
}

} // namespace

DashboardView::Content DashboardView::content() const {
    const SystemMetrics& metrics = fixedState_ ? fixedState_->metrics : monitor_.metrics();
    const MetricHistories& histories = fixedState_ ? fixedState_->histories : monitor_.histories();
    const DiskVolumeList& volumes = fixedState_ ? fixedState_->diskVolumes : monitor_.diskVolumes();
    Content content;
    content.cards = levelCards(metrics, histories);
    const DashboardTheme& theme = theme_;
    const double left = kPadding;
    const double width = kWidth - 2 * kPadding;
    double y = kPadding;
    auto place = [&](std::unique_ptr<PaintedView> view) -> const Block& {
        const double height = view->heightFor(width, theme);
        content.blocks.push_back({std::move(view), QRectF(left, y, width, height)});
        y += height + kSpacing;
        return content.blocks.back();
    };

    const double headerHeight =
        std::max(kHeaderIconSize, paint::lineHeight(theme, kHeaderFontSize, QFont::DemiBold));
    content.headerRect = QRectF(left, y, width, headerHeight);
    y += headerHeight + kSpacing;
    const MetricPresentation cpu = *cardOf(content.cards, MenuBarMetric::cpu);
    const MetricPresentation memory = *cardOf(content.cards, MenuBarMetric::memory);
    content.stripRect = place(std::make_unique<DashboardGlanceStrip>(cpu, memory)).rect;
    content.glanceName = tr("CPU %1, memory %2").arg(cpu.valueText, memory.valueText);

    const std::vector<MetricPresentation>& cards = content.cards;
    auto tooltip = [&](std::size_t index, const QRectF& rect) {
        QString text = sourcesOf(cards[index].id, metrics);
        if (!text.isEmpty())
            content.toolTips.emplace_back(rect, std::move(text));
    };
    bool extrasInside = true;
    switch (settings_.metricCardStyle()) {
    case MetricCardStyle::classic:
    case MetricCardStyle::sparklineArea: {
        const bool classic = settings_.metricCardStyle() == MetricCardStyle::classic;
        for (std::size_t i = 0; i < cards.size(); ++i) {
            std::unique_ptr<PaintedView> body;
            if (classic)
                body = std::make_unique<ClassicMetricCard>(cards[i]);
            else
                body = std::make_unique<SparklineAreaMetricCard>(cards[i], 0, 100);
            tooltip(i, place(std::make_unique<TitledCard>(cards[i], std::move(body), theme)).rect);
        }
        break;
    }
    case MetricCardStyle::ring: {
        auto row = std::make_unique<RingRow>(cards);
        const RingRow* rings = row.get();
        const Block& block = place(std::move(row));
        for (std::size_t i = 0; i < cards.size(); ++i)
            tooltip(i, rings->columnRect(i, block.rect));
        extrasInside = false;
        break;
    }
    case MetricCardStyle::compactRow: {
        auto card = std::make_unique<CompactMetricsCard>(cards, theme);
        const CompactMetricsCard* compact = card.get();
        const Block& block = place(std::move(card));
        for (std::size_t i = 0; i < cards.size(); ++i)
            tooltip(i, compact->rowRect(i, block.rect, theme));
        break;
    }
    case MetricCardStyle::grid: {
        std::vector<MetricPresentation> cells = cards;
        for (const MetricDescription& row : metricCatalogue()) {
            if (row.place == DashboardPlace::rate && row.host == row.metric)
                cells.push_back(presentation(row.metric, metrics, histories));
        }
        auto card = std::make_unique<MetricGridCard>(cells);
        const MetricGridCard* grid = card.get();
        const Block& block = place(std::move(card));
        for (std::size_t i = 0; i < cells.size(); ++i) {
            QString text = sourcesOf(cells[i].id, metrics);
            if (!text.isEmpty())
                content.toolTips.emplace_back(grid->cellRect(i, block.rect, theme), text);
        }
        extrasInside = false;
        break;
    }
    }
    if (!extrasInside) {
        auto extras = std::make_unique<ExtrasCard>(cards, theme);
        if (!extras->isEmpty())
            place(std::move(extras));
    }

    if (topSection_) {
        content.dividers.push_back(y);
        y += 1 + kSpacing;
        const double height = topSection_->heightForWidth(width);
        content.topRect = QRectF(left, y, width, height);
        y += height + kSpacing;
    }
    content.dividers.push_back(y);
    y += 1 + kSpacing;
    // The disks' reads and writes: one line at the foot of the disks card.
    std::vector<MetricRow> diskLines;
    QString diskActivity;
    const char* diskTitle = nullptr;
    for (const MetricDescription& row : metricCatalogue()) {
        if (row.place != DashboardPlace::diskLine)
            continue;
        if (!diskActivity.isEmpty())
            diskActivity += QStringLiteral("  ");
        diskActivity += QString::fromUtf16(row.prefix) + row.cardValue(metrics);
        diskTitle = describe(row.host).cardTitle;
    }
    if (diskTitle)
        diskLines.emplace_back(QCoreApplication::translate("MetricPresentation", diskTitle),
                               diskActivity, theme.primary());
    const Block& disks = place(std::make_unique<DiskCardView>(volumes, std::move(diskLines)));
    if (QString text = networkInterfacesText(metrics.diskDevices); !text.isEmpty() && diskTitle)
        content.toolTips.emplace_back(disks.rect, std::move(text));
    // One card per pair of rates, named after the pair's first.
    for (const MetricDescription& head : metricCatalogue()) {
        if (head.place != DashboardPlace::rate || head.host != head.metric)
            continue;
        std::vector<MetricRow> rows;
        for (const MetricDescription& rate : metricCatalogue()) {
            if (rate.place == DashboardPlace::rate && rate.host == head.metric)
                rows.emplace_back(metricName(rate.metric),
                                  QString::fromUtf16(rate.prefix) + rate.cardValue(metrics),
                                  theme.primary());
        }
        const Block& block = place(std::make_unique<RatesCardView>(
            SectionHeader(QCoreApplication::translate("MetricPresentation", head.cardTitle),
                          QString::fromLatin1(head.cardIcon)),
            std::move(rows)));
        QString text = sourcesOf(QString::fromLatin1(rawValue(head.metric)), metrics);
        if (!text.isEmpty())
            content.toolTips.emplace_back(block.rect, std::move(text));
    }
    content.dividers.push_back(y);
    y += 1 + kSpacing;
    content.footerTop = y;
    y += settingsButton_->sizeHint().height() + kPadding;
    content.height = static_cast<int>(std::ceil(y));
    return content;
}

void DashboardView::historyChanged() {
    // A sample changes the histories just before the record, which lays everything out anyway:
    // only a history change that no record follows needs a layout of its own.
    if (historyPending_)
        return;
    historyPending_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (historyPending_)
                contentChanged();
        },
        Qt::QueuedConnection);
}

void DashboardView::contentChanged() {
    historyPending_ = false;
    // Nobody sees a closed popover: lay it out again only when it opens.
    if (parked_) {
        stale_ = true;
        layoutFresh_ = false;
        return;
    }
    stale_ = false;
    // Laid out once per change: paint, resize, tooltips and the size hint read this one.
    layout_ = std::make_unique<Content>(content());
    layoutFresh_ = true;
    const Content& current = *layout_;
    const int height = static_cast<int>(std::ceil(current.height));
    placeFooter(current.footerTop);
    if (topSection_)
        topSection_->setGeometry(current.topRect.toAlignedRect());
    glanceStrip_->setGeometry(current.stripRect.toAlignedRect());
    glanceStrip_->setAccessibleName(current.glanceName);
    if (height != height_) {
        height_ = height;
        updateGeometry();
        emit preferredHeightChanged();
    }
    update();
}

void DashboardView::placeFooter(double top) {
    const int y = static_cast<int>(std::round(top));
    settingsButton_->move(static_cast<int>(kPadding), y);
    const int right = kWidth - static_cast<int>(kPadding);
    quitButton_->move(right - quitButton_->width(), y);
    supportButton_->move(
        quitButton_->x() - static_cast<int>(kFooterSpacing) - supportButton_->width(), y);
}

QSize DashboardView::sizeHint() const {
    // Stale: the popover asks before it opens, to size its window to what it will show.
    if (height_ > 0 && !stale_)
        return {kWidth, height_};
    return {kWidth, static_cast<int>(std::ceil(currentLayout().height))};
}

void DashboardView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    parked_ = false;
    if (stale_)
        contentChanged();
}

void DashboardView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    parked_ = true;
}

void DashboardView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    placeFooter(currentLayout().footerTop);
}

QString DashboardView::toolTipAt(const QPointF& position) const {
    for (const auto& [rect, text] : currentLayout().toolTips) {
        if (rect.contains(position))
            return text;
    }
    return {};
}

bool DashboardView::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::ToolTip: {
        auto* help = static_cast<QHelpEvent*>(event);
        const QString text = toolTipAt(help->pos());
        if (text.isEmpty()) {
            QToolTip::hideText();
            event->ignore();
        } else {
            QToolTip::showText(help->globalPos(), text, this);
        }
        return true;
    }
    case QEvent::ApplicationPaletteChange:
    case QEvent::ApplicationFontChange:
        if (!fixedFamily_)
            refreshTheme();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

const DashboardView::Content& DashboardView::currentLayout() const {
    // Stale while parked: the popover asks before it opens, to size its window to what it
    // will show. The layout built then is the one the first paint uses.
    if (!layout_ || !layoutFresh_) {
        layout_ = std::make_unique<Content>(content());
        layoutFresh_ = true;
    }
    return *layout_;
}

void DashboardView::paintEvent(QPaintEvent*) {
    const Content& current = currentLayout();
    const DashboardTheme& theme = theme_;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);

    const QRectF header = current.headerRect;
    paint::icon(painter, QRectF(header.left(), header.top(), kHeaderIconSize, header.height()),
                QStringLiteral("gauge.with.dots.needle.50percent"), kHeaderIconSize,
                theme.accent());
    const double titleLeft = header.left() + kHeaderIconSize + kHeaderSpacing;
    paint::text(painter, theme,
                QRectF(titleLeft, header.top(), header.right() - titleLeft, header.height()),
                tr("lumetra"), kHeaderFontSize, QFont::DemiBold, theme.primary());

    for (const Block& block : current.blocks)
        block.view->paint(painter, block.rect, theme);

    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.divider());
    for (double y : current.dividers)
        painter.drawRect(QRectF(kPadding, y, kWidth - 2 * kPadding, 1));
}

} // namespace lumetra
