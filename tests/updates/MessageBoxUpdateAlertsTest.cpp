#include "updates/MessageBoxUpdateAlerts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

struct BoxCase {
    const char* name;
    UpdateAlert alert;
    QMessageBox::Icon icon;
};

class MessageBoxUpdateAlertsTest : public ::testing::TestWithParam<BoxCase> {};

TEST_P(MessageBoxUpdateAlertsTest, BoxCarriesTheAlert) {
    const auto& c = GetParam();
    const auto box = MessageBoxUpdateAlerts::makeMessageBox(c.alert);
    EXPECT_EQ(box->text(), c.alert.message);
    EXPECT_EQ(box->informativeText(), c.alert.informativeText);
    EXPECT_EQ(box->icon(), c.icon);
    EXPECT_TRUE(box->windowModality() == Qt::ApplicationModal);
    QStringList texts;
    for (QAbstractButton* button : box->buttons())
        texts.append(button->text());
    texts.sort();
    QStringList expected = c.alert.buttons;
    expected.sort();
    EXPECT_EQ(texts, expected);
    ASSERT_TRUE(box->defaultButton());
    EXPECT_EQ(box->defaultButton()->text(), c.alert.buttons.first());
    ASSERT_TRUE(box->escapeButton());
    EXPECT_EQ(box->escapeButton()->text(), c.alert.buttons.last());

    // Kept in the working directory (build/tests) for a look.
    box->show();
    EXPECT_TRUE(box->grab().save(QStringLiteral("UpdateAlert-%1.png").arg(QLatin1String(c.name))));
}

INSTANTIATE_TEST_SUITE_P(
    Alerts, MessageBoxUpdateAlertsTest,
    ::testing::Values(BoxCase{"UpdateAvailable", UpdateAlert::updateAvailable("1.4.0", "1.3.2"),
                              QMessageBox::Information},
                      BoxCase{"UpToDate", UpdateAlert::upToDate("1.3.2"), QMessageBox::Information},
                      BoxCase{"CheckFailed", UpdateAlert::checkFailed(), QMessageBox::Warning}),
    [](const auto& info) { return std::string(info.param.name); });

// Presses a key in the alert once it is up.
int presentAndPress(const UpdateAlert& alert, Qt::Key key, const QString& clickText = {}) {
    QTimer::singleShot(0, [key, clickText] {
        QWidget* box = QApplication::activeModalWidget();
        if (!box) {
            ADD_FAILURE() << "no modal alert";
            return;
        }
        if (!clickText.isEmpty()) {
            for (auto* button : box->findChildren<QPushButton*>())
                if (button->text() == clickText)
                    button->click();
            return;
        }
        QTest::keyClick(box, key);
    });
    MessageBoxUpdateAlerts alerts;
    return alerts.present(alert);
}

TEST(MessageBoxUpdateAlertsPresentTest, ReturnsTheButtonPressed) {
    const UpdateAlert alert = UpdateAlert::updateAvailable("1.4.0", "1.3.2");
    EXPECT_EQ(presentAndPress(alert, Qt::Key_Return), 0); // the default button
    EXPECT_EQ(presentAndPress(alert, Qt::Key_Escape), 1); // "Later"
    EXPECT_EQ(presentAndPress(alert, Qt::Key_unknown, QStringLiteral("Later")), 1);
    EXPECT_EQ(presentAndPress(alert, Qt::Key_unknown, QStringLiteral("Download")), 0);
    EXPECT_EQ(presentAndPress(UpdateAlert::checkFailed(), Qt::Key_Escape), 0);
}

class UrlCatcher : public QObject {
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl& url) { urls.append(url); }
};

TEST(MessageBoxUpdateAlertsPresentTest, OpenURLUsesTheDesktopHandler) {
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler(QStringLiteral("https"), &catcher, "open");
    MessageBoxUpdateAlerts alerts;
    alerts.openURL(QUrl("https://lumetra.app/download"));
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    ASSERT_EQ(catcher.urls.size(), 1);
    EXPECT_EQ(catcher.urls[0], QUrl("https://lumetra.app/download"));
}

} // namespace

#include "MessageBoxUpdateAlertsTest.moc"
