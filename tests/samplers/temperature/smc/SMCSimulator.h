#pragma once

#include "samplers/temperature/smc/SMCTransport.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace lumetra {

// A controller in memory: a table of keys with their types and bytes, answering call records
// the way the hardware does. Stands in for the SMC where there is none (tests, benchmarks).
class SMCSimulator final : public SMCTransport {
public:
    struct Key {
        std::uint32_t dataType = 0; // four-character code
        std::vector<std::uint8_t> bytes;
        std::uint32_t dataSize = 0;  // reported by the info call; bytes.size() unless set
        std::uint8_t infoResult = 0; // a non-zero result byte makes the info call fail
        std::uint8_t readResult = 0; // ... and the read call
    };

    // A key of the given type; its data size is the number of bytes.
    void setKey(const std::string& key, const std::string& dataType,
                std::vector<std::uint8_t> bytes);
    void setKey(const std::string& key, Key entry) { keys_[key] = std::move(entry); }
    // A "flt " key holding `value`, as Apple Silicon's temperature sensors report.
    void setFloat(const std::string& key, float value);
    void removeKey(const std::string& key) { keys_.erase(key); }

    int call(const SMCCallRecord& input, SMCCallRecord& output) override;

    // Every input record received, oldest first.
    const std::vector<SMCCallRecord>& calls() const { return calls_; }
    void clearCalls() { calls_.clear(); }

private:
    std::map<std::string, Key> keys_;
    std::vector<SMCCallRecord> calls_;
};

} // namespace lumetra
