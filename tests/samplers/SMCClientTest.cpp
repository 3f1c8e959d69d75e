#include "samplers/SMCClient.h"
#include "samplers/SMCSimulator.h"
#include "samplers/SMCSysfsTransport.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace lumetra;
using lumetra::testing::ScratchTree;

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

SMCError caught(const std::function<void()>& action) {
    try {
        action();
    } catch (const SMCError& error) {
        return error;
    }
    ADD_FAILURE() << "no SMCError thrown";
    return SMCError::serviceNotFound();
}

TEST(SMCCallRecordTest, InformationAndReadCallsAreLaidOutByteForByte) {
    SimulatedClient c;
    c.smc->setKey("Tp01", "flt ", {0x00, 0x00, 0x3e, 0x42});
    c.client->readKey("Tp01");
    ASSERT_EQ(c.smc->calls().size(), 2u);

    std::array<std::uint8_t, 80> info{};
    info[0] = 0x31; // key 0x54703031, little-endian
    info[1] = 0x30;
    info[2] = 0x70;
    info[3] = 0x54;
    info[42] = 9;
    EXPECT_EQ(c.smc->calls()[0].bytes(), info);

    std::array<std::uint8_t, 80> read = info;
    read[28] = 4; // data size from the information call
    read[42] = 5;
    EXPECT_EQ(c.smc->calls()[1].bytes(), read);
}

TEST(SMCCallRecordTest, FieldsSitAtTheirOffsets) {
    SMCCallRecord record;
    record.setKey(0x01020304);
    record.setDataSize(0x0A0B0C0D);
    record.setDataType(encodeSMCKey("sp78"));
    record.setResult(132);
    record.setCommand(5);
    const auto& b = record.bytes();
    EXPECT_EQ((std::array<std::uint8_t, 4>{b[0], b[1], b[2], b[3]}),
              (std::array<std::uint8_t, 4>{4, 3, 2, 1}));
    EXPECT_EQ((std::array<std::uint8_t, 4>{b[28], b[29], b[30], b[31]}),
              (std::array<std::uint8_t, 4>{0x0D, 0x0C, 0x0B, 0x0A}));
    EXPECT_EQ((std::array<std::uint8_t, 4>{b[32], b[33], b[34], b[35]}),
              (std::array<std::uint8_t, 4>{'8', '7', 'p', 's'}));
    EXPECT_EQ(b[40], 132);
    EXPECT_EQ(b[42], 5);
    int nonZero = 0;
    for (const auto byte : b)
        nonZero += byte != 0;
    EXPECT_EQ(nonZero, 4 + 4 + 4 + 2);
}

TEST(SMCKeyEncodingTest, FirstCharacterLandsInTheMostSignificantByte) {
    EXPECT_EQ(encodeSMCKey("Tp01"), 0x54703031u);
    EXPECT_EQ(encodeSMCKey("Tc0h"), 0x54633068u);
    EXPECT_EQ(encodeSMCKey("flt "), 0x666C7420u);
    EXPECT_EQ(encodeSMCKey(""), 0u);
}

TEST(SMCKeyEncodingTest, DataTypeTextSkipsNonPrintableBytes) {
    EXPECT_EQ(smcFourCharText(0x666C7420), "flt "); // the trailing space is printable
    EXPECT_EQ(smcFourCharText(0x73703738), "sp78");
    EXPECT_EQ(smcFourCharText(0x75693800), "ui8");
    EXPECT_EQ(smcFourCharText(0x0075FF7F), "u");
    EXPECT_EQ(smcFourCharText(0), "");
}

struct DecodeCase {
    const char* name;
    const char* dataType;
    std::vector<std::uint8_t> bytes;
    std::optional<double> value;
};

class SMCDecodeTest : public ::testing::TestWithParam<DecodeCase> {};

TEST_P(SMCDecodeTest, DecodesTheTwoTemperatureTypes) {
    const auto& p = GetParam();
    EXPECT_EQ(SMCClient::decodeValue(p.dataType, p.bytes), p.value);
}

