#include "cli/SampleJson.h"

namespace lumetra {

void writeSampleJson(JsonWriter& json, const SystemMetrics& metrics, const DiskVolumeList& disks,
                     const QString& label, const std::function<void(JsonWriter&)>& more) {
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
    json.key("temperatureAvailability").value(rawValue(metrics.temperatureAvailability));
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
    if (more)
        more(json);
    json.endObject();
}

} // namespace lumetra
