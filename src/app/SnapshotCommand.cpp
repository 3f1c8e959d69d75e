#include "app/SnapshotCommand.h"

#include "appearance/Palette.h"

#include "app/Translations.h"

#include "core/LiveProviders.h"
#include "core/SystemMonitor.h"
#include "core/TopApplicationsMonitor.h"
#include "dashboard/DashboardPicture.h"
#include "dashboard/DashboardView.h"
#include "format/LabelSettings.h"
#include "menubar/MenuBarLabelView.h"
#include "samplers/kernel/KernelRoots.h"
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"

#include <QApplication>
#include <QPainter>
#include <QTimer>

#include <cstdio>

namespace lumetra {

namespace {

SnapshotParse failure(const QString& message) {
    return {std::nullopt, message + QStringLiteral("\nTry 'lumetra --help' for more information.")};
}

void printError(const QString& text) {
    const QByteArray utf8 = (text + u'\n').toUtf8();
    std::fwrite(utf8.constData(), 1, static_cast<std::size_t>(utf8.size()), stderr);
}

// The label as the panel shows it, on a strip of panel in the theme's colours.
QImage labelPicture(const SystemMonitor& monitor, const LabelSettings& settings, bool dark,
                    double devicePixelRatio) {
    constexpr int kPanelHeight = 28;
    constexpr int kMargin = 10;
    MenuBarLabelView label;
    QPalette palette = label.palette();
    const QColor text = palette::text(dark).as<QColor>();
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Highlight, palette::accent(dark).as<QColor>());
    palette.setColor(QPalette::PlaceholderText, palette::secondaryText(dark).as<QColor>());
    label.setPalette(palette);
    label.setContent(monitor.metrics(), monitor.histories(), settings);
    label.adjustSize();
    const QSize size(label.width() + 2 * kMargin, kPanelHeight);
    QImage image(qRound(size.width() * devicePixelRatio), qRound(size.height() * devicePixelRatio),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.setDotsPerMeterX(3780);
    image.setDotsPerMeterY(3780);
    image.fill(palette::panelSurface(dark).as<QColor>());
    QPainter painter(&image);
    label.render(&painter, QPoint(kMargin, (kPanelHeight - label.height()) / 2), QRegion(),
                 QWidget::DrawChildren);
    return image;
}

} // namespace

bool SnapshotCommand::requested(const QStringList& arguments) {
    return std::any_of(arguments.begin(), arguments.end(), [](const QString& argument) {
        return argument == QLatin1String("--snapshot") ||
               argument.startsWith(QLatin1String("--snapshot="));
    });
}

SnapshotParse SnapshotCommand::parse(const QStringList& arguments) {
    SnapshotOptions options;
    std::optional<QString> styleName;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        QString argument = arguments[i];
        std::optional<QString> value;
        if (argument.startsWith(QLatin1String("--")) && argument.contains(u'=')) {
            value = argument.section(u'=', 1);
            argument = argument.section(u'=', 0, 0);
        } else if (i + 1 < arguments.size()) {
            value = arguments[i + 1];
        }
        const bool inlineValue = arguments[i].contains(u'=');
        auto take = [&]() -> std::optional<QString> {
            if (!inlineValue && value)
                ++i;
            return value;
        };
        if (argument == QLatin1String("--snapshot")) {
            const auto file = take();
            if (!file || file->isEmpty() || file->startsWith(QLatin1String("--")))
                return failure(QStringLiteral("lumetra: option '--snapshot' needs a file name"));
            options.file = *file;
        } else if (argument == QLatin1String("--style")) {
            styleName = take();
            if (!styleName)
                return failure(QStringLiteral("lumetra: option '--style' needs a value"));
        } else if (argument == QLatin1String("--label")) {
            options.label = true;
        } else if (argument == QLatin1String("--theme")) {
            const auto name = take();
            if (name == QLatin1String("light") || name == QLatin1String("dark"))
                options.dark = name == QLatin1String("dark");
            else
                return failure(QStringLiteral("lumetra: unknown theme '%1' (expected light or "
                                              "dark)")
                                   .arg(name.value_or(QString())));
        } else {
            return failure(QStringLiteral("lumetra: option '%1' cannot be combined with "
                                          "--snapshot")
                               .arg(arguments[i]));
        }
    }
    if (styleName && options.label) {
        options.labelStyle = fromRaw<MenuBarDisplayStyle>(QStringView(*styleName));
        if (!options.labelStyle)
            return failure(QStringLiteral("lumetra: unknown label style '%1' (expected textOnly, "
                                          "iconAndText, compactGraph or miniBar)")
                               .arg(*styleName));
    } else if (styleName) {
        options.style = fromRaw<MetricCardStyle>(QStringView(*styleName));
        if (!options.style)
            return failure(QStringLiteral("lumetra: unknown style '%1' (expected classic, "
                                          "ring, compactRow, sparklineArea or grid)")
                               .arg(*styleName));
    }
    return {options, {}};
}

