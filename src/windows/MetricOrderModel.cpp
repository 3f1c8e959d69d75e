#include "windows/MetricOrderModel.h"

#include "format/MetricCatalogue.h"
#include "settings/SettingsStore.h"
#include "windows/SymbolIcon.h"

#include <QMimeData>

namespace lumetra {

namespace {

// The dragged row's number; the list only takes drops from itself.
const QString kRowMimeType = QStringLiteral("application/x-lumetra-metric-row");

} // namespace

MetricOrderModel::MetricOrderModel(SettingsStore& settings, QObject* parent)
    : QAbstractListModel(parent), settings_(settings), order_(settings.metricOrder()) {
    connect(&settings_, &SettingsStore::metricOrderChanged, this, &MetricOrderModel::reload);
    connect(&settings_, &SettingsStore::enabledMetricsChanged, this, [this] {
        if (!order_.isEmpty())
            emit dataChanged(index(0), index(int(order_.size()) - 1));
    });
}

QString MetricOrderModel::symbolName(MenuBarMetric metric) {
    return QString::fromLatin1(describe(metric).icon);
}

void MetricOrderModel::reload() {
    const QList<MenuBarMetric> order = settings_.metricOrder();
    if (order == order_)
        return;
    beginResetModel();
    order_ = order;
    endResetModel();
}

int MetricOrderModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(order_.size());
}

QVariant MetricOrderModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= order_.size())
        return {};
    const MenuBarMetric metric = order_.at(index.row());
    const bool enabled = settings_.enabledMetrics().contains(metric);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return metricName(metric);
    case Qt::DecorationRole: {
        QIcon icon =
            SymbolIcon::icon(symbolName(metric), enabled ? enabledColor_ : dimmedColor_, 16);
        // On the selection's accent the symbol is white, like the text.
        for (qreal ratio : {1.0, 2.0})
            icon.addPixmap(SymbolIcon::pixmap(symbolName(metric), Qt::white, 16, ratio),
                           QIcon::Selected);
        return icon;
    }
    case Qt::ForegroundRole:
        return enabled ? enabledColor_ : dimmedColor_;
    case MetricRole:
        return QVariant::fromValue(int(metric));
    case EnabledRole:
        return enabled;
    default:
        return {};
    }
}

Qt::ItemFlags MetricOrderModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags base = QAbstractListModel::flags(index);
    // Rows are dragged; the gaps between them take drops.
    return index.isValid() ? (base | Qt::ItemIsDragEnabled) & ~Qt::ItemIsDropEnabled
                           : base | Qt::ItemIsDropEnabled;
}

Qt::DropActions MetricOrderModel::supportedDropActions() const {
    return Qt::MoveAction;
}

QStringList MetricOrderModel::mimeTypes() const {
    return {kRowMimeType};
}

QMimeData* MetricOrderModel::mimeData(const QModelIndexList& indexes) const {
    if (indexes.isEmpty() || !indexes.first().isValid())
        return nullptr;
    auto* data = new QMimeData;
    data->setData(kRowMimeType, QByteArray::number(indexes.first().row()));
    return data;
}

bool MetricOrderModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row,
                                    int /*column*/, const QModelIndex& parent) {
    if (action != Qt::MoveAction || !data || !data->hasFormat(kRowMimeType) || parent.isValid())
        return false;
    bool ok = false;
    const int from = data->data(kRowMimeType).toInt(&ok);
    if (!ok)
        return false;
    const int to = row < 0 ? rowCount() : row;
    moveRows({}, from, 1, {}, to);
    // Accepted even when nothing moved: the drop is done, and there is nothing to remove.
    return true;
}

bool MetricOrderModel::moveRows(const QModelIndex& sourceParent, int sourceRow, int count,
                                const QModelIndex& destinationParent, int destinationChild) {
    const int rows = int(order_.size());
    if (sourceParent.isValid() || destinationParent.isValid() || count <= 0 || sourceRow < 0 ||
        sourceRow + count > rows || destinationChild < 0 || destinationChild > rows)
        return false;
    // Dropping a block onto itself or just behind itself changes nothing.
    if (destinationChild >= sourceRow && destinationChild <= sourceRow + count)
        return false;
    if (!beginMoveRows({}, sourceRow, sourceRow + count - 1, {}, destinationChild))
        return false;
    QList<MenuBarMetric> moved = order_.mid(sourceRow, count);
    QList<MenuBarMetric> order = order_;
    order.remove(sourceRow, count);
    const int insertAt = destinationChild > sourceRow ? destinationChild - count : destinationChild;
    for (int i = 0; i < count; ++i)
        order.insert(insertAt + i, moved.at(i));
    order_ = order;
    endMoveRows();
    settings_.setMetricOrder(order_);
    return true;
}

void MetricOrderModel::setColors(const QColor& enabled, const QColor& dimmed) {
    if (enabled == enabledColor_ && dimmed == dimmedColor_)
        return;
    enabledColor_ = enabled;
    dimmedColor_ = dimmed;
    if (!order_.isEmpty())
        emit dataChanged(index(0), index(int(order_.size()) - 1));
}

} // namespace lumetra
