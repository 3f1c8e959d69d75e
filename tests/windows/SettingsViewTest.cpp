#include "windows/SettingsView.h"
#include "appearance/GlassBackground.h"
#include "menubar/MenuBarLabelView.h"
#include "support/Cases.h"
#include "windows/AdvancedSettingsView.h"
#include "windows/BackgroundPreview.h"
#include "windows/MetricOrderModel.h"
#include "windows/SegmentedPicker.h"
#include "windows/WindowsTestSupport.h"

#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QMimeData>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QToolButton>

using namespace lumetra;
using namespace lumetra::testing;
using M = MenuBarMetric;

namespace {

// Raw metric names from a space-separated list.
QStringList names(const char* list) {
    return QString::fromLatin1(list).split(u' ');
}

const QStringList kMetricOrderDefault =
    names("cpu memory temperature download upload swap diskRead diskWrite");

QStringList rawList(const QList<M>& metrics) {
    QStringList raw;
    for (M metric : metrics)
        raw << QString::fromLatin1(rawValue(metric).data(), qsizetype(rawValue(metric).size()));
    return raw;
}

class SettingsViewTest : public ::testing::Test {
protected:
    WindowsHarness h;
    SettingsView view{h.state()};
};

// Clicking a tab's button shows it and names the window after it.
TEST_F(SettingsViewTest, TabButtonShowsItsPageAndTitlesTheWindow) {
    view.present();
    QTest::mouseClick(view.tabButton(3), Qt::LeftButton);
    EXPECT_EQ(view.currentIndex(), 3);
    EXPECT_EQ(view.windowTitle(), "Monitoring");
}

// Every switch, named after its key, writes its setting to the store and the file; the login
// item follows its switch.
TEST_F(SettingsViewTest, SwitchClickWritesStoreAndFile) {
    for (const char* key : {"launchAtLogin", "showWelcomeScreen", "automaticallyCheckForUpdates",
                            "networkPhysicalOnly"}) {
        SCOPED_TRACE(key);
        auto* toggle = child<QAbstractButton>(view, key);
        ASSERT_NE(toggle, nullptr);
        const bool before = h.settings->property(key).toBool();
        EXPECT_EQ(toggle->isChecked(), before);
        toggle->click();
        EXPECT_EQ(h.settings->property(key).toBool(), !before);
        EXPECT_EQ(h.stored(key).toBool(), !before);
        EXPECT_EQ(toggle->isChecked(), !before);
        toggle->click();
        EXPECT_EQ(h.settings->property(key).toBool(), before);
        EXPECT_EQ(h.stored(key).toBool(), before);
    }
    EXPECT_EQ(h.loginItem.calls, (QStringList{"register", "unregister"}));
}

// Each click turns a default the other way (the switches start from the settings) and dims or
// lights the metric's row; with all off the order stays full, dimmed, and the preview says
// "lumetra".
TEST_F(SettingsViewTest, MetricSwitchesAddAndRemoveMetricsAndDimTheirRows) {
    const MetricOrderModel* model = view.findChild<MetricOrderModel*>();
    ASSERT_NE(model, nullptr);
    for (const auto& [metric, row, on] : {std::tuple{M::cpu, 0, false},
                                          {M::temperature, 2, false},
                                          {M::upload, 4, true},
                                          {M::memory, 1, false},
                                          {M::upload, 4, false}}) {
        const QString raw = rawList({metric}).first();
        child<QAbstractButton>(view, "metric." + raw)->click();
        EXPECT_EQ(h.settings->enabledMetrics().contains(metric), on) << raw.toStdString();
        EXPECT_EQ(h.stored("enabledMetrics").toStringList().contains(raw), on);
        EXPECT_EQ(model->index(row).data(MetricOrderModel::EnabledRole).toBool(), on);
    }
    settle();
    EXPECT_TRUE(h.settings->enabledMetrics().isEmpty());
    EXPECT_EQ(h.stored("enabledMetrics").toStringList(), QStringList());
    ASSERT_EQ(model->rowCount(), kMetricOrderDefault.size());
    for (int row = 0; row < 5; ++row)
        EXPECT_FALSE(model->index(row).data(MetricOrderModel::EnabledRole).toBool()) << row;
    EXPECT_NE(model->index(0).data(Qt::ForegroundRole).value<QColor>(),
              view.palette().color(QPalette::WindowText));
    EXPECT_EQ(child<MenuBarLabelView>(view, "labelPreview")->text(), "lumetra");
}

// Settings saved by the five-metric version: its order lists the later metrics at its end,
// switched off, each with a switch that turns it on.
TEST(SettingsViewUpgradeTest, AnOrderFromTheFiveMetricVersionOffersTheLaterMetricsOff) {
    WindowsHarness h(R"({"enabledMetrics": ["cpu", "upload"],
        "metricOrder": ["upload", "download", "cpu", "memory", "temperature"]})");
    const SettingsView view{h.state()};
    const MetricOrderModel* model = view.findChild<MetricOrderModel*>();
    ASSERT_NE(model, nullptr);
    QStringList rows; // the enabled ones marked with a '+'
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row);
        rows << rawList({M(index.data(MetricOrderModel::MetricRole).toInt())}).first() +
                    (index.data(MetricOrderModel::EnabledRole).toBool() ? "+" : "");
    }
    EXPECT_EQ(rows, names("upload+ download cpu+ memory temperature swap diskRead diskWrite"));
    auto* swap = child<QAbstractButton>(view, "metric.swap");
    ASSERT_NE(swap, nullptr);
    EXPECT_FALSE(swap->isChecked());
    swap->click();
    EXPECT_TRUE(h.stored("enabledMetrics").toStringList().contains("swap"));
}

