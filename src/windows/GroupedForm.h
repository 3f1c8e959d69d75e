#pragma once

#include <QString>
#include <QWidget>

class QVBoxLayout;

namespace lumetra {

class FormGroup;

// A settings tab: sections top to bottom, each an optional header over a rounded group.
class GroupedForm : public QWidget {
    Q_OBJECT

public:
    explicit GroupedForm(QWidget* parent = nullptr);

    FormGroup* addSection(const QString& title = {}, const QString& systemImage = {});
    // Shows or hides a section with its header.
    void setSectionVisible(FormGroup* group, bool visible);
    // Ends the form: what follows is empty space.
    void finish();

private:
    QVBoxLayout* layout_;
};

} // namespace lumetra
