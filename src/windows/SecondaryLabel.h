#pragma once

#include <QLabel>

namespace lumetra {

// Wrapped text in the secondary (or tertiary) text colour of the current palette: notes,
// descriptions, captions.
class SecondaryLabel : public QLabel {
    Q_OBJECT

public:
    enum Level { secondary, tertiary };

    explicit SecondaryLabel(const QString& text, QWidget* parent = nullptr,
                            Level level = secondary);

protected:
    void changeEvent(QEvent* event) override;

private:
    void restyle();

    Level level_;
    bool restyling_ = false;
};

} // namespace lumetra
