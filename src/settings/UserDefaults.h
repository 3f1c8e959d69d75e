#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariant>
#include <QVariantMap>

class QFileSystemWatcher;

namespace lumetra {

// The user-defaults domain: a typed key-value file (see SettingsFileFormat for the encoding),
// by default $XDG_CONFIG_HOME/lumetra/settings.json.
//
// Read-write (the panel application): every change is saved at once and atomically; keys
// nobody asked about are kept; a file that cannot be loaded is moved aside next to itself
// with a timestamp, so nothing the user had is lost, and the domain starts empty. A save
// that fails (a full disk, a read-only folder) leaves the file as it was and keeps the
// change in memory; it is logged once and tried again at the next change.
//
// A file that exists but cannot be read (its permissions, another user's file) is no bad
// file: it stays where it is, the domain runs on the defaults in memory and nothing is
// saved over it until it can be read again, which reloads it.
//
// Read-only (the terminal mode, which may run beside the application): never writes and never
// moves anything.
//
// Both modes watch the file and reload it when someone else replaces it (the application, or
// the user editing it by hand), emitting changedExternally() when the contents really
// changed. A file that no longer parses is ignored with one log line; before the application
// next saves over it, it is kept beside it as settings.json.unreadable-edit.
//
// An empty path gives a domain that lives in memory only.
class UserDefaults : public QObject {
    Q_OBJECT

public:
    enum class Access { readWrite, readOnly };

    explicit UserDefaults(QString filePath, Access access = Access::readWrite,
                          QObject* parent = nullptr);
    ~UserDefaults() override;

    // $XDG_CONFIG_HOME/lumetra/settings.json, found the way the XDG base directory
    // specification says (see xdgConfigHome). Empty when there is no such folder, which is
    // logged once: the domain then lives in memory.
    static QString standardFilePath();

    QString filePath() const { return filePath_; }
    bool isReadOnly() const { return access_ == Access::readOnly; }

    // An invalid QVariant when the key is missing.
    QVariant value(const QString& key) const { return domain_.value(key); }
    bool contains(const QString& key) const { return domain_.contains(key); }
    QVariantMap domain() const { return domain_; }

    // Stores and saves; a value of a type the file cannot hold is refused with a log line.
    // An invalid QVariant removes the key. In read-only mode the change stays in memory.
    void setValue(const QString& key, const QVariant& value);
    void remove(const QString& key);

    // Saves once for all changes made while it lives (nestable).
    class Batch {
    public:
        explicit Batch(UserDefaults& defaults);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

    private:
        UserDefaults& defaults_;
    };

signals:
    // After each setValue or remove, in order, once the change is in the domain.
    void stored(const QString& key);
    // The file changed on disk and the domain now holds its new contents.
    void changedExternally();

private:
    void load();
    void save();
    void markDirty();
    void moveAside(const QString& reason);
    void keepBrokenEditAside();
    void watch();
    void reloadFromDisk();
    // Kept apart because an unreadable file is left alone while one that reads as something
    // else is moved aside.
    enum class FileProblem {
        none,       // read; the bytes still need parsing
        missing,    // no file (or it vanished while being opened)
        unreadable, // there, but cannot be opened or read: permissions, an I/O error
        unusable,   // a directory or other non-file, or too large
    };
    FileProblem readFile(QByteArray& bytes, QString& error) const;

    QString filePath_;
    Access access_;
    QVariantMap domain_;
    QByteArray lastBytes_;      // the file as last read, to ignore events that change nothing
    bool writable_ = true;      // false while a file we could not move aside is in the way
    bool unreadable_ = false;   // the file is there but cannot be read: never saved over
    bool saveFailed_ = false;   // to log a failing save once, not on every assignment
    bool reloadFailed_ = false; // read-only: to log a bad file once per state
    int batchDepth_ = 0;
    bool dirty_ = false;
    QFileSystemWatcher* watcher_ = nullptr;
    QTimer reloadTimer_;
};

} // namespace lumetra