// Moving rows in the Order list moves the metric in `metricOrder` only, saves it, and the list
// shows the new order at once; the same for a drop as the list view hands it over when it does
// not move rows itself (the dragged row's data dropped into a gap, -1 below the last row).
TEST_F(SettingsViewTest, MovingOrDroppingRowsMovesTheMetricInTheOrderAndSavesIt) {
    auto* list = child<QListView>(view, "metricOrderList");
    auto* model = view.findChild<MetricOrderModel*>();
    QSignalSpy enabledChanged(h.settings.get(), &SettingsStore::enabledMetricsChanged);
    const MenuBarMetricSet enabled = h.settings->enabledMetrics();
    const QList<M> initial = h.settings->metricOrder();
    struct Case {
        int from;
        int to; // the row the block goes in front of
        QStringList order;
    };
    for (const Case& c :
         {Case{0, 8, names("memory temperature download upload swap diskRead diskWrite cpu")},
          Case{7, 0, names("diskWrite cpu memory temperature download upload swap diskRead")},
          Case{1, 3, names("cpu temperature memory download upload swap diskRead diskWrite")},
          // Onto itself and just behind itself.
          Case{2, 2, kMetricOrderDefault}, Case{2, 3, kMetricOrderDefault}}) {
        for (const bool drop : {false, true}) {
            SCOPED_TRACE(std::to_string(c.from) + "->" + std::to_string(c.to) +
                         (drop ? " dropped" : " moved"));
            h.settings->setMetricOrder(initial);
            if (drop) {
                const int gap = c.to == model->rowCount() ? -1 : c.to;
                std::unique_ptr<QMimeData> data(model->mimeData({model->index(c.from)}));
                ASSERT_NE(data, nullptr);
                EXPECT_TRUE(model->canDropMimeData(data.get(), Qt::MoveAction, gap, 0, {}));
                EXPECT_TRUE(model->dropMimeData(data.get(), Qt::MoveAction, gap, 0, {}));
                // What a move drag does to the source afterwards must not lose a metric.
                EXPECT_FALSE(model->removeRows(0, 1));
            } else {
                EXPECT_EQ(list->model()->moveRows({}, c.from, 1, {}, c.to),
                          c.order != kMetricOrderDefault);
            }
            EXPECT_EQ(rawList(h.settings->metricOrder()), c.order);
            EXPECT_EQ(h.stored("metricOrder").toStringList(), c.order);
            QList<M> shown;
            for (int row = 0; row < list->model()->rowCount(); ++row)
                shown << M(list->model()->index(row, 0).data(MetricOrderModel::MetricRole).toInt());
            EXPECT_EQ(rawList(shown), c.order);
        }
    }
    EXPECT_EQ(h.settings->enabledMetrics(), enabled);
    EXPECT_EQ(enabledChanged.count(), 0);
    // Rows take no drops onto themselves, only the gaps between them.
    EXPECT_FALSE(model->flags(model->index(0)) & Qt::ItemIsDropEnabled);
    EXPECT_TRUE(model->flags({}) & Qt::ItemIsDropEnabled);
}

