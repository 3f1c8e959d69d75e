#include "dashboard/TopApplicationsSection.h"

#include "core/TopApplicationsMonitor.h"
#include "dashboard/FooterButton.h"
#include "dashboard/PaintHelpers.h"
#include "format/TopApplicationText.h"
#include "format/ValueFormatters.h"
#include "settings/SettingsStore.h"

#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QFileInfo>
#include <QHelpEvent>
#include <QIcon>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QToolTip>

#include <cmath>

namespace lumetra {

namespace {

constexpr double kHeaderHeight = 18;
constexpr double kSpacing = 4;
constexpr double kPickerSegment = 52;
constexpr double kPickerHeight = 18;
constexpr double kMenuButtonWidth = 18;
// The widest figure a row shows ("999.9 MB"; a percentage is narrower), measured in the
// theme's font so no figure is cut.
const QString kWidestValue = QStringLiteral("999.9 MB");

// A painted button: a segment of the order switch (checkable) or a row's "⋯". Painted by hand
// so it looks the same under every widget style; reachable with Tab, pressed with Space.
class SectionButton final : public QAbstractButton {
public:
    SectionButton(const QString& text, std::function<const DashboardTheme&()> theme,
                  QWidget* parent)
        : QAbstractButton(parent), theme_(std::move(theme)) {
        setText(text);
        setFocusPolicy(Qt::StrongFocus);
        setCursor(Qt::PointingHandCursor);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const DashboardTheme& theme = theme_();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF area = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        if (isChecked() || underMouse() || hasFocus()) {
            painter.setPen(hasFocus() ? QPen(theme.accent(), 1) : Qt::NoPen);
            painter.setBrush(isChecked() ? theme.cardFill() : theme.quaternary());
            painter.drawRoundedRect(area, area.height() / 2, area.height() / 2);
        }
        paint::text(painter, theme, area, text(), TopApplicationsSection::kCaptionSize,
                    isChecked() ? QFont::DemiBold : QFont::Normal,
                    isChecked() ? theme.primary() : theme.secondary(), Qt::AlignCenter);
    }
    void enterEvent(QEnterEvent*) override { update(); }
    void leaveEvent(QEvent*) override { update(); }

private:
    std::function<const DashboardTheme&()> theme_;
};

QPixmap applicationIcon(const TopApplication& application, double size, double ratio) {
    QIcon icon;
    if (!application.icon.isEmpty()) {
        if (QFileInfo(application.icon).isAbsolute())
            icon = QIcon(application.icon);
        else
            icon = QIcon::fromTheme(application.icon);
    }
    if (icon.isNull())
        icon = QIcon::fromTheme(QStringLiteral("application-x-executable"));
    if (icon.isNull())
        return {};
    return icon.pixmap(QSize(int(size), int(size)), ratio);
}

} // namespace

TopApplicationsSection::TopApplicationsSection(TopApplicationsMonitor& monitor,
                                               SettingsStore& settings,
                                               std::function<const DashboardTheme&()> theme,
                                               QWidget* parent)
    : QWidget(parent), monitor_(monitor), settings_(settings), theme_(std::move(theme)) {
    setObjectName(QStringLiteral("TopApplicationsSection"));
    setAccessibleName(tr("Top"));
    auto* cpu = new SectionButton(tr("CPU"), theme_, this);
    auto* memory = new SectionButton(tr("Memory"), theme_, this);
    cpu->setObjectName(QStringLiteral("TopByCpu"));
    memory->setObjectName(QStringLiteral("TopByMemory"));
    cpu->setAccessibleName(tr("Top applications by CPU"));
    memory->setAccessibleName(tr("Top applications by memory"));
    for (auto* button : {cpu, memory}) {
        button->setCheckable(true);
        button->setAutoExclusive(true);
    }
    const bool byCpu = settings_.topApplicationsOrder() == TopApplicationOrder::cpu;
    cpu->setChecked(byCpu);
    memory->setChecked(!byCpu);
    connect(cpu, &QAbstractButton::clicked, this,
            [this] { settings_.setTopApplicationsOrder(TopApplicationOrder::cpu); });
    connect(memory, &QAbstractButton::clicked, this,
            [this] { settings_.setTopApplicationsOrder(TopApplicationOrder::memory); });
    connect(&settings_, &SettingsStore::topApplicationsOrderChanged, this, [this, cpu, memory] {
        const bool byCpu = settings_.topApplicationsOrder() == TopApplicationOrder::cpu;
        cpu->setChecked(byCpu);
        memory->setChecked(!byCpu);
        changed();
    });

    for (int row = 0; row < kRows; ++row) {
        auto* button = new SectionButton(QStringLiteral("⋯"), theme_, this);
        button->setObjectName(QStringLiteral("TopRowActions%1").arg(row));
        connect(button, &QAbstractButton::clicked, this, [this, row, button] {
            showMenu(row, button->mapToGlobal(QPoint(0, button->height())));
        });
        rowButtons_.append(button);
    }
    const QString program = systemMonitorProgram();
    if (!program.isEmpty()) {
        systemMonitorButton_ = new FooterButton(QStringLiteral("gauge.with.dots.needle.50percent"),
                                                tr("Open System Monitor"), theme_, this);
        connect(systemMonitorButton_, &QAbstractButton::clicked, this,
                [program] { QProcess::startDetached(program, {}); });
    }
    connect(&monitor_, &TopApplicationsMonitor::topApplicationsChanged, this,
            &TopApplicationsSection::changed);
    layoutChildren();
}

TopApplicationsSection::~TopApplicationsSection() {
    if (watching_)
        monitor_.endWatching();
}

QString TopApplicationsSection::systemMonitorProgram() {
    for (const char* name : {"gnome-system-monitor", "plasma-systemmonitor", "xfce4-taskmanager"}) {
        const QString path = QStandardPaths::findExecutable(QLatin1String(name));
        if (!path.isEmpty())
            return path;
    }
    return {};
}

void TopApplicationsSection::setFixedTopApplications(std::optional<TopApplications> top) {
    fixed_ = std::move(top);
    changed();
}

const TopApplications& TopApplicationsSection::shown() const {
    return fixed_ ? *fixed_ : monitor_.topApplications();
}

QList<TopApplication> TopApplicationsSection::rows() const {
    const TopApplications& top = shown();
    TopApplicationOrder order = settings_.topApplicationsOrder();
    if (order == TopApplicationOrder::cpu && !top.cpuValid)
        order = TopApplicationOrder::memory; // until the first interval has passed
    return top.top(order, kRows);
}

double TopApplicationsSection::rowsTop() const {
    return kHeaderHeight + kSpacing;
}

double TopApplicationsSection::heightForWidth(double) const {
    const DashboardTheme& theme = theme_();
    double height = rowsTop();
    const qsizetype count = rows().size();
    height += double(std::max<qsizetype>(count, 1)) * kRowHeight;
    const double line = paint::lineHeight(theme, kCaptionSize) + kSpacing;
    if (shown().onlyOwnProcessesVisible)
        height += line;
    if (!status_.isEmpty())
        height += line;
    if (systemMonitorButton_)
        height += kSpacing + systemMonitorButton_->sizeHint().height();
    return std::ceil(height);
}

QRectF TopApplicationsSection::pickerRect() const {
    return {width() - 2 * kPickerSegment, (kHeaderHeight - kPickerHeight) / 2, 2 * kPickerSegment,
            kPickerHeight};
}

QRectF TopApplicationsSection::rowRect(int row) const {
    return {0, rowsTop() + row * kRowHeight, double(width()), kRowHeight};
}

int TopApplicationsSection::rowAt(const QPointF& position) const {
    const qsizetype count = rows().size();
    for (int row = 0; row < count; ++row)
        if (rowRect(row).contains(position))
            return row;
    return -1;
}

void TopApplicationsSection::layoutChildren() {
    const QRectF picker = pickerRect();
    const auto children = findChildren<SectionButton*>(QString(), Qt::FindDirectChildrenOnly);
    for (SectionButton* button : children) {
        if (button->objectName() == QLatin1String("TopByCpu"))
            button->setGeometry(QRectF(picker.left(), picker.top(), kPickerSegment, picker.height())
                                    .toAlignedRect());
        else if (button->objectName() == QLatin1String("TopByMemory"))
            button->setGeometry(QRectF(picker.left() + kPickerSegment, picker.top(), kPickerSegment,
                                       picker.height())
                                    .toAlignedRect());
    }
    const QList<TopApplication> current = rows();
    for (int row = 0; row < kRows; ++row) {
        QAbstractButton* button = rowButtons_[row];
        const QRectF rect = rowRect(row);
        button->setGeometry(QRectF(rect.right() - kMenuButtonWidth, rect.top() + 2,
                                   kMenuButtonWidth, rect.height() - 4)
                                .toAlignedRect());
        button->setVisible(row < current.size());
        if (row < current.size())
            button->setAccessibleName(tr("Actions for %1").arg(current[row].name));
    }
    if (systemMonitorButton_) {
        systemMonitorButton_->resize(systemMonitorButton_->sizeHint());
        systemMonitorButton_->move(0, height() - systemMonitorButton_->height());
    }
}

void TopApplicationsSection::changed() {
    const int height = int(heightForWidth(width()));
    layoutChildren();
    if (height != lastHeight_) {
        lastHeight_ = height;
        emit preferredHeightChanged();
    }
    update();
}

void TopApplicationsSection::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!watching_) {
        watching_ = true;
        monitor_.beginWatching();
    }
}