int SnapshotCommand::run(int argc, char* argv[], const SnapshotOptions& options) {
    // No window is ever shown: draw offscreen whatever display there is, or none.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Only the program name: Qt would take --style for a widget style of its own.
    int qtArgc = argc > 0 ? 1 : 0;
    QApplication app(qtArgc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumetra"));
    installTranslations(app);

    // Only reads the settings: the panel app owns the file.
    UserDefaults defaults(UserDefaults::standardFilePath(), UserDefaults::Access::readOnly);
    SettingsStore settings(defaults);
    if (options.style)
        settings.setMetricCardStyle(*options.style);
    const KernelRoots roots;
    SystemMonitor monitor(liveProviders(roots, settings), seconds(settings.updateInterval()),
                          seconds(settings.temperatureInterval()));

    // The "Top" section as an open dashboard shows it: processes read from the start.
    TopApplicationsMonitor top(liveProcessTable(roots), monitor.monitoringThread(),
                               seconds(settings.updateInterval()));
    top.beginWatching();
    DashboardView view(monitor, settings, nullptr, &top);
    // The desktop's font, but a fixed accent: the picture should not depend on the theme
    // the offscreen platform happens to have.
    view.setFixedLook(QApplication::font().family());
    const bool dark = options.dark.value_or(settings.themePreference() == ThemePreference::dark);
    view.setDark(dark);
    const AppearanceConfiguration appearance = AppearanceConfiguration::resolve(
        settings.appearanceMode(), settings.customConfiguration(), false, false);

    int exitCode = 0;
    auto write = [&] {
        monitor.stop();
        QImage image;
        if (options.label) {
            LabelSettings labelSettings = LabelSettings::from(settings);
            if (options.labelStyle)
                labelSettings.style = *options.labelStyle;
            image = labelPicture(monitor, labelSettings, dark, app.devicePixelRatio());
        } else {
            image = DashboardPicture::render(view, appearance, app.devicePixelRatio());
        }
        if (!image.save(options.file, "PNG")) {
            printError(QStringLiteral("lumetra: cannot write %1").arg(options.file));
            exitCode = 1;
        }
        app.exit(exitCode);
    };
    // The first fast sample only primes CPU and network: draw from the second.
    Instant lastTimestamp = kDistantPast;
    int fastSamples = 0;
    bool done = false;
    QObject::connect(&monitor, &SystemMonitor::metricsChanged, &app, [&] {
        const Instant timestamp = monitor.metrics().timestamp;
        if (done || timestamp == lastTimestamp)
            return;
        lastTimestamp = timestamp;
        if (++fastSamples < 2)
            return;
        done = true;
        write();
    });
    // Never hang on a machine whose readings do not come: draw what there is.
    QTimer::singleShot(static_cast<int>(seconds(settings.updateInterval()) * 4000) + 5000, &app,
                       [&] {
                           if (!done) {
                               done = true;
                               write();
                           }
                       });
    QTimer::singleShot(0, &monitor, [&monitor] { monitor.start(); });
    app.exec();
    return exitCode;
}

} // namespace lumetra
