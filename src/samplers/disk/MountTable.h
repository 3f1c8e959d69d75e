#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumetra {

// The lines of /proc/PID/mountinfo:
//   36 35 98:0 /mnt1 /mnt/parent rw,noatime master:1 - ext3 /dev/root rw,errors=continue
// Text fields are kept as the kernel wrote them, with octal escapes (\040 for a space);
// decode() turns them into paths.
class MountTable {
public:
    struct Entry {
        int id = 0;
        int parentId = 0;
        std::uint32_t major = 0;
        std::uint32_t minor = 0;
        std::string_view root;       // the directory of the file system that is mounted
        std::string_view mountPoint; // relative to the reader's root
        std::string_view mountOptions;
        std::string_view fsType;
        std::string_view source;
        std::string_view superOptions;

        bool hasBlockDevice() const { return major != 0; }
        // Whether `name` is one of the comma-separated mount or super-block options.
        bool hasOption(std::string_view name) const;
    };

    // Parses every well-formed line of `text` into `entries` (cleared first; the views point
    // into `text`). Malformed lines are skipped; returns how many were.
    static std::size_t parse(std::string_view text, std::vector<Entry>& entries);

    // \ooo octal escapes decoded; anything else kept as it is.
    static std::string decode(std::string_view escaped);
};

} // namespace lumetra
