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

const QStringList kMetricOrderDefault{"cpu",    "memory", "temperature", "download",
                                      "upload", "swap",   "diskRead",    "diskWrite"};

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

// Every switch, named after its key, writes its setting to the store and the file, and follows
// the store back.
class SettingsToggleTest : public SettingsViewTest,
                           public ::testing::WithParamInterface<const char*> {};

TEST_P(SettingsToggleTest, ClickWritesStoreAndFileAndStoreMovesTheSwitch) {
    const char* key = GetParam();
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
    if (std::string_view(key) == "launchAtLogin") { // and the login item follows
        EXPECT_EQ(h.loginItem.calls, (QStringList{"register", "unregister"}));
    }
}

INSTANTIATE_TEST_SUITE_P(Switches, SettingsToggleTest,
                         ::testing::Values("launchAtLogin", "showWelcomeScreen",
                                           "automaticallyCheckForUpdates", "networkPhysicalOnly"),
                         [](const auto& info) { return std::string(info.param); });

TEST_F(SettingsViewTest, MetricSwitchesAddAndRemoveMetricsAndDimTheirRows) {
    const MetricOrderModel* model = view.findChild<MetricOrderModel*>();
    ASSERT_NE(model, nullptr);
    // Each click turns a default the other way: the switches start from the settings.
    for (const auto& [metric, row, on] :
         {std::tuple{M::cpu, 0, false}, {M::temperature, 2, false}, {M::upload, 4, true}}) {
        const QString raw = rawList({metric}).first();
        child<QAbstractButton>(view, "metric." + raw)->click();
        EXPECT_EQ(h.settings->enabledMetrics().contains(metric), on) << raw.toStdString();
        EXPECT_EQ(h.stored("enabledMetrics").toStringList().contains(raw), on);
        EXPECT_EQ(model->index(row).data(MetricOrderModel::EnabledRole).toBool(), on);
    }
}

TEST_F(SettingsViewTest, AllMetricsOffLeavesTheOrderFullButDimmedAndThePreviewSaysLumetra) {
    for (const char* name : {"metric.cpu", "metric.memory", "metric.temperature"})
        child<QAbstractButton>(view, name)->click();
    settle();
    EXPECT_TRUE(h.settings->enabledMetrics().isEmpty());
    EXPECT_EQ(h.stored("enabledMetrics").toStringList(), QStringList());
    const MetricOrderModel* model = view.findChild<MetricOrderModel*>();
    ASSERT_EQ(model->rowCount(), kMetricOrderDefault.size());
    for (int row = 0; row < 5; ++row)
        EXPECT_FALSE(model->index(row).data(MetricOrderModel::EnabledRole).toBool()) << row;
    EXPECT_NE(model->index(0).data(Qt::ForegroundRole).value<QColor>(),
              view.palette().color(QPalette::WindowText));
    auto* preview = child<MenuBarLabelView>(view, "labelPreview");
    EXPECT_EQ(preview->text(), "lumetra");
}

// Settings saved by the five-metric version: its order lists the later metrics at its end,
// switched off, each with a switch that turns it on.
TEST(SettingsViewUpgradeTest, AnOrderFromTheFiveMetricVersionOffersTheLaterMetricsOff) {
    WindowsHarness h(R"({"enabledMetrics": ["cpu", "upload"],
        "metricOrder": ["upload", "download", "cpu", "memory", "temperature"]})");
    const SettingsView view{h.state()};
    const MetricOrderModel* model = view.findChild<MetricOrderModel*>();
    ASSERT_NE(model, nullptr);
    const QList<std::pair<M, bool>> rows{
        {M::upload, true},       {M::download, false}, {M::cpu, true},       {M::memory, false},
        {M::temperature, false}, {M::swap, false},     {M::diskRead, false}, {M::diskWrite, false}};
    ASSERT_EQ(model->rowCount(), rows.size());
    for (int row = 0; row < rows.size(); ++row) {
        const QModelIndex index = model->index(row);
        EXPECT_EQ(M(index.data(MetricOrderModel::MetricRole).toInt()), rows[row].first) << row;
        EXPECT_EQ(index.data(MetricOrderModel::EnabledRole).toBool(), rows[row].second) << row;
    }
    auto* swap = child<QAbstractButton>(view, "metric.swap");
    ASSERT_NE(swap, nullptr);
    EXPECT_FALSE(swap->isChecked());
    swap->click();
    EXPECT_TRUE(h.stored("enabledMetrics").toStringList().contains("swap"));
}