void TopApplicationsSection::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (watching_) {
        watching_ = false;
        monitor_.endWatching();
    }
}

void TopApplicationsSection::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layoutChildren();
}

void TopApplicationsSection::paintEvent(QPaintEvent*) {
    const DashboardTheme& theme = theme_();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const double w = width();

    // Header: the title, and the switch's track behind its two buttons.
    paint::icon(painter, QRectF(0, 0, 12, kHeaderHeight), QStringLiteral("cpu"), 12,
                theme.secondary());
    // The title, then what the figures are, so a memory figure is not taken for another kind.
    const TopApplications& top = shown();
    // Until the first interval has passed the rows are by memory (see rows()): say so.
    const bool byCpu = settings_.topApplicationsOrder() == TopApplicationOrder::cpu && top.cpuValid;
    const double valueWidth = paint::textWidth(theme, kWidestValue, kFontSize, QFont::DemiBold) + 1;
    const QString title = tr("Top");
    const double titleWidth = paint::textWidth(theme, title, kTitleSize, QFont::DemiBold);
    paint::text(painter, theme, QRectF(16, 0, titleWidth + 1, kHeaderHeight), title, kTitleSize,
                QFont::DemiBold, theme.secondary());
    const double captionLeft = 16 + titleWidth + 6;
    paint::text(painter, theme,
                QRectF(captionLeft, 0, w - 2 * kPickerSegment - 4 - captionLeft, kHeaderHeight),
                byCpu ? tr("% of one core") : tr("resident"), kCaptionSize, QFont::Normal,
                theme.secondary());
    const QRectF picker = pickerRect();
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.quaternary());
    painter.drawRoundedRect(picker, picker.height() / 2, picker.height() / 2);

    const QList<TopApplication> current = rows();
    if (current.isEmpty())
        paint::text(painter, theme, rowRect(0), tr("Reading processes…"), kFontSize, QFont::Normal,
                    theme.secondary());
    const double ratio = painter.device()->devicePixelRatioF();
    for (int row = 0; row < current.size(); ++row) {
        const TopApplication& application = current[row];
        const QRectF rect = rowRect(row);
        const QPixmap icon = applicationIcon(application, kIconSize, ratio);
        const QRectF iconRect(rect.left(), rect.center().y() - kIconSize / 2, kIconSize, kIconSize);
        if (!icon.isNull())
            painter.drawPixmap(iconRect.toRect(), icon);
        else
            paint::icon(painter, iconRect, QStringLiteral("cpu"), kIconSize - 2, theme.secondary());
        const QString value =
            byCpu ? coreShareText(application.cpuPercent) : formatBytes(application.residentBytes);
        const double valueRight = rect.right() - kMenuButtonWidth - 4;
        paint::text(painter, theme,
                    QRectF(valueRight - valueWidth, rect.top(), valueWidth, rect.height()), value,
                    kFontSize, QFont::DemiBold, theme.primary(), Qt::AlignRight);
        const double nameLeft = iconRect.right() + 6;
        const double nameWidth = valueRight - valueWidth - 6 - nameLeft;
        // The count stays whole; a long name gives way to it.
        const QString count =
            application.isApplication()
                ? QStringLiteral(" · ") + processCountText(application.processCount())
                : QString();
        const double countWidth =
            count.isEmpty() ? 0
                            : std::min(paint::textWidth(theme, count, kFontSize), nameWidth * 0.6);
        const double fullName = paint::textWidth(theme, application.name, kFontSize);
        const double nameSpace = std::min(fullName, nameWidth - countWidth);
        paint::text(painter, theme, QRectF(nameLeft, rect.top(), nameSpace, rect.height()),
                    application.name, kFontSize, QFont::Normal,
                    application.ownedByUser ? theme.primary() : theme.secondary());
        if (!count.isEmpty())
            paint::text(painter, theme,
                        QRectF(nameLeft + nameSpace, rect.top(), countWidth, rect.height()), count,
                        kFontSize, QFont::Normal, theme.secondary());
    }
    double y = rowsTop() + double(std::max<qsizetype>(current.size(), 1)) * kRowHeight;
    const double line = paint::lineHeight(theme, kCaptionSize) + kSpacing;
    if (top.onlyOwnProcessesVisible) {
        paint::text(painter, theme, QRectF(0, y, w, line),
                    tr("Only your own processes are visible"), kCaptionSize, QFont::Normal,
                    theme.secondary());
        y += line;
    }
    if (!status_.isEmpty())
        paint::text(painter, theme, QRectF(0, y, w, line), status_, kCaptionSize, QFont::Normal,
                    theme.orange());
}

