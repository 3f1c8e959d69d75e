#include "samplers/temperature/HwmonKeyReader.h"

#include "samplers/temperature/smc/SMCError.h"
#include "samplers/kernel/TextScan.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <filesystem>

namespace lumetra {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kAttributeLimit = 256;

std::string readAttribute(const std::string& path) {
    std::string buffer;
    const KernelFileRead read = KernelFile::readOnce(path, buffer, kAttributeLimit);
    return read.ok() ? std::string(textscan::trim(read.text)) : std::string();
}

// A device-tree string property: the text up to its terminating NUL.
std::string readDeviceTreeString(const fs::path& path) {
    std::string buffer;
    const KernelFileRead read = KernelFile::readOnce(path.string(), buffer, kAttributeLimit);
    if (!read.ok())
        return {};
    const std::string_view text = read.text.substr(0, read.text.find('\0'));
    return std::string(text);
}

// Entries of `directory` named prefix + number, in numeric order (hwmon2 before hwmon10).
std::vector<std::pair<unsigned, fs::path>>
numberedEntries(const fs::path& directory, std::string_view prefix, std::string_view suffix = {}) {
    std::vector<std::pair<unsigned, fs::path>> entries;
    std::error_code error;
    for (fs::directory_iterator it(directory, error), end; !error && it != end;
         it.increment(error)) {
        const std::string name = it->path().filename().string();
        std::string_view rest = name;
        if (!rest.starts_with(prefix) || !rest.ends_with(suffix))
            continue;
        rest.remove_prefix(prefix.size());
        rest.remove_suffix(suffix.size());
        if (const auto number = textscan::parseUnsigned(rest); number && *number < 1u << 20)
            entries.emplace_back(static_cast<unsigned>(*number), it->path());
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

bool containsInsensitive(std::string_view text, std::string_view word) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
    return std::search(text.begin(), text.end(), word.begin(), word.end(),
                       [&](char a, char b) { return lower(a) == lower(b); }) != text.end();
}

// The device-tree node of a macsmc_hwmon chip maps each channel's label to its SMC key.
// The chip's device links to its node (of_node); under another root the link's target is
// re-rooted, since it points into the host's /sys.
std::map<std::string, std::string> macsmcKeysByLabel(const KernelRoots& roots,
                                                     const fs::path& chipDirectory) {
    std::map<std::string, std::string> keys;
    std::error_code error;
    const fs::path link = fs::read_symlink(chipDirectory / "device" / "of_node", error);
    if (error)
        return keys;
    const std::string target = link.generic_string();
    constexpr std::string_view kBase = "firmware/devicetree/base/";
    const auto at = target.find(kBase);
    if (at == std::string::npos)
        return keys;
    const fs::path node = roots.sys(target.substr(at));

    // Sensors sit directly below the node ("temperature-TSCD") or, in older trees, in a
    // group ("apple,temp-keys/temp-TSCD").
    const auto collect = [&](const fs::path& directory, const auto& self, int depth) -> void {
        std::error_code walkError;
        for (fs::directory_iterator it(directory, walkError), end; !walkError && it != end;
             it.increment(walkError)) {
            if (!it->is_directory(walkError))
                continue;
            const std::string name = it->path().filename().string();
            const std::string key = readDeviceTreeString(it->path() / "apple,key-id");
            if (!key.empty() && name.starts_with("temp")) {
                const std::string label = readDeviceTreeString(it->path() / "label");
                keys.emplace(label.empty() ? key : label, key);
            } else if (depth == 0) {
                self(it->path(), self, depth + 1);
            }
        }
    };
    collect(node, collect, 0);
    return keys;
}

std::vector<HwmonSensor> scanHwmon(const KernelRoots& roots) {
    std::vector<HwmonSensor> sensors;
    for (const auto& [number, entry] : numberedEntries(roots.sys("class/hwmon"), "hwmon")) {
        // Kernels before 3.x kept some drivers' attributes (coretemp's among them) on the
        // parent device rather than on the hwmon device itself.
        fs::path directory = entry;
        std::string chip = readAttribute((directory / "name").string());
        if (chip.empty()) {
            directory = entry / "device";
            chip = readAttribute((directory / "name").string());
        }
        if (chip.empty())
            continue;
        std::map<std::string, std::string> smcKeys;
        if (chip == "macsmc_hwmon")
            smcKeys = macsmcKeysByLabel(roots, entry);
        for (const auto& [channel, input] : numberedEntries(directory, "temp", "_input")) {
            HwmonSensor sensor;
            sensor.chip = chip;
            sensor.device = entry.filename().string();
            sensor.label =
                readAttribute((directory / ("temp" + std::to_string(channel) + "_label")).string());
            sensor.key = chip + "/" +
                         (sensor.label.empty() ? "temp" + std::to_string(channel) : sensor.label);
            sensor.inputPath = input.string();
            if (const auto key = smcKeys.find(sensor.label); key != smcKeys.end())
                sensor.smcKey = key->second;
            sensors.push_back(std::move(sensor));
        }
    }
    for (const auto& [number, zone] : numberedEntries(roots.sys("class/thermal"), "thermal_zone")) {
        HwmonSensor sensor;
        sensor.chip = readAttribute((zone / "type").string());
        if (sensor.chip.empty())
            continue;
        sensor.device = zone.filename().string();
        sensor.key = sensor.chip + "/" + sensor.device;
        sensor.inputPath = (zone / "temp").string();
        sensor.thermalZone = true;
        sensors.push_back(std::move(sensor));
    }
    return sensors;
}

} // namespace

std::optional<std::int64_t> parseMillidegrees(std::string_view text) {
    return textscan::parseSigned(textscan::trim(text));
}

HwmonKeyReader::HwmonKeyReader(const KernelRoots& roots) : sensors_(scanHwmon(roots)) {
    for (std::size_t i = 0; i < sensors_.size(); ++i) {
        HwmonSensor& sensor = sensors_[i];
        // Two chips of one driver with the same labels (a dual-socket machine): the later
        // one's keys name their device so that every key names one sensor.
        if (byKey_.contains(sensor.key))
            sensor.key += " (" + sensor.device + ")";
        byKey_.emplace(sensor.key, i);
        inputs_.push_back(std::make_unique<KernelFile>(sensor.inputPath, 64));
    }
}

std::vector<std::vector<std::string>>
HwmonKeyReader::candidateGroups(std::span<const std::string_view> smcKeys) const {
    std::vector<std::vector<std::string>> groups;
    const auto addGroup = [&](const auto& accepts) {
        std::vector<std::string> group;
        for (const HwmonSensor& sensor : sensors_) {
            if (accepts(sensor))
                group.push_back(sensor.key);
        }
        if (!group.empty())
            groups.push_back(std::move(group));
    };

    // Apple Silicon: the SMC's own die sensors, in the order of the SMC key table.
    std::vector<std::string> smcGroup;
    for (const std::string_view smcKey : smcKeys) {
        for (const HwmonSensor& sensor : sensors_) {
            if (sensor.chip == "macsmc_hwmon" && sensor.smcKey == smcKey)
                smcGroup.push_back(sensor.key);
        }
    }
    if (!smcGroup.empty())
        groups.push_back(std::move(smcGroup));
    addGroup([](const HwmonSensor& s) {
        return s.chip == "macsmc_hwmon" &&
               (containsInsensitive(s.label, "soc") || containsInsensitive(s.label, "cpu"));
    });

    // Intel: the package sensors ("Physical id N" before Linux 3.x), else the cores.
    addGroup([](const HwmonSensor& s) {
        return s.chip == "coretemp" &&
               (s.label.starts_with("Package id ") || s.label.starts_with("Physical id "));
    });
    addGroup(
        [](const HwmonSensor& s) { return s.chip == "coretemp" && s.label.starts_with("Core "); });

    // AMD: Tdie where the driver reports it (Tctl then carries a fan-curve offset), else
    // Tctl; plus every CCD die.
    const auto isAMD = [](const HwmonSensor& s) {
        return s.chip == "k10temp" || s.chip == "zenpower";
    };
    addGroup([&](const HwmonSensor& sensor) {
        if (!isAMD(sensor))
            return false;
        const bool chipHasTdie = std::any_of(sensors_.begin(), sensors_.end(), [&](const auto& s) {
            return isAMD(s) && s.device == sensor.device && s.label == "Tdie";
        });
        return sensor.label == (chipHasTdie ? "Tdie" : "Tctl") || sensor.label.starts_with("Tccd");
    });

    addGroup([](const HwmonSensor& s) {
        return s.thermalZone &&
               (containsInsensitive(s.chip, "cpu") || containsInsensitive(s.chip, "soc") ||
                s.chip == "x86_pkg_temp" || s.chip == "bcm2835_thermal");
    });
    addGroup([](const HwmonSensor& s) { return s.thermalZone && s.chip == "acpitz"; });
    return groups;
}

SMCKeyValue HwmonKeyReader::readKey(std::string_view key) {
    const auto found = byKey_.find(key);
    if (found == byKey_.end())
        throw SMCError::keyNotFound();
    KernelFile& input = *inputs_[found->second];
    const KernelFileRead read = input.readPrefix(64);
    if (!read.ok())
        throw SMCError::callFailed(static_cast<std::uint32_t>(read.errnoValue));
    const std::optional<std::int64_t> millidegrees = parseMillidegrees(read.text);
    if (!millidegrees) {
        input.reopenNextTime();
        throw SMCError::callFailed(0);
    }
    const auto raw = std::bit_cast<std::uint32_t>(static_cast<float>(*millidegrees / 1000.0));
    SMCKeyValue value;
    value.dataType = "flt ";
    value.size = 4;
    for (std::size_t i = 0; i < 4; ++i)
        value.storage[i] = static_cast<std::uint8_t>(raw >> (8 * i));
    return value;
}

} // namespace lumetra
