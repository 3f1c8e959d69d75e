// What root cannot see for itself: a file it is not allowed to read, and a user without HOME.
// The settings run in a small probe program started as nobody.
#include "settings/UserDefaults.h"

#include "SettingsTestSupport.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace lumetra;
using lumetra::testing::readFile;

namespace {

struct ProbeRun {
    int exitCode = -1;
    QStringList out; // "path=…", then "separator=…" after every step
    QStringList log; // the settings' log lines
    int logged(const QString& start) const {
        return int(std::count_if(log.begin(), log.end(),
                                 [&](const QString& line) { return line.startsWith(start); }));
    }
};

class UserDefaultsAsAnotherUserTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "needs root to run the settings as another user";
        setpriv_ = QStandardPaths::findExecutable(QStringLiteral("setpriv"));
        const passwd* nobody = ::getpwnam("nobody");
        if (setpriv_.isEmpty() || !nobody)
            GTEST_SKIP() << "needs setpriv and the user nobody";
        nobodyUid_ = nobody->pw_uid;
        nobodyGid_ = nobody->pw_gid;
        nobodyHome_ = QFile::decodeName(nobody->pw_dir);
        // The probe must reach its folder through ours.
        ASSERT_EQ(::chmod(QFile::encodeName(base_.path()).constData(), 0755), 0);
    }

    // The probe as nobody, with HOME and XDG_CONFIG_HOME as given (unset when empty).
    ProbeRun runAsNobody(const QStringList& steps, const QString& home,
                         const QString& configHome) const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("HOME"));
        environment.remove(QStringLiteral("XDG_CONFIG_HOME"));
        if (!home.isEmpty())
            environment.insert(QStringLiteral("HOME"), home);
        if (!configHome.isEmpty())
            environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome);
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        QProcess probe;
        probe.setProcessEnvironment(environment);
        probe.start(setpriv_,
                    QStringList{QStringLiteral("--reuid=nobody"), QStringLiteral("--regid=nogroup"),
                                QStringLiteral("--clear-groups"),
                                QStringLiteral(LUMETRA_SETTINGS_PROBE)} +
                        steps);
        ProbeRun run;
        if (!probe.waitForFinished(60000)) {
            probe.kill();
            probe.waitForFinished();
            return run;
        }
        run.exitCode = probe.exitStatus() == QProcess::NormalExit ? probe.exitCode() : -1;
        run.out = QString::fromUtf8(probe.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        run.log = QString::fromUtf8(probe.readAllStandardError()).split('\n', Qt::SkipEmptyParts);
        return run;
    }

    void giveToNobody(const QString& path, mode_t mode) const {
        ASSERT_EQ(::chown(QFile::encodeName(path).constData(), nobodyUid_, nobodyGid_), 0);
        ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0);
    }

    QTemporaryDir base_;
    QString setpriv_;
    uid_t nobodyUid_ = 0;
    gid_t nobodyGid_ = 0;
    QString nobodyHome_;
};

// A file nobody may not read, from the start or since a moment ago, stays where it is, byte
// for byte, with nothing moved aside and nothing saved over it; the probe runs on what it has
// in memory and says why once. Given back its permissions, the file loads again and saving
// resumes on top of what it held.
TEST_F(UserDefaultsAsAnotherUserTest, AnUnreadableFileIsLeftAloneUntilItCanBeRead) {
    struct Case {
        const char* name;
        mode_t mode; // nobody's file with this mode; 0600 and root's for "another user's"
        bool nobodyOwnsIt;
        const char* steps;
        const char* separators;     // after each step
        const char* logged;         // how the probe says why, after the file's name
        const char* savedSeparator; // none: the file must be untouched
    };
    const char* unreadable = "cannot be read (Permission denied)";
    const Case cases[] = {
        {"another user's file", 0600, false, "separator=dot separator=bullet", "dot bullet",
         unreadable, nullptr},
        {"mode 000 from the start, given back", 0000, true,
         "separator=dot chmod=600 await-reload separator=bullet", "dot dot verticalBar bullet",
         unreadable, "bullet"},
        {"mode 000 while running, given back", 0600, true,
         "chmod=000 wait=300 separator=dot chmod=600 await-reload separator=bullet",
         "verticalBar verticalBar dot dot verticalBar bullet",
         "cannot be read any more (Permission denied)", "bullet"},
    };
    const QByteArray original = SettingsFileFormat::serialize(lumetra::testing::parsed(
        R"({"launchCount": 9, "separator": "verticalBar", "myNote": "kept"})"));
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QString configHome = base_.path() + "/" + QString::number(&c - cases);
        const QString folder = configHome + "/lumetra";
        const QString file = folder + "/settings.json";
        ASSERT_TRUE(QDir().mkpath(folder));
        giveToNobody(folder, 0755); // nobody could replace the file: it must choose not to
        lumetra::testing::writeFile(file, original);
        if (c.nobodyOwnsIt)
            giveToNobody(file, c.mode);
        else
            ASSERT_EQ(::chmod(QFile::encodeName(file).constData(), c.mode), 0);

        const ProbeRun run = runAsNobody(QString(c.steps).split(' '), QString(), configHome);
        ASSERT_EQ(run.exitCode, 0)
            << run.out.join('\n').toStdString() << run.log.join('\n').toStdString();
        QStringList separators;
        for (const QString& line : run.out.mid(1))
            separators << line.section('=', 1);
        EXPECT_EQ(separators.join(' '), c.separators);
        EXPECT_EQ(run.logged("Settings file " + file + " " + c.logged), 1)
            << run.log.join('\n').toStdString();
        EXPECT_EQ(run.logged("Could not save settings"), 0);

        EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                  QStringList{"settings.json"});
        if (!c.savedSeparator) {
            EXPECT_EQ(readFile(file), original);
            continue;
        }
        QVariantMap saved = lumetra::testing::parsed(readFile(file));
        EXPECT_EQ(saved.take("separator").toString(), c.savedSeparator);
        QVariantMap before = lumetra::testing::parsed(original);
        before.remove("separator");
        EXPECT_TRUE(SettingsFileFormat::identical(saved, before)) << readFile(file).constData();
    }
}

// Without HOME, XDG_CONFIG_HOME or a home in the password database (nobody's is
// "/nonexistent") there is no folder for the settings: said once, and nothing is written,
// not to "//.config" either.
TEST_F(UserDefaultsAsAnotherUserTest, WithoutAnyHomeTheSettingsLiveInMemory) {
    if (QFileInfo::exists(nobodyHome_))
        GTEST_SKIP() << "nobody has a home directory here: " << nobodyHome_.toStdString();
    for (const QString& home : {QString(), QStringLiteral("relative/home")}) {
        SCOPED_TRACE(home.toStdString());
        const ProbeRun run = runAsNobody({"separator=dot", "separator=bullet"}, home, QString());
        ASSERT_EQ(run.exitCode, 0) << run.log.join('\n').toStdString();
        EXPECT_EQ(run.out, (QStringList{"path=", "separator=dot", "separator=bullet"}));
        EXPECT_EQ(run.log.size(), 1) << run.log.join('\n').toStdString();
        EXPECT_EQ(run.logged("No folder for the settings"), 1);
        EXPECT_FALSE(QFileInfo::exists("/.config/lumetra"));
        EXPECT_FALSE(QFileInfo::exists(nobodyHome_));
    }
}

} // namespace
