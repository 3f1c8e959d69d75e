#pragma once

#include <QByteArray>
#include <QLoggingCategory>
#include <QMutex>
#include <QStringList>

#include <utility>
#include <vector>

namespace lumetra::testing {

// Collects what one logging category prints while the object lives. Thread-safe: samplers
// log from their own threads.
class LogCapture {
public:
    explicit LogCapture(const QLoggingCategory& category) : category_(category.categoryName()) {
        active() = this;
        previous_ = qInstallMessageHandler(&LogCapture::handle);
    }
    ~LogCapture() {
        qInstallMessageHandler(previous_);
        active() = nullptr;
    }

    std::vector<std::pair<QtMsgType, QString>> entries() const {
        QMutexLocker locker(&mutex_);
        return entries_;
    }
    QStringList lines() const {
        QStringList lines;
        for (const auto& entry : entries())
            lines << entry.second;
        return lines;
    }

private:
    static LogCapture*& active() {
        static LogCapture* capture = nullptr;
        return capture;
    }
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text) {
        LogCapture* self = active();
        if (self && context.category && self->category_ == context.category) {
            QMutexLocker locker(&self->mutex_);
            self->entries_.emplace_back(type, text);
        }
    }

    QByteArray category_;
    QtMessageHandler previous_ = nullptr;
    mutable QMutex mutex_;
    std::vector<std::pair<QtMsgType, QString>> entries_;
};

} // namespace lumetra::testing