bool TopApplicationsSection::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(event);
        const int row = rowAt(help->pos());
        const TopApplications& top = shown();
        if (row >= 0 && top.cpuValid) {
            const TopApplication application = rows().value(row);
            QToolTip::showText(
                help->globalPos(),
                cpuShareTooltip(application.cpuPercent, top.logicalCpuCount) + u'\n' +
                    tr("Resident memory: %1").arg(formatBytes(application.residentBytes)),
                this);
        } else {
            QToolTip::hideText();
        }
        return true;
    }
    return QWidget::event(event);
}

void TopApplicationsSection::mousePressEvent(QMouseEvent* event) {
    QWidget::mousePressEvent(event);
}

void TopApplicationsSection::contextMenuEvent(QContextMenuEvent* event) {
    const int row = rowAt(event->pos());
    if (row >= 0)
        showMenu(row, event->globalPos());
}

void TopApplicationsSection::showMenu(int row, const QPoint& globalPosition) {
    const TopApplication application = rows().value(row);
    if (application.processes.isEmpty())
        return;
    QMenu menu(this);
    QAction* quit = menu.addAction(tr("Quit"));
    QAction* forceQuit = menu.addAction(tr("Force Quit"));
    for (QAction* action : {quit, forceQuit}) {
        action->setEnabled(application.ownedByUser);
        if (!application.ownedByUser)
            action->setToolTip(tr("Only your own processes can be stopped"));
    }
    QAction* chosen = menu.exec(globalPosition);
    if (chosen == quit || chosen == forceQuit)
        requestStop(row, chosen == forceQuit);
}