INSTANTIATE_TEST_SUITE_P(
    Types, SMCDecodeTest,
    ::testing::Values(DecodeCase{"Sp78Positive", "sp78", {0x2F, 0x80}, 47.5},
                      DecodeCase{"Sp78Negative", "sp78", {0xFF, 0x00}, -1.0},
                      DecodeCase{"Sp78ExtraBytesIgnored", "sp78", {0x2F, 0x80, 0xFF}, 47.5},
                      DecodeCase{"Sp78TooShort", "sp78", {0x2F}, std::nullopt},
                      DecodeCase{"FloatLittleEndian", "flt ", {0x00, 0x00, 0x3E, 0x42}, 47.5},
                      DecodeCase{"FloatTooShort", "flt ", {0x00, 0x00, 0x3E}, std::nullopt},
                      DecodeCase{
                          "FloatWithoutSpace", "flt", {0x00, 0x00, 0x3E, 0x42}, std::nullopt},
                      DecodeCase{"OtherType", "ui16", {0x00, 0x2F}, std::nullopt},
                      DecodeCase{"Empty", "", {}, std::nullopt}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(SMCDecodeTest, FloatNaNDecodesAsNaN) {
    const auto value = SMCClient::decodeValue("flt ", std::vector<std::uint8_t>{0, 0, 0xC0, 0x7F});
    ASSERT_TRUE(value);
    EXPECT_TRUE(std::isnan(*value));
}

TEST(SMCClientTest, ReturnsTypeTextAndAtMost32Bytes) {
    SimulatedClient c;
    std::vector<std::uint8_t> long40(40);
    for (std::size_t i = 0; i < long40.size(); ++i)
        long40[i] = static_cast<std::uint8_t>(i + 1);
    SMCSimulator::Key entry;
    entry.dataType = 0x63680000; // "ch" and two zero bytes
    entry.bytes = long40;
    entry.dataSize = 40;
    c.smc->setKey("#KEY", entry);
    const SMCKeyValue value = c.client->readKey("#KEY");
    EXPECT_EQ(value.dataType, "ch");
    ASSERT_EQ(value.size, 32u);
    EXPECT_EQ(value.bytes()[0], 1);
    EXPECT_EQ(value.bytes()[31], 32);

    c.smc->setKey("Ts0P", "sp78", {0x2F, 0x80});
    const SMCKeyValue small = c.client->readKey("Ts0P");
    EXPECT_EQ(small.dataType, "sp78");
    EXPECT_EQ(std::vector<std::uint8_t>(small.bytes().begin(), small.bytes().end()),
              (std::vector<std::uint8_t>{0x2F, 0x80}));
}

struct ErrorCase {
    const char* name;
    std::uint8_t infoResult;
    std::uint8_t readResult;
    std::uint32_t dataSize;
    bool present;
    SMCError expected;
    std::size_t calls;
};

class SMCClientErrorTest : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(SMCClientErrorTest, ThrowsTheMatchingError) {
    const auto& p = GetParam();
    SimulatedClient c;
    if (p.present) {
        SMCSimulator::Key entry;
        entry.dataType = encodeSMCKey("flt ");
        entry.bytes = {0, 0, 0x3E, 0x42};
        entry.dataSize = p.dataSize;
        entry.infoResult = p.infoResult;
        entry.readResult = p.readResult;
        c.smc->setKey("Tp01", entry);
    }
    EXPECT_EQ(caught([&] { c.client->readKey("Tp01"); }), p.expected);
    EXPECT_EQ(c.smc->calls().size(), p.calls); // the read call follows a good info call only
}

INSTANTIATE_TEST_SUITE_P(
    Paths, SMCClientErrorTest,
    ::testing::Values(ErrorCase{"UnknownKey", 0, 0, 4, false, SMCError::keyNotFound(), 1},
                      ErrorCase{"InfoKeyNotFound", 132, 0, 4, true, SMCError::keyNotFound(), 1},
                      ErrorCase{"InfoFails", 0x85, 0, 4, true, SMCError::callFailed(0x85), 1},
                      ErrorCase{"ZeroDataSize", 0, 0, 0, true, SMCError::callFailed(0), 1},
                      ErrorCase{"ReadKeyNotFound", 0, 132, 4, true, SMCError::keyNotFound(), 2},
                      ErrorCase{"ReadFails", 0, 1, 4, true, SMCError::callFailed(1), 2}),
    [](const auto& info) { return std::string(info.param.name); });

// A transport whose calls leave the output untouched, as a failed kernel call would.
class SilentTransport final : public SMCTransport {
public:
    int call(const SMCCallRecord&, SMCCallRecord&) override { return -5; }
};

TEST(SMCClientTest, TransportFailureLeavingZerosReadsAsZeroDataSize) {
    SMCClient client(std::make_unique<SilentTransport>());
    EXPECT_EQ(caught([&] { client.readKey("Tp01"); }), SMCError::callFailed(0));
}

TEST(SMCClientTest, OpeningFailuresAreThrown) {
    EXPECT_EQ(caught([] { SMCClient client{std::unique_ptr<SMCTransport>()}; }),
              SMCError::serviceNotFound());
    EXPECT_EQ(caught([] {
                  SMCClient client([]() -> std::unique_ptr<SMCTransport> {
                      throw SMCError::failedToOpen(-536870201);
                  });
              }),
              SMCError::failedToOpen(-536870201));
}

TEST(SMCErrorTest, DescriptionIsCaseNameWithPayload) {
    EXPECT_STREQ(SMCError::failedToOpen(-13).what(), "failedToOpen(-13)");
    EXPECT_STREQ(SMCError::callFailed(0).what(), "callFailed(0)");
    EXPECT_STREQ(SMCError::callFailed(133).what(), "callFailed(133)");
    EXPECT_EQ(SMCError::serviceNotFound().description(), "serviceNotFound");
    EXPECT_EQ(SMCError::keyNotFound().description(), "keyNotFound");
}

// The applesmc driver's key interface, as a scratch tree holding one key.
TEST(SMCSysfsTransportTest, MissingDriverIsServiceNotFound) {
    ScratchTree tree;
    EXPECT_EQ(caught([&] { SMCSysfsTransport::open(KernelRoots(tree.root())); }),
              SMCError::serviceNotFound());
}

TEST(SMCSysfsTransportTest, UnusableKeyInterfaceFailsToOpen) {
    ScratchTree tree;
    tree.write("sys/devices/platform/applesmc.768/key_count", "garbage\n");
    EXPECT_EQ(caught([&] { SMCSysfsTransport::open(KernelRoots(tree.root())); }),
              SMCError::failedToOpen(-EINVAL));
    tree.write("sys/devices/platform/applesmc.768/key_count", "1\n");
    // No key_at_index to select with.
    EXPECT_EQ(caught([&] { SMCSysfsTransport::open(KernelRoots(tree.root())); }),
              SMCError::failedToOpen(-ENOENT));
}

TEST(SMCSysfsTransportTest, ReadsAKeyThroughTheIndex) {
    ScratchTree tree;
    const QString dir = "sys/devices/platform/applesmc.768/";
    tree.write(dir + "key_count", "1\n");
    tree.write(dir + "key_at_index", "0\n");
    tree.write(dir + "key_at_index_name", "TC0P\n");
    tree.write(dir + "key_at_index_type", "sp78\n");
    tree.write(dir + "key_at_index_data_length", "2\n");
    tree.write(dir + "key_at_index_data", QByteArray("\x2F\x80", 2));
    SMCClient client(SMCSysfsTransport::open(KernelRoots(tree.root())));
    const SMCKeyValue value = client.readKey("TC0P");
    EXPECT_EQ(value.dataType, "sp78");
    EXPECT_EQ(SMCClient::decodeValue(value.dataType, value.bytes()), 47.5);
    EXPECT_EQ(caught([&] { client.readKey("TC0D"); }), SMCError::keyNotFound());
    EXPECT_EQ(caught([&] { client.readKey("TA0P"); }), SMCError::keyNotFound());
}

} // namespace
