#include "samplers/temperature/smc/SMCSysfsTransport.h"

#include "samplers/kernel/TextScan.h"
#include "samplers/temperature/smc/SMCError.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <unistd.h>

namespace lumetra {

namespace {

constexpr char kDirectory[] = "devices/platform/applesmc.768/";
// The controller's generic failure, used when the driver's files could not be read.
constexpr std::uint8_t kResultError = 1;
constexpr std::uint8_t kResultBadCommand = 0x82;

// sysfs prints a key or type as its four characters and a newline; "flt " keeps its space.
std::string_view withoutNewline(std::string_view text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\0'))
        text.remove_suffix(1);
    return text;
}

int errorOf(const KernelFileRead& read) {
    return read.errnoValue != 0 ? read.errnoValue : EIO;
}

} // namespace

std::string SMCSysfsTransport::directory(const KernelRoots& roots) {
    return roots.sys(kDirectory);
}

std::unique_ptr<SMCTransport> SMCSysfsTransport::open(const KernelRoots& roots) {
    const std::string directory = roots.sys(kDirectory);
    std::string buffer;
    const KernelFileRead count = KernelFile::readOnce(directory + "key_count", buffer, 64);
    if (count.error == KernelFileError::missing)
        throw SMCError::serviceNotFound();
    if (!count.ok())
        throw SMCError::failedToOpen(-errorOf(count));
    const auto keyCount = textscan::parseUnsigned(textscan::trim(count.text));
    if (!keyCount || *keyCount == 0 || *keyCount > UINT32_MAX)
        throw SMCError::failedToOpen(-EINVAL);

    const std::string select = directory + "key_at_index";
    const int fd = ::open(select.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0)
        throw SMCError::failedToOpen(-errno);
    return std::unique_ptr<SMCTransport>(
        new SMCSysfsTransport(directory, fd, static_cast<std::uint32_t>(*keyCount)));
}

SMCSysfsTransport::SMCSysfsTransport(const std::string& directory, int selectFd,
                                     std::uint32_t keyCount)
    : selectFd_(selectFd), keyCount_(keyCount), name_(directory + "key_at_index_name", 64),
      type_(directory + "key_at_index_type", 64),
      length_(directory + "key_at_index_data_length", 64),
      data_(directory + "key_at_index_data", 256) {}

SMCSysfsTransport::~SMCSysfsTransport() {
    ::close(selectFd_);
}

std::uint32_t SMCSysfsTransport::keyAt(std::uint32_t index, int& error) {
    char text[16];
    const auto [end, ec] = std::to_chars(text, text + sizeof text, index);
    const auto length = static_cast<std::size_t>(end - text);
    if (::pwrite(selectFd_, text, length, 0) != static_cast<ssize_t>(length)) {
        error = errno != 0 ? errno : EIO;
        return 0;
    }
    const KernelFileRead name = name_.readPrefix(64);
    if (!name.ok()) {
        error = errorOf(name);
        return 0;
    }
    return encodeSMCKey(withoutNewline(name.text));
}

long SMCSysfsTransport::indexOf(std::uint32_t key, int& error) {
    if (const auto cached = indexCache_.find(key); cached != indexCache_.end())
        return cached->second;
    // Lower bound over the sorted keys, as the driver itself looks them up.
    std::uint32_t low = 0;
    std::uint32_t high = keyCount_;
    while (low < high) {
        const std::uint32_t middle = low + (high - low) / 2;
        const std::uint32_t found = keyAt(middle, error);
        if (error != 0)
            return -2;
        if (found < key)
            low = middle + 1;
        else
            high = middle;
    }
    if (low >= keyCount_)
        return -1;
    const std::uint32_t found = keyAt(low, error);
    if (error != 0)
        return -2;
    if (found != key)
        return -1;
    indexCache_.emplace(key, low);
    return low;
}

int SMCSysfsTransport::call(const SMCCallRecord& input, SMCCallRecord& output) {
    output = SMCCallRecord();
    output.setKey(input.key());
    int error = 0;
    const long index = indexOf(input.key(), error);
    if (index == -1) {
        output.setResult(SMCCallRecord::kResultKeyNotFound);
        return 0;
    }
    // Select the key, and check it is still the one there: the index is shared by every
    // reader of the driver.
    if (index < 0 || keyAt(static_cast<std::uint32_t>(index), error) != input.key()) {
        indexCache_.erase(input.key());
        output.setResult(kResultError);
        return -(error != 0 ? error : EAGAIN);
    }

    switch (input.command()) {
    case SMCCallRecord::kCommandReadKeyInfo: {
        const KernelFileRead type = type_.readPrefix(64);
        if (!type.ok()) {
            output.setResult(kResultError);
            return -errorOf(type);
        }
        output.setDataType(encodeSMCKey(withoutNewline(type.text).substr(0, 4)));
        const KernelFileRead length = length_.readPrefix(64);
        const auto size =
            length.ok() ? textscan::parseUnsigned(textscan::trim(length.text)) : std::nullopt;
        if (!size) {
            output.setResult(kResultError);
            return -errorOf(length);
        }
        output.setDataSize(static_cast<std::uint32_t>(std::min<std::uint64_t>(*size, UINT32_MAX)));
        return 0;
    }
    case SMCCallRecord::kCommandReadBytes: {
        const KernelFileRead data = data_.readPrefix(256);
        if (!data.ok()) {
            output.setResult(kResultError);
            return -errorOf(data);
        }
        const std::size_t count =
            std::min({data.text.size(), std::size_t(input.dataSize()), SMCCallRecord::kBytesSize});
        for (std::size_t i = 0; i < count; ++i)
            output.data()[i] = static_cast<std::uint8_t>(data.text[i]);
        return 0;
    }
    default:
        output.setResult(kResultBadCommand);
        return 0;
    }
}

} // namespace lumetra
