#include "model/SerialExecutor.h"

#include <pthread.h>

namespace lumetra {

SerialExecutor::SerialExecutor(QString name) : name_(std::move(name)) {
    thread_ = std::thread([this] { run(); });
}

SerialExecutor::~SerialExecutor() {
    {
        std::lock_guard guard(mutex_);
        stopping_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

void SerialExecutor::post(std::function<void()> job) {
    {
        std::lock_guard guard(mutex_);
        jobs_.push_back(std::move(job));
    }
    wake_.notify_one();
}

void SerialExecutor::run() {
    // The kernel keeps 15 characters of a thread name: the tail is the telling part.
    const QByteArray full = name_.toUtf8();
    ::pthread_setname_np(::pthread_self(), full.right(15).constData());
    for (;;) {
        std::function<void()> job;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [this] { return stopping_ || !jobs_.empty(); });
            if (jobs_.empty())
                return;
            job = std::move(jobs_.front());
            jobs_.pop_front();
        }
        job();
    }
}

} // namespace lumetra
