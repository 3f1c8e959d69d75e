#include "samplers/kernel/KernelRoots.h"

namespace lumetra {

KernelRoots::KernelRoots(std::string root) : root_(std::move(root)) {
    if (root_.empty() || root_.back() != '/')
        root_.push_back('/');
}

std::string KernelRoots::proc(const std::string& relative) const {
    return root_ + "proc/" + relative;
}

std::string KernelRoots::sys(const std::string& relative) const {
    return root_ + "sys/" + relative;
}

std::string KernelRoots::at(const std::string& relative) const {
    return root_ + relative;
}

std::string KernelRoots::mountTable() const {
    return isLiveSystem() ? proc("self/mountinfo") : proc("1/mountinfo");
}

} // namespace lumetra
