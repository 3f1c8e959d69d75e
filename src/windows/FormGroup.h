#pragma once

#include <QFrame>
#include <QString>

class QLabel;
class QVBoxLayout;

namespace lumetra {

// One section's rounded group in a grouped form: rows of a label and a control, full-width
// widgets and notes, with hairlines between them.
class FormGroup : public QFrame {
    Q_OBJECT

public:
    explicit FormGroup(QWidget* parent = nullptr);

    // A row: the optional symbol and the label on the left, `control` on the right. The
    // label becomes the control's accessible name. Returns the row.
    QWidget* addRow(const QString& label, QWidget* control, const QString& symbol = {});
    // A widget across the whole width.
    void addWidget(QWidget* widget);
    // Secondary text, wrapped.
    QLabel* addNote(const QString& text);
    // Removes every row.
    void clear();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void addSeparatorIfNeeded();

    QVBoxLayout* layout_;
};

} // namespace lumetra