// Every pop-up and segmented picker writes its raw value to the store and the file, under
// its own name (the material inside the custom appearance).
TEST_F(SettingsViewTest, PickerChoiceIsStoredAndSaved) {
    using C = std::tuple<QString, int, QVariant>;
    for (const auto& [control, index, stored] :
         {C{"menuBarDisplayStyle", 2, "compactGraph"}, C{"separator", 2, "verticalBar"},
          C{"memoryFormat", 3, "both"}, C{"temperatureFormat", 2, "labeledCPU"},
          C{"metricCardStyle", 2, "compactRow"}, C{"material", 2, "hud"},
          C{"themePreference", 2, "dark"}, C{"updateInterval", 0, 0.5},
          C{"temperatureInterval", 3, 10.0}}) {
        SCOPED_TRACE(control.toStdString());
        if (auto* combo = view.findChild<QComboBox*>(control)) {
            combo->setCurrentIndex(index);
            emit combo->activated(index);
        } else {
            QTest::mouseClick(child<SegmentedPicker>(view, control)->segment(index),
                              Qt::LeftButton);
        }
        settle();
        if (control == "material") {
            const auto custom =
                AppearanceConfiguration::fromJson(h.stored("customConfiguration").toByteArray());
            ASSERT_TRUE(custom.has_value());
            EXPECT_EQ(rawValue(custom->material), stored.toString().toStdString());
        } else {
            EXPECT_EQ(h.stored(control), stored);
        }
    }
}

TEST_F(SettingsViewTest, IntervalPickersReachTheRunningMonitor) {
    QTest::mouseClick(child<SegmentedPicker>(view, "updateInterval")->segment(3), Qt::LeftButton);
    EXPECT_EQ(h.state().updateInterval(), UpdateInterval::five);
    // The store moving (a hand edit of the file, a reset) moves the picker.
    h.settings->setTemperatureInterval(TemperatureInterval::five);
    EXPECT_EQ(child<SegmentedPicker>(view, "temperatureInterval")->currentIndex(), 2);
}

TEST_F(SettingsViewTest, ChoosingTheSameValueAgainWritesButNotifiesNobody) {
    auto* combo = child<QComboBox>(view, "separator");
    QSignalSpy changed(h.settings.get(), &SettingsStore::separatorChanged);
    h.folder.write(R"({"hasCompletedOnboarding": true})");
    emit combo->activated(0);
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(h.stored("separator"), "space");
}

