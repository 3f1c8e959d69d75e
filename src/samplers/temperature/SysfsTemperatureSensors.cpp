#include "samplers/temperature/SysfsTemperatureSensors.h"

#include "samplers/kernel/TextScan.h"
#include "samplers/temperature/smc/SMCTemperatureKeys.h"

#include <algorithm>
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

std::vector<SysfsSensor> scanHwmon(const KernelRoots& roots) {
    std::vector<SysfsSensor> sensors;
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
            SysfsSensor sensor;
            sensor.source = chip;
            sensor.device = entry.filename().string();
            sensor.label =
                readAttribute((directory / ("temp" + std::to_string(channel) + "_label")).string());
            sensor.name = chip + "/" +
                          (sensor.label.empty() ? "temp" + std::to_string(channel) : sensor.label);
            sensor.inputPath = input.string();
            if (const auto key = smcKeys.find(sensor.label); key != smcKeys.end())
                sensor.smcKey = key->second;
            sensors.push_back(std::move(sensor));
        }
    }
    for (const auto& [number, zone] : numberedEntries(roots.sys("class/thermal"), "thermal_zone")) {
        SysfsSensor sensor;
        sensor.label = readAttribute((zone / "type").string());
        if (sensor.label.empty())
            continue;
        sensor.device = zone.filename().string();
        sensor.source = sensor.device;
        sensor.name = sensor.source + "/" + sensor.label;
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

SysfsTemperatureSensors::SysfsTemperatureSensors(const KernelRoots& roots)
    : sensors_(scanHwmon(roots)), hwmonPath_(roots.sys("class/hwmon")),
      thermalPath_(roots.sys("class/thermal")) {
    for (std::size_t i = 0; i < sensors_.size(); ++i) {
        SysfsSensor& sensor = sensors_[i];
        // Two chips of one driver with the same labels (a dual-socket machine): the later
        // one's names carry their device so that every name names one sensor.
        if (byName_.contains(sensor.name))
            sensor.name += " (" + sensor.device + ")";
        byName_.emplace(sensor.name, i);
        inputs_.push_back(std::make_unique<KernelFile>(sensor.inputPath, 64));
    }
}

std::vector<std::vector<std::string>> SysfsTemperatureSensors::candidateGroups() const {
    std::vector<std::vector<std::string>> groups;
    const auto addGroup = [&](const auto& accepts) {
        std::vector<std::string> group;
        for (const SysfsSensor& sensor : sensors_) {
            if (accepts(sensor))
                group.push_back(sensor.name);
        }
        if (!group.empty())
            groups.push_back(std::move(group));
    };

    // Apple Silicon: the SMC's own die sensors, in the order of the SMC key table.
    std::vector<std::string> smcGroup;
    for (const std::string_view smcKey : kSMCTemperatureKeys) {
        for (const SysfsSensor& sensor : sensors_) {
            if (sensor.source == "macsmc_hwmon" && sensor.smcKey == smcKey)
                smcGroup.push_back(sensor.name);
        }
    }
    if (!smcGroup.empty())
        groups.push_back(std::move(smcGroup));
    addGroup([](const SysfsSensor& s) {
        return s.source == "macsmc_hwmon" &&
               (containsInsensitive(s.label, "soc") || containsInsensitive(s.label, "cpu"));
    });

    // Intel: the package sensors ("Physical id N" before Linux 3.x), else the cores.
    addGroup([](const SysfsSensor& s) {
        return s.source == "coretemp" &&
               (s.label.starts_with("Package id ") || s.label.starts_with("Physical id "));
    });
    addGroup([](const SysfsSensor& s) {
        return s.source == "coretemp" && s.label.starts_with("Core ");
    });

    // AMD: Tdie where the driver reports it (Tctl then carries a fan-curve offset), else
    // Tctl; plus every CCD die.
    const auto isAMD = [](const SysfsSensor& s) {
        return s.source == "k10temp" || s.source == "zenpower";
    };
    addGroup([&](const SysfsSensor& sensor) {
        if (!isAMD(sensor))
            return false;
        const bool chipHasTdie = std::any_of(sensors_.begin(), sensors_.end(), [&](const auto& s) {
            return isAMD(s) && s.device == sensor.device && s.label == "Tdie";
        });
        return sensor.label == (chipHasTdie ? "Tdie" : "Tctl") || sensor.label.starts_with("Tccd");
    });

    addGroup([](const SysfsSensor& s) {
        return s.thermalZone &&
               (containsInsensitive(s.label, "cpu") || containsInsensitive(s.label, "soc") ||
                s.label == "x86_pkg_temp" || s.label == "bcm2835_thermal");
    });
    addGroup([](const SysfsSensor& s) { return s.thermalZone && s.label == "acpitz"; });
    return groups;
}

std::optional<double> SysfsTemperatureSensors::readCelsius(std::string_view sensor) {
    const auto found = byName_.find(sensor);
    if (found == byName_.end())
        return std::nullopt;
    KernelFile& input = *inputs_[found->second];
    const KernelFileRead read = input.readPrefix(64);
    if (!read.ok())
        return std::nullopt;
    const std::optional<std::int64_t> millidegrees = parseMillidegrees(read.text);
    if (!millidegrees) {
        input.reopenNextTime();
        return std::nullopt;
    }
    return static_cast<double>(*millidegrees) / 1000.0;
}

std::string SysfsTemperatureSensors::lookedFor() const {
    return "hwmon chips (macsmc_hwmon, coretemp, k10temp, zenpower) in " + hwmonPath_ +
           ", thermal zones (cpu, soc, x86_pkg_temp, bcm2835_thermal, acpitz) in " + thermalPath_;
}

} // namespace lumetra
