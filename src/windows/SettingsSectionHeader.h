#pragma once

#include <QString>
#include <QWidget>

class QLabel;

namespace lumetra {

// A section's title over its group: the symbol and the title, small, semibold, in the secondary
// text colour.
class SettingsSectionHeader : public QWidget {
    Q_OBJECT

public:
    SettingsSectionHeader(const QString& title, const QString& systemImage,
                          QWidget* parent = nullptr);

    QString title() const { return title_; }
    QString systemImage() const { return systemImage_; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void restyle();

    QString title_;
    QString systemImage_;
    QLabel* icon_;
    QLabel* text_;
};

} // namespace lumetra
