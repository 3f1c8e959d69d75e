#include "SettingsTestSupport.h"

#include <cstring>

namespace lumetra::testing {

SettingsLog* SettingsLog::current_ = nullptr;

SettingsLog::SettingsLog() : previous_(qInstallMessageHandler(&SettingsLog::handler)) {
    current_ = this;
}

SettingsLog::~SettingsLog() {
    qInstallMessageHandler(previous_);
    current_ = nullptr;
}

void SettingsLog::handler(QtMsgType, const QMessageLogContext& context, const QString& text) {
    if (current_ != nullptr && context.category != nullptr &&
        std::strcmp(context.category, "io.lumetra.Lumetra.settings") == 0)
        current_->lines_.append(text);
}

} // namespace lumetra::testing
