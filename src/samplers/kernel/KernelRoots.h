#pragma once

#include <string>

namespace lumetra {

// Where the kernel's trees are read from. "/" is the live machine; any other directory holds
// a host's proc/ and sys/ (mounted into a container, or a saved tree).
class KernelRoots {
public:
    explicit KernelRoots(std::string root = "/");

    const std::string& root() const { return root_; }
    bool isLiveSystem() const { return root_ == "/"; }

    // root + "proc/" + relative, e.g. proc("stat") → "/proc/stat".
    std::string proc(const std::string& relative) const;
    std::string sys(const std::string& relative) const;
    // Any path of the host below the root, e.g. at("dev/disk/by-label").
    std::string at(const std::string& relative) const;

    // The mount table: our own for the live system; under another root the host's init's,
    // since "self" there would be the reader's own mount namespace.
    std::string mountTable() const;

private:
    std::string root_; // always ends in "/"
};

} // namespace lumetra
