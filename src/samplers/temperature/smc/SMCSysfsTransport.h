#pragma once

#include "samplers/kernel/KernelFile.h"
#include "samplers/kernel/KernelRoots.h"
#include "samplers/temperature/smc/SMCTransport.h"

#include <memory>
#include <unordered_map>

namespace lumetra {

// The SMC of an Intel Mac through the applesmc driver's key interface in
// /sys/devices/platform/applesmc.768: write an index to key_at_index, then read that key's
// name, type, data length and raw data. Keys are kept in the controller's sorted order, so a
// key is found by binary search over the indices and its index remembered.
//
// Selecting an index needs write access (root); without it the transport does not open and
// the temperature sensors come from hwmon instead. Apple Silicon's SMC driver offers no such
// interface, so there this transport reports serviceNotFound.
class SMCSysfsTransport final : public SMCTransport {
public:
    // Throws serviceNotFound when the driver's directory is absent, failedToOpen(-errno)
    // when its key interface cannot be used.
    static std::unique_ptr<SMCTransport> open(const KernelRoots& roots);
    // The driver's directory below the root.
    static std::string directory(const KernelRoots& roots);

    ~SMCSysfsTransport() override;
    SMCSysfsTransport(const SMCSysfsTransport&) = delete;
    SMCSysfsTransport& operator=(const SMCSysfsTransport&) = delete;

    int call(const SMCCallRecord& input, SMCCallRecord& output) override;

private:
    SMCSysfsTransport(const std::string& directory, int selectFd, std::uint32_t keyCount);

    // Selects `index` and returns the key now at it, or 0 on a failed read (errno in `error`).
    std::uint32_t keyAt(std::uint32_t index, int& error);
    // The index holding `key`, -1 when there is none, -2 on an I/O error.
    long indexOf(std::uint32_t key, int& error);

    int selectFd_;
    std::uint32_t keyCount_;
    KernelFile name_;
    KernelFile type_;
    KernelFile length_;
    KernelFile data_;
    std::unordered_map<std::uint32_t, std::uint32_t> indexCache_;
};

} // namespace lumetra
