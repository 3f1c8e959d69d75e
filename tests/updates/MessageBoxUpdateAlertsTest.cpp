#include "updates/MessageBoxUpdateAlerts.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

// The box orders its buttons by role, yet the index returned is the one in the alert's list;
// the first button is the default, the last one takes Escape.
TEST(MessageBoxUpdateAlertsTest, PresentReturnsTheButtonPressed) {
    const UpdateAlert available = UpdateAlert::updateAvailable("1.4.0", "1.3.2");
    for (const auto& [alert, press, index] : {std::tuple{available, QString("Return"), 0},
                                              {available, QString("Escape"), 1},
                                              {available, QString("Later"), 1},
                                              {UpdateAlert::checkFailed(), QString("Escape"), 0}}) {
        // Once the alert is up: a click on the button of that text, or else the key.
        QTimer::singleShot(0, [press] {
            QWidget* box = QApplication::activeModalWidget();
            ASSERT_TRUE(box);
            for (QPushButton* button : box->findChildren<QPushButton*>()) {
                if (button->text() == press)
                    return button->click();
            }
            QTest::keyClick(box, press == "Return" ? Qt::Key_Return : Qt::Key_Escape);
        });
        EXPECT_EQ(MessageBoxUpdateAlerts().present(alert), index) << press.toStdString();
    }
}

} // namespace
