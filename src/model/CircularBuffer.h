#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace lumetra {

// A fixed-capacity sequence kept in arrival order, oldest first. The array is the ring:
// appending past the capacity drops the oldest elements and shifts the rest to the front,
// so readers always see a chronological span.
template <typename T>
class CircularBuffer {
public:
    explicit CircularBuffer(std::ptrdiff_t capacity) : capacity_(capacity) {
        if (capacity_ > 0)
            elements_.reserve(static_cast<std::size_t>(capacity_) + 1);
    }

    void append(const T& value) {
        const auto countBefore = static_cast<std::ptrdiff_t>(elements_.size());
        elements_.push_back(value);
        if (countBefore >= capacity_) {
            const auto excess = static_cast<std::ptrdiff_t>(elements_.size()) - capacity_;
            elements_.erase(elements_.begin(), elements_.begin() + excess);
        }
    }

    std::span<const T> elements() const { return elements_; }
    std::ptrdiff_t capacity() const { return capacity_; }

    auto begin() const { return elements_.cbegin(); }
    auto end() const { return elements_.cend(); }

    bool operator==(const CircularBuffer&) const = default;

private:
    std::vector<T> elements_;
    std::ptrdiff_t capacity_;
};

} // namespace lumetra
