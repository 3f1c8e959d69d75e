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

// The box is ticked only when this very version was dismissed; ticking it stores the version,
// unticking clears it, and neither closes the window.
TEST(SupportLumetraViewTest, DontShowAgainStoresAndClearsTheDismissedVersion) {
    struct Case {
        std::optional<QString> dismissed;
        QString current;
        bool ticked;
    };
    for (const Case& c :
         {Case{"1.2", "1.2", true}, Case{"1.2", "1.3", false}, Case{std::nullopt, "1.3", false}}) {
        SCOPED_TRACE(c.current.toStdString() +
                     (c.dismissed ? " dismissed " + c.dismissed->toStdString() : ""));
        WindowsHarness h;
        h.settings->setSupportPromptDismissedVersion(c.dismissed);
        int closed = 0;
        SupportLumetraView view(
            h.state(), [&] { ++closed; }, nullptr, [&] { return c.current; });
        QCheckBox& box = view.dontShowAgain();
        EXPECT_EQ(box.isChecked(), c.ticked);
        for (int click = 0; click < 2; ++click) {
            box.click();
            if (box.isChecked()) {
                EXPECT_EQ(h.settings->supportPromptDismissedVersion(), c.current);
                EXPECT_EQ(h.stored("supportPromptDismissedVersion"), c.current);
            } else {
                EXPECT_EQ(h.settings->supportPromptDismissedVersion(), std::nullopt);
                EXPECT_FALSE(h.folder.domain().contains("supportPromptDismissedVersion"));
            }
        }
        EXPECT_EQ(closed, 0);
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