TEST_F(SettingsViewTest, AppearanceModesAndTheCustomControls) {
    auto* custom = child<QRadioButton>(view, "mode.custom");
    auto* opacity = child<QSlider>(view, "backgroundOpacity");
    EXPECT_TRUE(child<QRadioButton>(view, "mode.glass")->isChecked());
    view.setCurrentIndex(2);
    view.present();
    EXPECT_FALSE(opacity->isVisible());
    custom->click();
    EXPECT_EQ(h.settings->appearanceMode(), AppearanceMode::custom);
    EXPECT_EQ(h.stored("appearanceMode"), "custom");
    EXPECT_TRUE(opacity->isVisible());

    struct Case {
        QString slider;
        int value;
        double AppearanceConfiguration::*field;
        double expected;
    };
    for (const Case& c :
         {Case{"backgroundOpacity", 50, &AppearanceConfiguration::backgroundOpacity, 0.5},
          Case{"overlayOpacity", 75, &AppearanceConfiguration::overlayOpacity, 0.75},
          Case{"blurIntensity", 20, &AppearanceConfiguration::blurIntensity, 20}}) {
        child<QSlider>(view, c.slider)->setValue(c.value);
        EXPECT_DOUBLE_EQ(h.settings->customConfiguration().*c.field, c.expected)
            << c.slider.toStdString();
        const auto saved =
            AppearanceConfiguration::fromJson(h.stored("customConfiguration").toByteArray());
        ASSERT_TRUE(saved.has_value());
        EXPECT_DOUBLE_EQ((*saved).*c.field, c.expected);
    }
    child<QAbstractButton>(view, "vibrancyEnabled")->click();
    EXPECT_FALSE(h.settings->customConfiguration().vibrancyEnabled);
    // The preview draws what the mode resolves to.
    settle();
    EXPECT_EQ(view.findChild<BackgroundPreview*>()->glass().configuration(),
              h.state().effectiveAppearance());
    EXPECT_DOUBLE_EQ(h.state().effectiveAppearance().backgroundOpacity, 0.5);
}

// What the file holds after a reset is SettingsStoreTest's; here the button resets at once and
// every control follows.
TEST_F(SettingsViewTest, ResetActsAtOnceAndEveryControlJumpsBack) {
    child<QAbstractButton>(view, "showWelcomeScreen")->click();
    child<QAbstractButton>(view, "metric.download")->click();
    QTest::mouseClick(child<SegmentedPicker>(view, "updateInterval")->segment(3), Qt::LeftButton);
    emit child<QComboBox>(view, "separator")->activated(3);
    child<QComboBox>(view, "separator")->setCurrentIndex(3);
    child<QRadioButton>(view, "mode.solid")->click();
    h.settings->setMetricOrder({M::upload, M::cpu});
    settle();

    child<QAbstractButton>(view, "resetSettings")->click();
    settle();
    EXPECT_TRUE(h.settings->showWelcomeScreen());
    EXPECT_TRUE(child<QAbstractButton>(view, "showWelcomeScreen")->isChecked());
    EXPECT_FALSE(child<QAbstractButton>(view, "metric.download")->isChecked());
    EXPECT_EQ(child<SegmentedPicker>(view, "updateInterval")->currentIndex(), 1);
    EXPECT_EQ(child<QComboBox>(view, "separator")->currentIndex(), 0);
    EXPECT_TRUE(child<QRadioButton>(view, "mode.glass")->isChecked());
    EXPECT_EQ(view.findChild<MetricOrderModel*>()->rowCount(), kMetricOrderDefault.size());
}

TEST_F(SettingsViewTest, UpdateButtonChecksForUpdates) {
    child<QAbstractButton>(view, "checkForUpdates")->click();
    settle();
    EXPECT_EQ(h.updates.fetches, 1);
}

TEST_F(SettingsViewTest, AdvancedTabShowsTheSampleAndRestartsSampling) {
    SystemMonitor& monitor = h.state().systemMonitor();
    monitor.applyThermalReading(
        {52.0,
         ThermalState::serious,
         TemperatureAvailability::exactTemperature,
         {QStringLiteral("k10temp/Tctl"), QStringLiteral("k10temp/Tccd1")}});
    settle();
    auto value = [&](const QString& name) { return child<QLabel>(view, name)->text(); };
    EXPECT_EQ(value("temperature"), "Exact reading available");
    EXPECT_EQ(value("thermalState"), "Serious");
    EXPECT_EQ(value("temperatureSources"), "k10temp/Tctl, k10temp/Tccd1");

    QSignalSpy samples(&monitor, &SystemMonitor::metricsChanged);
    child<QAbstractButton>(view, "resetSensorConfiguration")->click();
    // Stop, then start: sampling runs again and the first values arrive.
    EXPECT_TRUE(samples.wait(2000));
    monitor.stop();
}

