#pragma once

#include <QByteArray>
#include <QLoggingCategory>
#include <QMutex>
#include <QStringList>

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

    QStringList lines() const {
        QMutexLocker locker(&mutex_);
        return lines_;
    }

private:
    static LogCapture*& active() {
        static LogCapture* capture = nullptr;
        return capture;
    }
    static void handle(QtMsgType, const QMessageLogContext& context, const QString& text) {
        LogCapture* self = active();
        if (self && context.category && self->category_ == context.category) {
            QMutexLocker locker(&self->mutex_);
            self->lines_ << text;
        }
    }

    QByteArray category_;
    QtMessageHandler previous_ = nullptr;
    mutable QMutex mutex_;
    QStringList lines_;
};

} // namespace lumetra::testing
