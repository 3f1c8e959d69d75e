#include "windows/GroupedForm.h"

#include "windows/FormGroup.h"
#include "windows/SectionHeader.h"

#include <QVBoxLayout>

namespace lumetra {

GroupedForm::GroupedForm(QWidget* parent) : QWidget(parent), layout_(new QVBoxLayout(this)) {
    layout_->setContentsMargins(20, 14, 20, 18);
    layout_->setSpacing(0);
}

FormGroup* GroupedForm::addSection(const QString& title, const QString& systemImage) {
    if (layout_->count() > 0)
        layout_->addSpacing(14);
    auto* group = new FormGroup(this);
    if (!title.isEmpty()) {
        auto* header = new SectionHeader(title, systemImage, this);
        headers_.insert(group, header);
        layout_->addWidget(header);
        layout_->addSpacing(5);
    }
    layout_->addWidget(group);
    return group;
}

void GroupedForm::setSectionVisible(FormGroup* group, bool visible) {
    group->setVisible(visible);
    if (QWidget* header = headers_.value(group))
        header->setVisible(visible);
}

void GroupedForm::finish() {
    layout_->addStretch(1);
}

} // namespace lumetra
