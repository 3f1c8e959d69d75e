#pragma once

#include "settings/MenuBarMetric.h"

#include <QAbstractListModel>
#include <QColor>
#include <QList>

namespace lumetra {

class SettingsStore;

// The Order list: every metric of `metricOrder`, in its order, enabled ones in the primary
// text colour and the others dimmed. Moving rows (the list view's drag and drop) moves the
// metric within `metricOrder` and saves it; `enabledMetrics` is never touched. A drop moves
// the row whichever way the view delivers it (as a move of rows or as dropped data); rows are
// never inserted or removed.
class MetricOrderModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role { MetricRole = Qt::UserRole + 1, EnabledRole };

    explicit MetricOrderModel(SettingsStore& settings, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    Qt::DropActions supportedDropActions() const override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    // A dropped row moves to the gap it was dropped in (row -1: the end of the list).
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;
    bool moveRows(const QModelIndex& sourceParent, int sourceRow, int count,
                  const QModelIndex& destinationParent, int destinationChild) override;

    // The colours rows are drawn in; the view sets them from its palette.
    void setColors(const QColor& enabled, const QColor& dimmed);

    static QString symbolName(MenuBarMetric metric);

private:
    void reload();

    SettingsStore& settings_;
    QList<MenuBarMetric> order_;
    QColor enabledColor_;
    QColor dimmedColor_;
};

} // namespace lumetra
