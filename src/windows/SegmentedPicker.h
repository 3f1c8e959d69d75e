#pragma once

#include <QStringList>
#include <QWidget>

class QButtonGroup;

namespace lumetra {

// A row of mutually exclusive segments, one selected. A click (or Space on the focused
// segment) reports the choice through `activated`, also when it is the current one, so a
// binding can write the value again; setting the index from code reports nothing.
class SegmentedPicker : public QWidget {
    Q_OBJECT

public:
    SegmentedPicker(const QString& accessibleName, const QStringList& labels,
                    QWidget* parent = nullptr);

    int currentIndex() const;
    void setCurrentIndex(int index);
    int count() const;
    QString label(int index) const;
    // The segment as a button, for tests and keyboard order.
    QWidget* segment(int index) const;

signals:
    void activated(int index);

private:
    QButtonGroup* group_;
};

} // namespace lumetra
