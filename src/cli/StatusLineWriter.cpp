#include "cli/StatusLineWriter.h"

#include "cli/SampleJson.h"
#include "cli/TopApplicationsJson.h"
#include "format/LevelColor.h"
#include "format/MenuBarLabel.h"
#include "format/MetricsTooltip.h"
#include "format/TopApplicationText.h"

#include <cmath>

namespace lumetra {

namespace {

std::optional<double> highestPercentage(const QList<LabelPiece>& pieces) {
    std::optional<double> highest;
    for (const LabelPiece& piece : pieces) {
        if (piece.percentage && (!highest || *piece.percentage > *highest))
            highest = piece.percentage;
    }
    return highest;
}

// i3bar draws text in the bar's own colour unless a block names one: only the warning
// colours are named.
std::optional<std::array<char, 8>> i3barColor(LevelColor color) {
    if (color != LevelColor::orange && color != LevelColor::red)
        return std::nullopt;
    return panelLevelColor(color).hex();
}

// Into the reused buffer, which keeps its capacity from line to line.
void assignUtf8(std::string& out, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    out.assign(utf8.constData(), static_cast<std::size_t>(utf8.size()));
}

} // namespace

const char* statusClass(std::optional<double> highestPercentage) {
    switch (levelColor(highestPercentage)) {
    case LevelColor::orange:
        return "warning";
    case LevelColor::red:
        return "critical";
    case LevelColor::secondary:
    case LevelColor::accent:
        return "normal";
    }
    return "normal";
}

std::string StatusLineWriter::header() const {
    if (format_ != OutputFormat::i3bar)
        return {};
    return "{\"version\":1}\n[\n";
}

const std::string& StatusLineWriter::line(const StatusSnapshot& snapshot) {
    switch (format_) {
    case OutputFormat::text:
        assignUtf8(text_, labelLine(snapshot.metrics, snapshot.histories, snapshot.settings));
        text_ += '\n';
        return text_;
    case OutputFormat::json:
        json_.clear();
        writeSampleJson(json_, snapshot.metrics, snapshot.disks,
                        labelLine(snapshot.metrics, snapshot.histories, snapshot.settings),
                        top_ ? std::function<void(JsonWriter&)>([this](JsonWriter& json) {
                            writeTopApplicationsJson(json, *top_, topCount_);
                        })
                             : nullptr);
        break;
    case OutputFormat::waybar:
        writeWaybar(snapshot);
        break;
    case OutputFormat::i3bar:
        writeI3bar(snapshot);
        // The protocol's endless array: every line after the first begins with a comma.
        text_.assign(firstI3barLine_ ? 0 : 1, ',');
        firstI3barLine_ = false;
        text_ += json_.text();
        text_ += '\n';
        return text_;
    }
    text_ = json_.text();
    text_ += '\n';
    return text_;
}

void StatusLineWriter::writeWaybar(const StatusSnapshot& snapshot) {
    const QList<LabelPiece> pieces =
        labelPieces(snapshot.metrics, snapshot.histories, snapshot.settings);
    const std::optional<double> highest = highestPercentage(pieces);
    json_.clear();
    json_.beginObject();
    json_.key("text").value(labelLine(snapshot.metrics, snapshot.histories, snapshot.settings));
    QString tooltip = metricsTooltip(snapshot.metrics, snapshot.disks);
    if (top_) {
        const TopApplicationOrder order =
            top_->cpuValid ? TopApplicationOrder::cpu : TopApplicationOrder::memory;
        for (const TopApplication& application : top_->top(order, std::min(topCount_, 3)))
            tooltip += u'\n' + topApplicationLine(application, top_->cpuValid);
    }
    json_.key("tooltip").value(tooltip);
    json_.key("class").value(statusClass(highest));
    json_.key("percentage")
        .value(static_cast<std::int64_t>(highest ? std::llround(std::clamp(*highest, 0.0, 100.0))
                                                 : 0));
    json_.endObject();
}

void StatusLineWriter::writeI3bar(const StatusSnapshot& snapshot) {
    QList<LabelPiece> pieces = labelPieces(snapshot.metrics, snapshot.histories, snapshot.settings);
    if (pieces.isEmpty())
        pieces.append({MenuBarMetric::cpu, QStringLiteral("lumetra"), std::nullopt});
    const QString separator = separatorText(snapshot.settings.separator);
    json_.clear();
    json_.beginArray();
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        const LabelPiece& piece = pieces[i];
        json_.beginObject();
        json_.key("name").value("lumetra");
        json_.key("instance").value(rawValue(piece.metric));
        // The user's separator joins the blocks, as it joins the label's metrics.
        json_.key("full_text").value(i == 0 ? piece.text : separator + piece.text);
        if (const auto color = i3barColor(levelColor(piece.percentage)))
            json_.key("color").value(color->data());
        json_.key("separator").value(false);
        json_.key("separator_block_width").value(0);
        json_.endObject();
    }
    json_.endArray();
}

} // namespace lumetra
