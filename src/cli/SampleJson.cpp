#include "cli/SampleJson.h"

#include "format/MetricCatalogue.h"

namespace lumetra {

namespace {

// The catalogue's figures as JSON fields.
class JsonFigures final : public FigureWriter {
public:
    explicit JsonFigures(JsonWriter& json) : json_(json) {}

    void number(const char* key, std::optional<double> value) override {
        json_.key(key).value(value);
    }
    void count(const char* key, std::optional<std::uint64_t> value) override {
        if (value)
            json_.key(key).value(*value);
        else
            json_.key(key).null();
    }
    void word(const char* key, std::string_view value) override { json_.key(key).value(value); }
    void names(const char* key, const QStringList& values) override {
        json_.key(key).beginArray();
        for (const QString& value : values)
            json_.value(value);
        json_.endArray();
    }
    void numbers(const char* key, std::span<const double> values) override {
        json_.key(key).beginArray();
        for (double value : values)
            json_.value(value);
        json_.endArray();
    }

private:
    JsonWriter& json_;
};

} // namespace

void writeSampleJson(JsonWriter& json, const SystemMetrics& metrics, const DiskVolumeList& disks,
                     const QString& label, const std::function<void(JsonWriter&)>& more) {
    json.beginObject();
    json.key("timestamp").value(isoTimestamp(metrics.timestamp));
    JsonFigures figures(json);
    writeFigures(figures, metrics);
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
