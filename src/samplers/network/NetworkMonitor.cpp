#include "samplers/network/NetworkMonitor.h"

#include "model/Logging.h"
#include "samplers/kernel/TextScan.h"
#include "samplers/network/NetworkInterfaceState.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace lumetra {

namespace {

// A machine with hundreds of containers has hundreds of veths: beyond this many interfaces
// the attribute files are opened for each reading instead of being kept open, so the
// monitor never holds more than a few hundred descriptors.
constexpr std::size_t kInterfacesKeptOpen = 32;

constexpr std::size_t kAttributeLimit = 64; // "0x1003\n", "lowerlayerdown\n", 20 digits

bool isDotEntry(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

} // namespace

struct NetworkMonitor::Interface {
    Interface(const std::string& directory, std::string entry)
        : name(std::move(entry)), physical(hasDevice(directory + name + "/device")),
          flags(directory + name + "/flags"), operstate(directory + name + "/operstate"),
          rxBytes(directory + name + "/statistics/rx_bytes"),
          txBytes(directory + name + "/statistics/tx_bytes") {}

    static bool hasDevice(const std::string& link) {
        struct stat status {};
        return ::lstat(link.c_str(), &status) == 0;
    }

    std::string name;
    bool physical; // a device stands behind it; fixed for the interface's life
    KernelFile flags;
    KernelFile operstate;
    KernelFile rxBytes;
    KernelFile txBytes;
};

NetworkMonitor::NetworkMonitor(const KernelRoots& roots, Clock now)
    : directory_(roots.sys("class/net/")), now_(std::move(now)) {}

NetworkMonitor::~NetworkMonitor() {
    closeDirectory();
}

void NetworkMonitor::closeDirectory() {
    if (listing_)
        ::closedir(listing_);
    listing_ = nullptr;
}

// True when the entries, in the kernel's order, are the cached interfaces. sysfs does not
// change the directory's mtime when an interface comes or goes, so the listing itself is
// compared on every reading; with the directory kept open that is one getdents call.
bool NetworkMonitor::listingMatchesInterfaces() {
    ::rewinddir(listing_);
    std::size_t index = 0;
    errno = 0;
    while (const dirent* entry = ::readdir(listing_)) {
        if (isDotEntry(entry->d_name))
            continue;
        if (index >= interfaces_.size() || interfaces_[index]->name != entry->d_name)
            return false;
        ++index;
    }
    return errno == 0 && index == interfaces_.size() && index > 0;
}

bool NetworkMonitor::rebuildInterfaces() {
    ::rewinddir(listing_);
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = ::readdir(listing_)) {
        if (!isDotEntry(entry->d_name))
            names.emplace_back(entry->d_name);
    }
    if (errno != 0 || names.empty())
        return false;

    // Keep the open files of interfaces that are still there.
    std::vector<std::unique_ptr<Interface>> rebuilt;
    rebuilt.reserve(names.size());
    for (std::string& name : names) {
        auto kept = std::find_if(interfaces_.begin(), interfaces_.end(),
                                 [&](const auto& known) { return known && known->name == name; });
        if (kept != interfaces_.end())
            rebuilt.push_back(std::move(*kept));
        else
            rebuilt.push_back(std::make_unique<Interface>(directory_, std::move(name)));
    }
    interfaces_ = std::move(rebuilt);
    countedBefore_.clear(); // a new interface may sit where a gone one was
    countedNames_.clear();
    return true;
}

const char* NetworkMonitor::refreshInterfaces() {
    if (listing_ && listingMatchesInterfaces())
        return nullptr;
    // Open the directory again when it failed or looked empty: a saved tree may have been
    // replaced under us.
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (!listing_)
            listing_ = ::opendir(directory_.c_str());
        if (!listing_) {
            interfaces_.clear();
            return std::strerror(errno);
        }
        if (rebuildInterfaces())
            return nullptr;
        closeDirectory();
    }
    interfaces_.clear();
    return "no interfaces";
}

void NetworkMonitor::reportFailure(const char* why) {
    if (failure_.failed())
        qCCritical(logMonitoring, "%.*s: %s", static_cast<int>(directory_.size() - 1),
                   directory_.c_str(), why); // without the trailing slash
}

namespace {

// One attribute's text. A failed read is tried once more: the descriptor may belong to an
// interface that was removed and created again under the same name.
std::optional<std::string_view> readAttribute(KernelFile& file, bool keepOpen) {
    KernelFileRead read = file.readPrefix(kAttributeLimit);
    if (!read.ok())
        read = file.readPrefix(kAttributeLimit);
    if (!keepOpen)
        file.reopenNextTime();
    if (!read.ok())
        return std::nullopt;
    return read.text;
}

} // namespace

std::optional<NetworkCounterSample> NetworkMonitor::currentCounters() {
    std::lock_guard guard(lock_);
    if (const char* why = refreshInterfaces()) {
        reportFailure(why);
        return std::nullopt;
    }
    failure_.recovered();

    NetworkCounterSample sample;
    sample.timestamp = now_();
    const bool physicalOnly = physicalOnly_;
    counted_.clear();
    for (std::size_t index = 0; index < interfaces_.size(); ++index) {
        Interface& interface = *interfaces_[index];
        if (physicalOnly && !interface.physical)
            continue;
        const bool keepOpen = index < kInterfacesKeptOpen;
        // An interface whose attributes cannot be read or make no sense is skipped: it is
        // being removed, or the entry is not an interface (bonding_masters).
        NetworkInterfaceState state;
        const auto flagsText = readAttribute(interface.flags, keepOpen);
        const auto flags = flagsText ? NetworkInterfaceState::parseFlags(*flagsText) : std::nullopt;
        if (!flags)
            continue;
        state.flags = *flags;
        if (!state.isUp() || state.isLoopback())
            continue;
        const auto operstateText = readAttribute(interface.operstate, keepOpen);
        const auto running =
            operstateText ? NetworkInterfaceState::parseRunning(*operstateText) : std::nullopt;
        state.running = running.value_or(false);
        if (!state.isCounted())
            continue;
        const auto rxText = readAttribute(interface.rxBytes, keepOpen);
        const auto received = rxText ? NetworkInterfaceState::parseCounter(*rxText) : std::nullopt;
        const auto txText = readAttribute(interface.txBytes, keepOpen);
        const auto sent = txText ? NetworkInterfaceState::parseCounter(*txText) : std::nullopt;
        if (!received || !sent)
            continue;
        sample.bytesReceived = textscan::saturatingAdd(sample.bytesReceived, *received);
        sample.bytesSent = textscan::saturatingAdd(sample.bytesSent, *sent);
        counted_.push_back(&interface);
    }
    // The names are built only when the counted set changed (pointers are compared: a
    // rebuilt listing clears countedBefore_).
    if (counted_ != countedBefore_) {
        countedNames_.clear();
        for (const Interface* interface : counted_)
            countedNames_.append(QString::fromStdString(interface->name));
        countedNames_.sort(); // the directory's order differs from file system to file system
        countedBefore_ = counted_;
    }
    sample.interfaces = countedNames_;
    return sample;
}

} // namespace lumetra
