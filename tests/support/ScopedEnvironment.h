#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

#include <optional>

namespace lumetra::testing {

// Sets or unsets environment variables for a test and puts back what was there before.
class ScopedEnvironment {
public:
    ScopedEnvironment() = default;
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment() {
        for (auto it = saved_.crbegin(); it != saved_.crend(); ++it)
            it->second ? qputenv(it->first.constData(), *it->second)
                       : qunsetenv(it->first.constData());
    }

    void set(const char* name, const QByteArray& value) {
        remember(name);
        qputenv(name, value);
    }
    void unset(const char* name) {
        remember(name);
        qunsetenv(name);
    }

private:
    void remember(const char* name) {
        saved_.append({QByteArray(name), qEnvironmentVariableIsSet(name)
                                             ? std::optional<QByteArray>(qgetenv(name))
                                             : std::nullopt});
    }

    QList<QPair<QByteArray, std::optional<QByteArray>>> saved_;
};

} // namespace lumetra::testing
