#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace lumetra {

// The failures of an SMC key reader that callers tell apart. Thrown by value.
class SMCError : public std::exception {
public:
    enum class Kind { failedToOpen, callFailed, serviceNotFound, keyNotFound };

    static SMCError failedToOpen(std::int32_t kernelReturn) {
        return SMCError(Kind::failedToOpen, kernelReturn);
    }
    // `result` is the controller's result byte, 0 when the key reported a data size of 0.
    static SMCError callFailed(std::uint32_t result) {
        return SMCError(Kind::callFailed, static_cast<std::int64_t>(result));
    }
    static SMCError serviceNotFound() { return SMCError(Kind::serviceNotFound, 0); }
    static SMCError keyNotFound() { return SMCError(Kind::keyNotFound, 0); }

    Kind kind() const { return kind_; }
    // The kernel return code of failedToOpen or the result code of callFailed; 0 otherwise.
    std::int64_t code() const { return code_; }

    // The case name, with the payload in parentheses for the two cases that carry one:
    // "failedToOpen(-13)", "callFailed(0)", "serviceNotFound", "keyNotFound".
    std::string description() const;
    const char* what() const noexcept override { return text_.c_str(); }

    bool operator==(const SMCError& other) const {
        return kind_ == other.kind_ && code_ == other.code_;
    }

private:
    SMCError(Kind kind, std::int64_t code);

    Kind kind_;
    std::int64_t code_;
    std::string text_;
};

} // namespace lumetra
