#pragma once

#include "model/CircularBuffer.h"

#include <QMetaType>

namespace lumetra {

// The recent values of one percentage metric, oldest first.
class MetricHistory {
public:
    static constexpr std::ptrdiff_t kDefaultCapacity = 60;

    explicit MetricHistory(std::ptrdiff_t capacity = kDefaultCapacity) : buffer_(capacity) {}

    void append(double value) { buffer_.append(value); }
    std::span<const double> elements() const { return buffer_.elements(); }
    std::ptrdiff_t capacity() const { return buffer_.capacity(); }
    const CircularBuffer<double>& buffer() const { return buffer_; }

    bool operator==(const MetricHistory&) const = default;

private:
    CircularBuffer<double> buffer_;
};

} // namespace lumetra

Q_DECLARE_METATYPE(lumetra::MetricHistory)
