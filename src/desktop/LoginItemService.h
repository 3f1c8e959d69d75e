#pragma once

#include <QString>

#include <optional>

namespace lumetra {

// Starts the application when the user logs in. The app keeps it in step with the
// "launchAtLogin" setting; tests use a recording double.
class LoginItemService {
public:
    virtual ~LoginItemService() = default;

    virtual bool isEnabled() const = 0;
    // Each returns the reason on failure, nothing on success.
    virtual std::optional<QString> registerItem() = 0;
    virtual std::optional<QString> unregisterItem() = 0;
};

} // namespace lumetra
