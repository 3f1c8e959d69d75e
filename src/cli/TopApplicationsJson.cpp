#include "cli/TopApplicationsJson.h"

namespace lumetra {

void writeTopApplicationsJson(JsonWriter& json, const TopApplications& top, int count) {
    json.key("topApplications").beginArray();
    const TopApplicationOrder order =
        top.cpuValid ? TopApplicationOrder::cpu : TopApplicationOrder::memory;
    for (const TopApplication& application : top.top(order, count)) {
        json.beginObject();
        json.key("name").value(application.name);
        if (application.isApplication())
            json.key("appId").value(application.appId);
        else
            json.key("appId").null();
        json.key("processCount").value(application.processCount());
        if (top.cpuValid)
            json.key("cpuPercent").value(application.cpuPercent);
        else
            json.key("cpuPercent").null();
        json.key("residentBytes").value(application.residentBytes);
        json.endObject();
    }
    json.endArray();
}

} // namespace lumetra