bool TopApplicationsSection::confirm(const TopApplication& application, bool force) {
    if (confirm_)
        return confirm_(application, force);
    QMessageBox box(window());
    box.setIcon(QMessageBox::Warning);
    const int count = application.processCount();
    box.setText((force ? tr("Force Quit “%1” (%2)?") : tr("Quit “%1” (%2)?"))
                    .arg(application.name, processCountText(count)));
    box.setInformativeText(force ? tr("Each process is stopped at once; unsaved work is lost.")
                                 : tr("Each process is asked to quit and may save its work "
                                      "first."));
    QPushButton* yes =
        box.addButton(force ? tr("Force Quit") : tr("Quit"),
                      force ? QMessageBox::DestructiveRole : QMessageBox::AcceptRole);
    box.addButton(QMessageBox::Cancel);
    box.setDefaultButton(force ? static_cast<QPushButton*>(box.button(QMessageBox::Cancel)) : yes);
    box.exec();
    return box.clickedButton() == static_cast<QAbstractButton*>(yes);
}

void TopApplicationsSection::requestStop(int row, bool force) {
    const TopApplication application = rows().value(row);
    if (application.processes.isEmpty() || !confirm(application, force))
        return;
    const StopOutcome outcome = monitor_.stopApplication(application, force);
    status_ = outcomeText(application, outcome, force);
    changed();
}

QString TopApplicationsSection::outcomeText(const TopApplication& application,
                                            const StopOutcome& outcome, bool) {
    const int total = outcome.signalled + outcome.gone + outcome.notPermitted + outcome.failed;
    if (total == 0 || outcome.signalled == total)
        return {};
    if (outcome.gone == total)
        return tr("%1 had already quit").arg(application.name);
    if (outcome.notPermitted > 0)
        return tr("%1: not permitted to stop %2")
            .arg(application.name, processCountText(outcome.notPermitted));
    if (outcome.failed > 0)
        return tr("%1: %2 could not be stopped")
            .arg(application.name, processCountText(outcome.failed));
    return {};
}

} // namespace lumetra
