#pragma once

#include <QFont>

namespace lumetra {

// The font of the menu bar label: the desktop's general font, whose digits must all have the
// same advance so the label keeps its width while the numbers change. Created once; needs a
// QGuiApplication.
const QFont& labelFont();

// True when "0" to "9" all advance by the same width in `font`.
bool hasTabularDigits(const QFont& font);

// `preferred` if its digits are tabular, else the desktop's fixed-pitch font at its size.
QFont withTabularDigits(const QFont& preferred);

} // namespace lumetra
