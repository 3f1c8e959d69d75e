#include "model/Logging.h"

#include "model/AppId.h"

namespace lumetra {

namespace {

// QLoggingCategory keeps the name pointer it is given, so the name lives beside it.
struct NamedCategory {
    explicit NamedCategory(const char* suffix)
        : name(QByteArray(kAppId) + '.' + suffix), category(name.constData(), QtInfoMsg) {}
    QByteArray name;
    QLoggingCategory category;
};

} // namespace

const QLoggingCategory& logMonitoring() {
    static const NamedCategory named("monitoring");
    return named.category;
}

const QLoggingCategory& logSensors() {
    static const NamedCategory named("sensors");
    return named.category;
}

const QLoggingCategory& logUi() {
    static const NamedCategory named("ui");
    return named.category;
}

const QLoggingCategory& logSettings() {
    static const NamedCategory named("settings");
    return named.category;
}

} // namespace lumetra
