#include "cli/SampleJson.h"

#include <cstdio>
#include <ctime>

namespace lumetra {

std::string isoTimestamp(Instant instant) {
    using namespace std::chrono;
    const auto sinceEpoch = floor<milliseconds>(instant.time_since_epoch());
    const auto wholeSeconds = floor<seconds>(sinceEpoch);
    const std::time_t time = static_cast<std::time_t>(wholeSeconds.count());
    std::tm utc{};
    if (gmtime_r(&time, &utc) == nullptr)
        return "1970-01-01T00:00:00.000Z";
    char buffer[96];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", utc.tm_year + 1900,
                  utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec,
                  static_cast<int>((sinceEpoch - wholeSeconds).count()));
    return buffer;
}

void writeSampleJson(JsonWriter& json, const SystemMetrics& metrics, const DiskVolumeList& disks,
                     const QString& label) {
    json.beginObject();
    json.key("timestamp").value(isoTimestamp(metrics.timestamp));
    // A figure that could not be read is null, never a made-up 0.
    if (metrics.cpuUsageValid)
        json.key("cpuUsage").value(metrics.cpuUsage);
    else
        json.key("cpuUsage").null();
    if (metrics.memoryValid) {
        json.key("memoryUsed").value(metrics.memoryUsed);
        json.key("memoryTotal").value(metrics.memoryTotal);
        json.key("memoryPercentage").value(metrics.memoryPercentage);
    } else {
        json.key("memoryUsed").null();
        json.key("memoryTotal").null();
        json.key("memoryPercentage").null();
    }
    json.key("memoryPressure").value(rawValue(metrics.memoryPressure));
    json.key("temperature").value(metrics.temperature);
    json.key("thermalState").value(rawValue(metrics.thermalState));
    json.key("temperatureAvailability").value(caseName(metrics.temperatureAvailability));
    json.key("temperatureSources").beginArray();
    for (const QString& sensor : metrics.temperatureSources)
        json.value(sensor);
    json.endArray();
    json.key("downloadBytesPerSecond").value(metrics.downloadBytesPerSecond);
    json.key("uploadBytesPerSecond").value(metrics.uploadBytesPerSecond);
    json.key("networkInterfaces").beginArray();
    for (const QString& name : metrics.networkInterfaces)
        json.value(name);
    json.endArray();
    json.key("disks").beginArray();
    for (const DiskVolume& volume : disks) {
        json.beginObject();
        json.key("id").value(volume.id);
        json.key("name").value(volume.name);
        json.key("totalCapacity").value(volume.totalCapacity);
        json.key("availableCapacity").value(volume.availableCapacity);
        json.key("isInternal").value(volume.isInternal);
        json.key("isRemovable").value(volume.isRemovable);
        json.key("isEjectable").value(volume.isEjectable);
        json.key("isBootVolume").value(volume.isBootVolume);
        json.endObject();
    }
    json.endArray();
    json.key("label").value(label);
    json.endObject();
}

} // namespace lumetra
