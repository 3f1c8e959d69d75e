#pragma once

#include <QString>

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>

namespace lumetra {

// One worker thread that runs submitted jobs one at a time, in order: the confinement that
// lets an object's state go without locks. The destructor finishes queued jobs and joins.
class SerialExecutor {
public:
    explicit SerialExecutor(QString name);
    ~SerialExecutor();
    SerialExecutor(const SerialExecutor&) = delete;
    SerialExecutor& operator=(const SerialExecutor&) = delete;

    void post(std::function<void()> job);

    // Runs `function` on the worker and hands its result back through a future.
    template <typename Function>
    auto submit(Function function) -> std::future<decltype(function())> {
        using Result = decltype(function());
        auto task = std::make_shared<std::packaged_task<Result()>>(std::move(function));
        std::future<Result> result = task->get_future();
        post([task] { (*task)(); });
        return result;
    }

    const QString& name() const { return name_; }

private:
    void run();

    QString name_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> jobs_;
    bool stopping_ = false;
    std::thread thread_;
};

} // namespace lumetra