// Moving rows in the Order list (what a drag does) moves the metric in `metricOrder` only.
struct MoveCase {
    std::string name;
    int from;
    int to; // the row the block goes in front of, as the list view's drop passes it
    QStringList order;
};

class OrderMoveTest : public SettingsViewTest, public ::testing::WithParamInterface<MoveCase> {};

TEST_P(OrderMoveTest, MovesTheMetricInTheOrderAndSavesIt) {
    const MoveCase& c = GetParam();
    auto* list = child<QListView>(view, "metricOrderList");
    QSignalSpy enabledChanged(h.settings.get(), &SettingsStore::enabledMetricsChanged);
    const MenuBarMetricSet enabled = h.settings->enabledMetrics();
    const bool moved = list->model()->moveRows({}, c.from, 1, {}, c.to);
    EXPECT_EQ(moved, c.order != kMetricOrderDefault);
    EXPECT_EQ(rawList(h.settings->metricOrder()), c.order);
    if (moved) {
        EXPECT_EQ(h.stored("metricOrder").toStringList(), c.order);
    }
    EXPECT_EQ(h.settings->enabledMetrics(), enabled);
    EXPECT_EQ(enabledChanged.count(), 0);
    // The list shows the new order at once.
    QList<M> shown;
    for (int row = 0; row < list->model()->rowCount(); ++row)
        shown << M(list->model()->index(row, 0).data(MetricOrderModel::MetricRole).toInt());
    EXPECT_EQ(rawList(shown), c.order);
}

INSTANTIATE_TEST_SUITE_P(Drags, OrderMoveTest,
                         ::testing::Values(MoveCase{"firstToEnd",
                                                    0,
                                                    8,
                                                    {"memory", "temperature", "download", "upload",
                                                     "swap", "diskRead", "diskWrite", "cpu"}},
                                           MoveCase{"lastToFront",
                                                    7,
                                                    0,
                                                    {"diskWrite", "cpu", "memory", "temperature",
                                                     "download", "upload", "swap", "diskRead"}},
                                           MoveCase{"downOne",
                                                    1,
                                                    3,
                                                    {"cpu", "temperature", "memory", "download",
                                                     "upload", "swap", "diskRead", "diskWrite"}},
                                           MoveCase{"ontoItself", 2, 2, kMetricOrderDefault},
                                           MoveCase{"justBehindItself", 2, 3, kMetricOrderDefault}),
                         byName);

TEST_F(SettingsViewTest, TogglesAndListFollowAStoredOrderThatLacksAMetric) {
    h.settings->setMetricOrder({M::upload, M::cpu});
    settle();
    EXPECT_EQ(view.findChild<MetricOrderModel*>()->rowCount(), 2);
    EXPECT_EQ(view.findChild<QAbstractButton*>("metric.memory"), nullptr);
    EXPECT_NE(view.findChild<QAbstractButton*>("metric.upload"), nullptr);
}

// Every pop-up and segmented picker writes its raw value to the store and the file.
struct PickerCase {
    std::string name;
    QString control;
    QString key;
    int index;
    QVariant stored;
};

class SettingsPickerTest : public SettingsViewTest,
                           public ::testing::WithParamInterface<PickerCase> {};

