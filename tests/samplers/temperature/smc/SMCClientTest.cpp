#include "samplers/temperature/smc/SMCClient.h"
#include "samplers/temperature/smc/SMCSimulator.h"
#include "samplers/temperature/smc/SMCSysfsTransport.h"
#include "support/Cases.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

using namespace lumetra;
using lumetra::testing::ScratchTree;
using lumetra::testing::thrown;
using Bytes = std::vector<std::uint8_t>;

namespace {

// A simulator the test keeps a handle on after the client has taken ownership of it.
struct SimulatedClient {
    SimulatedClient() {
        auto owned = std::make_unique<SMCSimulator>();
        smc = owned.get();
        client = std::make_unique<SMCClient>(std::move(owned));
    }
    SMCSimulator* smc;
    std::unique_ptr<SMCClient> client;
};

TEST(SMCKeyEncodingTest, KeysAndDataTypesAreFourCharacterCodes) {
    for (const auto& [key, code] : {std::pair{"Tp01", 0x54703031u}, {"", 0u}})
        EXPECT_EQ(encodeSMCKey(key), code) << key;
    // Non-printable bytes are left out of the text; a space is printable.
    for (const auto& [code, text] : {std::pair{0x666C7420u, "flt "},
                                     {0x73703738u, "sp78"},
                                     {0x75693800u, "ui8"},
                                     {0x0075FF7Fu, "u"},
                                     {0u, ""}})
        EXPECT_EQ(smcFourCharText(code), text) << code;
}

TEST(SMCDecodeTest, DecodesTheTwoTemperatureTypes) {
    const std::tuple<const char*, Bytes, std::optional<double>> cases[] = {
        {"sp78", {0x2F, 0x80}, 47.5},
        {"sp78", {0xFF, 0x00}, -1.0},
        {"sp78", {0x2F, 0x80, 0xFF}, 47.5},
        {"sp78", {0x2F}, std::nullopt},
        {"flt ", {0x00, 0x00, 0x3E, 0x42}, 47.5}, // little-endian
        {"flt ", {0x00, 0x00, 0x3E}, std::nullopt},
        {"flt", {0x00, 0x00, 0x3E, 0x42}, std::nullopt},
        {"ui16", {0x00, 0x2F}, std::nullopt},
        {"", {}, std::nullopt}};
    for (const auto& [type, bytes, value] : cases)
        EXPECT_EQ(SMCClient::decodeValue(type, bytes), value) << type << " of " << bytes.size();
    EXPECT_TRUE(std::isnan(SMCClient::decodeValue("flt ", Bytes{0, 0, 0xC0, 0x7F}).value()));
}

TEST(SMCClientTest, ReturnsTypeTextAndAtMost32Bytes) {
    SimulatedClient c;
    SMCSimulator::Key entry{0x63680000, Bytes(40), 40}; // "ch" and two zero bytes
    std::iota(entry.bytes.begin(), entry.bytes.end(), 1);
    c.smc->setKey("#KEY", entry);
    const SMCKeyValue value = c.client->readKey("#KEY");
    EXPECT_EQ(value.dataType, "ch");
    EXPECT_EQ(Bytes(value.bytes().begin(), value.bytes().end()),
              Bytes(entry.bytes.begin(), entry.bytes.begin() + 32));
}

TEST(SMCClientTest, EachFailingCallThrowsItsError) {
    struct Case {
        const char* name;
        std::optional<SMCSimulator::Key> key; // none: unknown key
        SMCError expected;
        std::size_t calls; // the read call follows a good information call only
    };
    const auto key = [](std::uint8_t infoResult, std::uint8_t readResult, std::uint32_t size = 4) {
        return SMCSimulator::Key{
            encodeSMCKey("flt "), {0, 0, 0x3E, 0x42}, size, infoResult, readResult};
    };
    const Case cases[] = {{"unknown key", std::nullopt, SMCError::keyNotFound(), 1},
                          {"info: key not found", key(132, 0), SMCError::keyNotFound(), 1},
                          {"info fails", key(0x85, 0), SMCError::callFailed(0x85), 1},
                          {"zero data size", key(0, 0, 0), SMCError::callFailed(0), 1},
                          {"read: key not found", key(0, 132), SMCError::keyNotFound(), 2},
                          {"read fails", key(0, 1), SMCError::callFailed(1), 2}};
    for (const Case& c : cases) {
        SimulatedClient client;
        if (c.key)
            client.smc->setKey("Tp01", *c.key);
        EXPECT_EQ(thrown<SMCError>([&] { client.client->readKey("Tp01"); }), c.expected) << c.name;
        EXPECT_EQ(client.smc->calls().size(), c.calls) << c.name;
    }

    // A failed kernel call leaves the output untouched: zeros read as a zero data size.
    struct SilentTransport final : SMCTransport {
        int call(const SMCCallRecord&, SMCCallRecord&) override { return -5; }
    };
    SMCClient silent(std::make_unique<SilentTransport>());
    EXPECT_EQ(thrown<SMCError>([&] { silent.readKey("Tp01"); }), SMCError::callFailed(0));
}

TEST(SMCClientTest, OpeningFailuresAreThrown) {
    EXPECT_EQ(thrown<SMCError>([] { SMCClient client{std::unique_ptr<SMCTransport>()}; }),
              SMCError::serviceNotFound());
    const auto failing = []() -> std::unique_ptr<SMCTransport> {
        throw SMCError::failedToOpen(-536870201);
    };
    EXPECT_EQ(thrown<SMCError>([&] { SMCClient client(failing); }),
              SMCError::failedToOpen(-536870201));
}

// The applesmc driver's key interface, in a scratch tree holding one key.
TEST(SMCSysfsTransportTest, OpensOnlyAUsableKeyInterfaceAndReadsThroughTheIndex) {
    ScratchTree tree;
    const auto open = [&] { return SMCSysfsTransport::open(KernelRoots(tree.root())); };
    EXPECT_EQ(thrown<SMCError>(open), SMCError::serviceNotFound()) << "no driver";
    const QString dir = "sys/devices/platform/applesmc.768/";
    tree.write(dir + "key_count", "garbage\n");
    EXPECT_EQ(thrown<SMCError>(open), SMCError::failedToOpen(-EINVAL));
    tree.write(dir + "key_count", "1\n");
    EXPECT_EQ(thrown<SMCError>(open), SMCError::failedToOpen(-ENOENT)) << "no key_at_index";

    for (const auto& [file, content] : {std::pair<const char*, QByteArray>{"key_at_index", "0\n"},
                                        {"key_at_index_name", "TC0P\n"},
                                        {"key_at_index_type", "sp78\n"},
                                        {"key_at_index_data_length", "2\n"},
                                        {"key_at_index_data", QByteArray("\x2F\x80", 2)}})
        tree.write(dir + file, content);
    SMCClient client(open());
    const SMCKeyValue value = client.readKey("TC0P");
    EXPECT_EQ(value.dataType, "sp78");
    EXPECT_EQ(Bytes(value.bytes().begin(), value.bytes().end()), (Bytes{0x2F, 0x80}));
    for (const char* missing : {"TC0D", "TA0P"})
        EXPECT_EQ(thrown<SMCError>([&] { client.readKey(missing); }), SMCError::keyNotFound());
}

} // namespace
