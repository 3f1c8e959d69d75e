#pragma once

#include <QLoggingCategory>

namespace lumetra {

// The four log categories, named <app id>.monitoring, .sensors, .ui and .settings.
const QLoggingCategory& logMonitoring();
const QLoggingCategory& logSensors();
const QLoggingCategory& logUi();
const QLoggingCategory& logSettings();

} // namespace lumetra