TEST_P(SettingsPickerTest, ChoiceIsStoredAndSaved) {
    const PickerCase& c = GetParam();
    if (auto* combo = view.findChild<QComboBox*>(c.control)) {
        combo->setCurrentIndex(c.index);
        emit combo->activated(c.index);
    } else {
        auto* picker = child<SegmentedPicker>(view, c.control);
        ASSERT_NE(picker, nullptr);
        QTest::mouseClick(picker->segment(c.index), Qt::LeftButton);
    }
    settle();
    if (c.key == "customConfiguration") {
        const auto configuration = AppearanceConfiguration::fromJson(h.stored(c.key).toByteArray());
        ASSERT_TRUE(configuration.has_value());
        EXPECT_EQ(rawValue(configuration->material), c.stored.toString().toStdString());
    } else {
        EXPECT_EQ(h.stored(c.key), c.stored);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Pickers, SettingsPickerTest,
    ::testing::Values(
        PickerCase{"style", "menuBarDisplayStyle", "menuBarDisplayStyle", 2, "compactGraph"},
        PickerCase{"separator", "separator", "separator", 2, "verticalBar"},
        PickerCase{"memory", "memoryFormat", "memoryFormat", 3, "both"},
        PickerCase{"temperature", "temperatureFormat", "temperatureFormat", 2, "labeledCPU"},
        PickerCase{"cards", "metricCardStyle", "metricCardStyle", 2, "compactRow"},
        PickerCase{"material", "material", "customConfiguration", 2, "hud"},
        PickerCase{"theme", "themePreference", "themePreference", 2, "dark"},
        PickerCase{"update", "updateInterval", "updateInterval", 0, 0.5},
        PickerCase{"temperatureInterval", "temperatureInterval", "temperatureInterval", 3, 10.0}),
    byName);

TEST_F(SettingsViewTest, IntervalPickersReachTheRunningMonitor) {
    QTest::mouseClick(child<SegmentedPicker>(view, "updateInterval")->segment(3), Qt::LeftButton);
    EXPECT_EQ(h.settings->updateInterval(), UpdateInterval::five);
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

TEST_F(SettingsViewTest, ResetActsAtOnceAndEveryControlJumpsBack) {
    h.settings->setLaunchCount(7);
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
    EXPECT_EQ(h.stored("separator"), "space");
    EXPECT_EQ(h.stored("updateInterval"), 1.0);
    EXPECT_EQ(h.stored("metricOrder").toStringList(), kMetricOrderDefault);
    EXPECT_EQ(h.stored("launchCount"), 7);
}

TEST_F(SettingsViewTest, UpdateAndSupportButtonsReachTheirServices) {
    QSignalSpy requested(&view, &SettingsView::supportRequested);
    child<QAbstractButton>(view, "checkForUpdates")->click();
    child<QAbstractButton>(view, "supportLumetra")->click();
    settle();
    EXPECT_EQ(h.updates.fetches, 1);
    EXPECT_EQ(requested.count(), 1);
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

// Switches rebuilt for a new order keep their place in the Tab chain, before the list.
TEST_F(SettingsViewTest, RebuiltSwitchesKeepTheirTabPlace) {
    h.settings->setMetricOrder({M::upload, M::cpu});
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

// A drop as the list view hands it over when it does not move rows itself: the dragged row's
// data dropped into a gap.
TEST_F(SettingsViewTest, DroppedRowDataMovesTheMetricAndRemovesNothing) {
    auto* model = view.findChild<MetricOrderModel*>();
    struct Case {
        int from;
        int gap; // -1: below the last row
        QStringList order;
    };
    const QStringList firstLast{"memory", "temperature", "download",  "upload",
                                "swap",   "diskRead",    "diskWrite", "cpu"};
    for (const Case& c : {Case{0, -1, firstLast}, Case{7, 0, kMetricOrderDefault},
                          Case{1, 1, kMetricOrderDefault}}) {
        std::unique_ptr<QMimeData> data(model->mimeData({model->index(c.from)}));
        ASSERT_NE(data, nullptr);
        EXPECT_TRUE(model->canDropMimeData(data.get(), Qt::MoveAction, c.gap, 0, {}));
        EXPECT_TRUE(model->dropMimeData(data.get(), Qt::MoveAction, c.gap, 0, {}));
        EXPECT_EQ(rawList(h.settings->metricOrder()), c.order) << c.from << "->" << c.gap;
        EXPECT_EQ(h.stored("metricOrder").toStringList(), c.order);
        // What a move drag does to the source afterwards must not lose a metric.
        EXPECT_FALSE(model->removeRows(0, 1));
        EXPECT_EQ(model->rowCount(), kMetricOrderDefault.size());
    }
    // Rows take no drops onto themselves, only the gaps between them.
    EXPECT_FALSE(model->flags(model->index(0)) & Qt::ItemIsDropEnabled);
    EXPECT_TRUE(model->flags({}) & Qt::ItemIsDropEnabled);
}

TEST_F(SettingsViewTest, AltArrowsMoveTheSelectedRowFromTheKeyboard) {
    auto* list = child<QListView>(view, "metricOrderList");
    list->setCurrentIndex(list->model()->index(0, 0));
    QTest::keyClick(list, Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(list, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(rawList(h.settings->metricOrder()),
              (QStringList{"memory", "temperature", "cpu", "download", "upload", "swap", "diskRead",
                           "diskWrite"}));
    EXPECT_EQ(list->currentIndex().row(), 2);
    QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(rawList(h.settings->metricOrder()),
              (QStringList{"memory", "cpu", "temperature", "download", "upload", "swap", "diskRead",
                           "diskWrite"}));
    // Plain arrows only move the selection.
    QTest::keyClick(list, Qt::Key_Up);
    EXPECT_EQ(list->currentIndex().row(), 0);
    QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(rawList(h.settings->metricOrder()),
              (QStringList{"memory", "cpu", "temperature", "download", "upload", "swap", "diskRead",
                           "diskWrite"}));
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