// The widgets Tab reaches in `page`, in order, by object name (unnamed ones left out).
QStringList tabOrder(QWidget& window, QWidget* page) {
    QStringList names;
    QWidget* start = &window;
    QWidget* w = start->nextInFocusChain();
    for (int guard = 0; w != start && guard < 500; ++guard, w = w->nextInFocusChain()) {
        if ((w->focusPolicy() & Qt::TabFocus) && page->isAncestorOf(w) &&
            !w->objectName().isEmpty() && !w->objectName().startsWith("qt_"))
            names << w->objectName();
    }
    return names;
}

// A stored order that lacks metrics rebuilds the list and the switches (one per metric in the
// order), which keep their place in the Tab chain, before the list.
TEST_F(SettingsViewTest, RebuiltSwitchesFollowAShortStoredOrderAndKeepTheirTabPlace) {
    h.settings->setMetricOrder({M::upload, M::cpu});
    settle();
    EXPECT_EQ(view.findChild<MetricOrderModel*>()->rowCount(), 2);
    EXPECT_EQ(tabOrder(view, view.page(1)),
              (QStringList{"metric.upload", "metric.cpu", "metricOrderList", "menuBarDisplayStyle",
                           "separator", "memoryFormat", "temperatureFormat"}));
}

TEST_F(SettingsViewTest, SpaceFlipsAFocusedSwitch) {
    view.present();
    auto* welcome = child<QAbstractButton>(view, "showWelcomeScreen");
    welcome->setFocus();
    QTest::keyClick(welcome, Qt::Key_Space);
    EXPECT_FALSE(h.settings->showWelcomeScreen());
}

TEST_F(SettingsViewTest, AltArrowsMoveTheSelectedRowFromTheKeyboard) {
    auto* list = child<QListView>(view, "metricOrderList");
    const auto firstThree = [&] { return rawList(h.settings->metricOrder()).mid(0, 3).join(u' '); };
    list->setCurrentIndex(list->model()->index(0, 0));
    QTest::keyClick(list, Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(list, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(firstThree(), "memory temperature cpu");
    EXPECT_EQ(list->currentIndex().row(), 2);
    QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(firstThree(), "memory cpu temperature");
    // Plain arrows only move the selection; the first row goes no higher.
    QTest::keyClick(list, Qt::Key_Up);
    EXPECT_EQ(list->currentIndex().row(), 0);
    QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(firstThree(), "memory cpu temperature");
    EXPECT_EQ(rawList(h.settings->metricOrder()).mid(3), kMetricOrderDefault.mid(3));
}

TEST_F(SettingsViewTest, WindowBackgroundFollowsTheAppearanceAndTheme) {
    auto* background = view.findChild<GlassBackground*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_NE(background, nullptr);
    EXPECT_TRUE(background->isOpaque());
    EXPECT_EQ(background->configuration(), h.state().effectiveAppearance());
    child<QRadioButton>(view, "mode.solid")->click();
    EXPECT_EQ(background->configuration(), AppearanceConfiguration::preset(AppearanceMode::solid));
    QTest::mouseClick(child<SegmentedPicker>(view, "themePreference")->segment(2), Qt::LeftButton);
    EXPECT_TRUE(background->isDark());
    EXPECT_LT(view.palette().color(QPalette::Window).lightnessF(), 0.5);
    QTest::mouseClick(child<SegmentedPicker>(view, "themePreference")->segment(1), Qt::LeftButton);
    EXPECT_FALSE(background->isDark());
    EXPECT_GT(view.palette().color(QPalette::Window).lightnessF(), 0.5);
}

} // namespace
