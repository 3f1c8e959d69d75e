#pragma once

#include "menubar/LabelImage.h"

#include <QList>
#include <QString>

#include <optional>

namespace lumetra {

// What the panel item shows at one moment, worked out once from the metrics and the label
// settings and handed to whichever of the D-Bus item and the tray icon is showing.
struct PanelItemContent {
    QString label;
    // The widest text the label can take with these settings.
    QString guide;
    // The square icon's bars.
    QList<std::optional<double>> levels;
    // The label as a wide image's pieces.
    QList<LabelImagePiece> pieces;
    QString toolTip;
};

} // namespace lumetra
