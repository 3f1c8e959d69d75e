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

TEST(MessageBoxUpdateAlertsTest, BoxCarriesTheAlert) {
    const std::pair<UpdateAlert, QMessageBox::Icon> cases[] = {
        {UpdateAlert::updateAvailable("1.4.0", "1.3.2"), QMessageBox::Information},
        {UpdateAlert::upToDate("1.3.2"), QMessageBox::Information},
        {UpdateAlert::checkFailed(), QMessageBox::Warning}};
    for (const auto& [alert, icon] : cases) {
        SCOPED_TRACE(alert.message.toStdString());
        const auto box = MessageBoxUpdateAlerts::makeMessageBox(alert);
        EXPECT_EQ(box->text(), alert.message);
        EXPECT_EQ(box->informativeText(), alert.informativeText);
        EXPECT_EQ(box->icon(), icon);
        EXPECT_EQ(box->windowModality(), Qt::ApplicationModal);
        QStringList texts;
        for (QAbstractButton* button : box->buttons())
            texts.append(button->text());
        QStringList expected = alert.buttons;
        texts.sort();
        expected.sort();
        EXPECT_EQ(texts, expected);
        ASSERT_TRUE(box->defaultButton() && box->escapeButton());
        EXPECT_EQ(box->defaultButton()->text(), alert.buttons.first());
        EXPECT_EQ(box->escapeButton()->text(), alert.buttons.last());
    }
}

// Presents the alert and, once it is up, presses a key or clicks the button with that text.
int presentAndPress(const UpdateAlert& alert, Qt::Key key, const QString& clickText = {}) {
    QTimer::singleShot(0, [key, clickText] {
        QWidget* box = QApplication::activeModalWidget();
        if (!box) {
            ADD_FAILURE() << "no modal alert";
            return;
        }
        for (auto* button : box->findChildren<QPushButton*>())
            if (!clickText.isEmpty() && button->text() == clickText)
                return button->click();
        QTest::keyClick(box, key);
    });
    MessageBoxUpdateAlerts alerts;
    return alerts.present(alert);
}

TEST(MessageBoxUpdateAlertsTest, PresentReturnsTheButtonPressed) {
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

TEST(MessageBoxUpdateAlertsTest, OpenURLUsesTheDesktopHandler) {
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler(QStringLiteral("https"), &catcher, "open");
    MessageBoxUpdateAlerts().openURL(QUrl("https://lumetra.app/download"));
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    EXPECT_EQ(catcher.urls, QList{QUrl("https://lumetra.app/download")});
}

} // namespace

#include "MessageBoxUpdateAlertsTest.moc"
