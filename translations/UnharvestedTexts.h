// Texts that reach QCoreApplication::translate() in a way lupdate cannot follow, listed so
// that `cmake --build build --target update_translations` still puts them into the
// catalogues. lupdate reads this file; nothing compiles it.
//   - Dotted keys travel through a variable; the English default stands in the comment.
//   - MetricsTooltip.cpp and UpdateAlert.cpp translate through a file-local tr() helper with a
//     fixed context, which lupdate files under the enclosing namespace or class instead.

#include <QtGlobal>

inline constexpr const char* kUnharvestedTexts[] = {
    //: English: Critical
    QT_TRANSLATE_NOOP("ThermalState", "thermalState.critical"),
    //: English: Download
    QT_TRANSLATE_NOOP("UpdateService", "update.downloadButton"),

    QT_TRANSLATE_NOOP("UpdateService", "A New Version is Available"),
    QT_TRANSLATE_NOOP("UpdateService", "lumetra %1 is available \u2014 you have %2."),
    QT_TRANSLATE_NOOP("UpdateService", "Later"),
    QT_TRANSLATE_NOOP("UpdateService", "You're Up to Date"),
    QT_TRANSLATE_NOOP("UpdateService", "lumetra %1 is the latest version."),
    QT_TRANSLATE_NOOP("UpdateService", "OK"),
    QT_TRANSLATE_NOOP("UpdateService", "Couldn't Check for Updates"),
    QT_TRANSLATE_NOOP("UpdateService", "Make sure you're connected to the internet and try again."),

    QT_TRANSLATE_NOOP("MetricsTooltip", "CPU"),
    QT_TRANSLATE_NOOP("MetricsTooltip", "Memory"),
    QT_TRANSLATE_NOOP("MetricsTooltip", "Memory pressure"),
    QT_TRANSLATE_NOOP("MetricsTooltip", "Temperature"),
    QT_TRANSLATE_NOOP("MetricsTooltip", "Unavailable"),
    QT_TRANSLATE_NOOP("MetricsTooltip", "Thermal state"),
    QT_TRANSLATE_NOOP("MetricsTooltip", "Download"),
    QT_TRANSLATE_NOOP("MetricsTooltip", "Upload"),
    QT_TRANSLATE_NOOP("MetricsTooltip", "Disk"),
    QT_TRANSLATE_NOOP("MetricsTooltip", "%1 free of %2"),
};
