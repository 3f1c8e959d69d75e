#include "windows/GroupedForm.h"

#include "windows/FormGroup.h"
#include "windows/SettingsSectionHeader.h"

#include <QVBoxLayout>

namespace lumetra {

GroupedForm::GroupedForm(QWidget* parent) : QWidget(parent), layout_(new QVBoxLayout(this)) {
    layout_->setContentsMargins(20, 14, 20, 18);
    layout_->setSpacing(14);
}

FormGroup* GroupedForm::addSection(const QString& title, const QString& systemImage) {
    // One widget per section, so a hidden section leaves no gap behind.
    auto* section = new QWidget(this);
    auto* layout = new QVBoxLayout(section);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(5);
    if (!title.isEmpty())
        layout->addWidget(new SettingsSectionHeader(title, systemImage, section));
    auto* group = new FormGroup(section);
    layout->addWidget(group);
    layout_->addWidget(section);
    return group;
}

void GroupedForm::setSectionVisible(FormGroup* group, bool visible) {
    group->parentWidget()->setVisible(visible);
}

void GroupedForm::finish() {
    layout_->addStretch(1);
}

} // namespace lumetra
