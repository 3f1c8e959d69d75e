#include "dashboard/DashboardView.h"

#include "core/SystemMonitor.h"
#include "dashboard/ClassicMetricCard.h"
#include "dashboard/CompactMetricsCard.h"
#include "dashboard/DashboardCard.h"
#include "dashboard/DashboardGlanceStrip.h"
#include "dashboard/DiskCardView.h"
#include "dashboard/FigureSources.h"
#include "dashboard/FooterButton.h"
#include "dashboard/MetricGridCard.h"
#include "dashboard/MetricPresentation.h"
#include "dashboard/NetworkCardView.h"
#include "dashboard/PaintHelpers.h"
#include "dashboard/RingMetricCard.h"
#include "dashboard/SectionHeader.h"
#include "dashboard/SparklineAreaMetricCard.h"
#include "dashboard/TopApplicationsSection.h"
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

// A metric card under its title, in a card frame: the classic and sparkline styles.
class TitledCard final : public PaintedView {
public:
    TitledCard(const MetricPresentation& metric, std::unique_ptr<PaintedView> body)
        : header_(metric.title, metric.systemImage), body_(std::move(body)) {}

    double heightFor(double width, const DashboardTheme& theme) const override {
        return DashboardCard({&header_, body_.get()}).heightFor(width, theme);
    }
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override {
        DashboardCard({&header_, body_.get()}).paint(painter, rect, theme);
    }

private:
    SectionHeader header_;
    std::unique_ptr<PaintedView> body_;
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
    MetricPresentation cpu;
    MetricPresentation memory;
    MetricPresentation temperature;
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
    connect(&monitor_, &SystemMonitor::cpuHistoryChanged, this, &DashboardView::historyChanged);
    connect(&monitor_, &SystemMonitor::memoryHistoryChanged, this, &DashboardView::historyChanged);
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

DashboardView::Content DashboardView::content() const {
    const SystemMetrics& metrics = fixedState_ ? fixedState_->metrics : monitor_.metrics();
    const MetricHistory& cpuHistory = fixedState_ ? fixedState_->cpuHistory : monitor_.cpuHistory();
    const MetricHistory& memoryHistory =
        fixedState_ ? fixedState_->memoryHistory : monitor_.memoryHistory();
    const DiskVolumeList& volumes = fixedState_ ? fixedState_->diskVolumes : monitor_.diskVolumes();
    Content content;
    content.cpu = cpuPresentation(metrics, cpuHistory);
    content.memory = memoryPresentation(metrics, memoryHistory);
    content.temperature = temperaturePresentation(metrics);
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
    content.stripRect =
        place(std::make_unique<DashboardGlanceStrip>(content.cpu, content.memory)).rect;

    const QString temperatureSources = temperatureSourcesText(metrics.temperatureSources);
    const QString interfaces = networkInterfacesText(metrics.networkInterfaces);
    const std::vector<MetricPresentation> three{content.cpu, content.memory, content.temperature};
    switch (settings_.metricCardStyle()) {
    case MetricCardStyle::classic:
    case MetricCardStyle::sparklineArea: {
        const bool classic = settings_.metricCardStyle() == MetricCardStyle::classic;
        for (const MetricPresentation& metric : three) {
            std::unique_ptr<PaintedView> body;
            if (classic)
                body = std::make_unique<ClassicMetricCard>(metric);
            else
                body = std::make_unique<SparklineAreaMetricCard>(metric, 0, 100);
            const Block& block = place(std::make_unique<TitledCard>(metric, std::move(body)));
            if (&metric == &three.back())
                content.toolTips.emplace_back(block.rect, temperatureSources);
        }
        break;
    }
    case MetricCardStyle::ring: {
        auto row = std::make_unique<RingRow>(three);
        const RingRow* rings = row.get();
        const Block& block = place(std::move(row));
        content.toolTips.emplace_back(rings->columnRect(2, block.rect), temperatureSources);
        break;
    }
    case MetricCardStyle::compactRow: {
        auto card = std::make_unique<CompactMetricsCard>(three);
        const CompactMetricsCard* compact = card.get();
        const Block& block = place(std::move(card));
        content.toolTips.emplace_back(compact->rowRect(2, block.rect, theme), temperatureSources);
        break;
    }
    case MetricCardStyle::grid: {
        std::vector<MetricPresentation> four = three;
        four.push_back(networkPresentation(metrics));
        auto card = std::make_unique<MetricGridCard>(std::move(four));
        const MetricGridCard* grid = card.get();
        const Block& block = place(std::move(card));
        content.toolTips.emplace_back(grid->cellRect(2, block.rect, theme), temperatureSources);
        content.toolTips.emplace_back(grid->cellRect(3, block.rect, theme), interfaces);
        break;
    }
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
    place(std::make_unique<DiskCardView>(volumes));
    const Block& network = place(std::make_unique<NetworkCardView>(metrics.downloadBytesPerSecond,
                                                                   metrics.uploadBytesPerSecond));
    content.toolTips.emplace_back(network.rect, interfaces);
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
        return;
    }
    stale_ = false;
    const Content current = content();
    const int height = static_cast<int>(std::ceil(current.height));
    placeFooter(current.footerTop);
    if (topSection_)
        topSection_->setGeometry(current.topRect.toAlignedRect());
    glanceStrip_->setGeometry(current.stripRect.toAlignedRect());
    glanceStrip_->setAccessibleName(
        tr("CPU %1, memory %2").arg(current.cpu.valueText, current.memory.valueText));
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
    return {kWidth, static_cast<int>(std::ceil(content().height))};
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
    placeFooter(content().footerTop);
}

QString DashboardView::toolTipAt(const QPointF& position) const {
    for (const auto& [rect, text] : content().toolTips) {
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

void DashboardView::paintEvent(QPaintEvent*) {
    const Content current = content();
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
