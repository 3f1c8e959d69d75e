#include "windows/DonationLink.h"
#include "windows/SupportLumetraView.h"
#include "windows/SupportWindowController.h"
#include "windows/WindowsTestSupport.h"

#include <QCheckBox>
#include <QPushButton>
#include <QTest>

using namespace lumetra;
using namespace lumetra::testing;

namespace {

TEST(SupportLumetraViewTest, DontShowAgainStoresAndClearsTheDismissedVersion) {
    WindowsHarness h;
    int closed = 0;
    SupportLumetraView view(
        h.state(), [&] { ++closed; }, nullptr, [] { return QString("1.2"); });
    QCheckBox& box = view.dontShowAgain();
    EXPECT_FALSE(box.isChecked());

    box.click();
    EXPECT_EQ(h.settings->supportPromptDismissedVersion(), QString("1.2"));
    EXPECT_EQ(h.stored("supportPromptDismissedVersion"), "1.2");

    box.click();
    EXPECT_EQ(h.settings->supportPromptDismissedVersion(), std::nullopt);
    EXPECT_FALSE(h.folder.domain().contains("supportPromptDismissedVersion"));
    EXPECT_EQ(closed, 0);
}

TEST(SupportLumetraViewTest, ANewVersionShowsTheBoxUnticked) {
    struct Case {
        std::optional<QString> dismissed;
        QString current;
        bool ticked;
    };
    for (const Case& c :
         {Case{"1.2", "1.2", true}, Case{"1.2", "1.3", false}, Case{std::nullopt, "1.3", false}}) {
        WindowsHarness h;
        h.settings->setSupportPromptDismissedVersion(c.dismissed);
        SupportLumetraView view(
            h.state(), [] {}, nullptr, [&] { return c.current; });
        EXPECT_EQ(view.dontShowAgain().isChecked(), c.ticked) << c.current.toStdString();
    }
}

TEST(SupportLumetraViewTest, LinksOpenTheirPagesInOrderAndTheWindowStays) {
    WindowsHarness h;
    QList<QUrl> opened;
    int closed = 0;
    SupportLumetraView view(
        h.state(), [&] { ++closed; }, nullptr, {}, [&](const QUrl& url) { opened << url; });
    QList<QUrl> expected;
    for (const DonationLink& link : DonationLink::all()) {
        QPushButton* button = view.linkButton(link.id);
        ASSERT_NE(button, nullptr) << link.id.toStdString();
        button->click();
        expected << link.url;
    }
    EXPECT_EQ(opened, expected);
    EXPECT_EQ(closed, 0);
}

TEST(SupportWindowControllerTest, OneWindowReusedAndNotNowOrEscapeHidesIt) {
    WindowsHarness h;
    SupportWindowController controller;
    controller.show(h.state());
    QWidget* first = controller.window();
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(first->isVisible());

    controller.show(h.state());
    EXPECT_EQ(controller.window(), first);

    QTest::mouseClick(&controller.view()->notNow(), Qt::LeftButton);
    EXPECT_FALSE(first->isVisible());
    controller.show(h.state());
    EXPECT_EQ(controller.window(), first);
    EXPECT_TRUE(first->isVisible());

    QTest::keyClick(controller.view(), Qt::Key_Escape);
    EXPECT_FALSE(first->isVisible());
}

} // namespace
