// CAddressOv: construction, setting, reading, comparison and persistence. Texts: address_text_test.cpp.
#include "brindle/address/address_ov.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "brindle/framework/archive.h"

namespace {

using namespace std::string_literals;

// What there is to see of an address, as one text: the three numbers and a letter for each deferred part.
std::string Shown(CAddressOv& address) {
    std::string text = address.GetString().str();
    if (address.IsNetDeferred()) text += " n";
    if (address.IsUnitDeferred()) text += " u";
    if (address.IsPortDeferred()) text += " p";
    return text;
}

TEST(AddressOv, Construction) {
    const FullAddress_t record{0xFFFE, 0xFD, 0xFC};
    const CAddressOv wide(0x12345, 0x1FF, 0x2FE);
    struct Row {
        const char* label;
        CAddressOv address;
        const char* expected;
    };
    // The rows hold copies, so numbers out of range are looked at in their own test below.
    Row rows[] = {
        {"default", CAddressOv(), "0000:00:00 n u p"},
        {"record", CAddressOv(record), "FFFE:FD:FC"},
        {"three numbers", CAddressOv(0x12u, 3u, 4u), "0012:03:04"},
        {"packed", CAddressOv(0x00120304ul), "0012:03:04"},
        {"packed, all bits", CAddressOv(0xFFFFFFFFul), "FFFF:FF:FF"},
        {"packed, bits above 31 are cut off", CAddressOv(static_cast<unsigned long>(0x7700120304ull)),
         "0012:03:04"},
        {"text", CAddressOv("0012:03:04"), "0012:03:04"},
        {"text with a deferred part", CAddressOv("12:?:4"), "0012:00:04 u"},
        {"text that is no address: nothing deferred", CAddressOv("1:2"), "0000:00:00"},
        {"null text: nothing deferred", CAddressOv(static_cast<const char*>(nullptr)), "0000:00:00"},
        {"copy is cut", CAddressOv(wide), "2345:FF:FE"},
    };
    for (Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Shown(row.address), row.expected);
    }
}

// Kept: the three numbers are stored as given.
TEST(AddressOv, KeptThreeNumbersAreNotCutButCopiesAre) {
    CAddressOv wide(0x12345, 1, 2);
    EXPECT_EQ(Shown(wide), "12345:01:02");
    CAddressOv copy(wide);
    EXPECT_EQ(Shown(copy), "2345:01:02");
    CAddressOv assigned;
    assigned = wide;
    EXPECT_EQ(Shown(assigned), "2345:01:02");
    CAddressOv all(0xFFFFFFFFu, 0xFFFFFFFEu, 0xFFFFFFFDu);
    EXPECT_EQ(Shown(all), "FFFFFFFF:FFFFFFFE:FFFFFFFD");
}

TEST(AddressOv, CopyTakesTheDeferredFlags) {
    const CAddressOv source("?:1:");
    CAddressOv copy(source);
    EXPECT_EQ(Shown(copy), "0000:01:00 n p");
    CAddressOv assigned(9u, 9u, 9u);
    assigned = source;
    EXPECT_EQ(Shown(assigned), "0000:01:00 n p");
}

TEST(AddressOv, SelfAssignmentKeepsNumbersOutOfRange) {
    CAddressOv wide(0x12345, 1, 2);
    const CAddressOv& same = wide;
    EXPECT_EQ(&(wide = same), &wide);
    EXPECT_EQ(Shown(wide), "12345:01:02");
}

class CountsSets : public CAddressOv {
  public:
    using CAddressOv::operator=;
    using CAddressOv::SetAddress;
    int SetAddress(const CAddressOv& other) override {
        ++sets;
        return CAddressOv::SetAddress(other);
    }
    int sets = 0;
};

TEST(AddressOv, AssignmentGoesThroughTheVirtualSetAddress) {
    CountsSets address;
    static_cast<CAddressOv&>(address) = CAddressOv(1u, 2u, 3u);
    EXPECT_EQ(address.sets, 1);
    static_cast<CAddressOv&>(address) = static_cast<const CAddressOv&>(address);
    EXPECT_EQ(address.sets, 1);
}

TEST(AddressOv, SetAddressReturnsOneAndClearsOrCopiesTheFlags) {
    CAddressOv address;
    EXPECT_EQ(address.SetAddress(FullAddress_t{0x1234, 0x56, 0x78}), 1);
    EXPECT_EQ(Shown(address), "1234:56:78");
    address = CAddressOv();
    EXPECT_EQ(address.SetAddress(0xABCDEF01ul), 1);
    EXPECT_EQ(Shown(address), "ABCD:EF:01");
    EXPECT_EQ(address.SetAddress(CAddressOv(0x12345u, 0x1FFu, 0x102u)), 1);
    EXPECT_EQ(Shown(address), "2345:FF:02");
    EXPECT_EQ(address.SetAddress(CAddressOv()), 1);
    EXPECT_EQ(Shown(address), "0000:00:00 n u p");
}

TEST(AddressOv, PackedWord) {
    struct Row {
        const char* label;
        unsigned net, unit, port;
        std::uint32_t expected;
    };
    const Row rows[] = {
        {"in range", 0x12, 3, 4, 0x00120304},
        {"largest", 0xFFFF, 0xFF, 0xFF, 0xFFFFFFFF},
        {"net beyond 16 bits falls off the top", 0x12345, 0, 0, 0x23450000},
        {"unit beyond 8 bits spills into the net", 0, 0x1FF, 0, 0x0001FF00},
        {"unit is cut to 16 bits", 0, 0x5FFFF, 0, 0x00FFFF00},
        {"port spills into everything", 0, 0, 0x12345678, 0x12345678},
        {"parts are joined by or", 0x0001, 0x0100, 0x100, 0x00010100},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(CAddressOv(row.net, row.unit, row.port).GetDWord(), row.expected);
    }
    EXPECT_EQ(CAddressOv(0x00120304ul).GetDWord(), 0x00120304u);
}

TEST(AddressOv, Records) {
    FullAddress_t out{};
    CAddressOv(0x12345u, 0x1FFu, 0x2FEu).GetFullAddressStruct(out);
    EXPECT_EQ(out.net, 0x2345);
    EXPECT_EQ(out.unit, 0xFF);
    EXPECT_EQ(out.port, 0xFE);
    CAddressOv().GetFullAddressStruct(out);  // deferred flags are ignored
    EXPECT_EQ(out.net, 0);
    EXPECT_EQ(out.unit, 0);
    EXPECT_EQ(out.port, 0);
}

TEST(AddressOv, CompletionFromDefaults) {
    struct Row {
        const char* label;
        const char* text;
        const char* expected;
    };
    const Row rows[] = {
        {"nothing deferred", "12:3:4", "0012:03:04"}, {"net deferred", "?:3:4", "AAAA:03:04"},
        {"unit deferred", "12:?:4", "0012:BB:04"},    {"port deferred", "12:3:", "0012:03:CC"},
        {"all deferred", "::", "AAAA:BB:CC"},         {"a part out of range is cut", "?:1FF:2", "AAAA:FF:02"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        FullAddress_t out{};
        CAddressOv(row.text).GetFullAddressStruct(out, FullAddress_t{0xAAAA, 0xBB, 0xCC});
        EXPECT_EQ(CAddressOv(out).GetString(), row.expected);
        FullAddress_t same{0xAAAA, 0xBB, 0xCC};  // one record for both
        CAddressOv(row.text).GetFullAddressStruct(same, same);
        EXPECT_EQ(CAddressOv(same).GetString(), row.expected);
    }
}

TEST(AddressOv, Strings) {
    CAddressOv address(0xABu, 0xCu, 0xDu);
    EXPECT_EQ(address.GetString(), "00AB:0C:0D");
    EXPECT_EQ(address.GetNetString(), "00AB");
    EXPECT_EQ(address.GetUnitString(), "0C");
    EXPECT_EQ(address.GetPortString(), "0D");
    CAddressOv wide(0x12345u, 0x1FFu, 0xFFFu);
    EXPECT_EQ(wide.GetString(), "12345:1FF:FFF");
    EXPECT_EQ(wide.GetNetString(), "12345");
    EXPECT_EQ(wide.GetUnitString(), "1FF");
    EXPECT_EQ(wide.GetPortString(), "FFF");
}

TEST(AddressOv, IsDeferredWhenAnyPartIs) {
    struct Row {
        const char* text;
        bool deferred;
    };
    for (const Row& row : {Row{"1:2:3", false}, Row{"?:2:3", true}, Row{"1:?:3", true}, Row{"1:2:?", true}}) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(CAddressOv(row.text).IsDeferred(), row.deferred);
    }
}

TEST(AddressOv, Equality) {
    const CAddressOv base(1u, 2u, 3u);
    struct Row {
        const char* label;
        CAddressOv other;
        bool same;
    };
    const Row rows[] = {
        {"same numbers", CAddressOv(1u, 2u, 3u), true},
        {"other net", CAddressOv(2u, 2u, 3u), false},
        {"other unit", CAddressOv(1u, 3u, 3u), false},
        {"other port", CAddressOv(1u, 2u, 4u), false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(base == row.other, row.same);
        EXPECT_EQ(base != row.other, !row.same);
        EXPECT_EQ(base.IsAddressSame(row.other), row.same ? 1 : 0);
    }
    // Full 32-bit numbers count, deferred flags do not.
    EXPECT_FALSE(CAddressOv(0x10001u, 2u, 3u) == base);
    EXPECT_TRUE(CAddressOv() == CAddressOv(0u, 0u, 0u));
    EXPECT_EQ(CAddressOv().IsAddressSame(CAddressOv(0u, 0u, 0u)), 1);
}

class FixedWord : public CAddressOv {
  public:
    explicit FixedWord(std::uint32_t word) : m_word(word) {}
    std::uint32_t GetDWord() const override { return m_word; }

  private:
    std::uint32_t m_word;
};

TEST(AddressOv, OrderIsThatOfThePackedWord) {
    EXPECT_LT(CAddressOv(1u, 0xFFu, 0xFFu), CAddressOv(2u, 0u, 0u));
    EXPECT_LT(CAddressOv(1u, 1u, 0xFFu), CAddressOv(1u, 2u, 0u));
    EXPECT_LT(CAddressOv(1u, 1u, 1u), CAddressOv(1u, 1u, 2u));
    EXPECT_FALSE(CAddressOv(1u, 1u, 1u) < CAddressOv(1u, 1u, 1u));
    EXPECT_LT(CAddressOv(0x7FFFu, 0u, 0u), CAddressOv(0x8000u, 0u, 0u)) << "unsigned";
    EXPECT_LT(CAddressOv(0x10000u, 0u, 1u), CAddressOv(1u, 0u, 0u))
        << "a net out of range falls off the word";
    EXPECT_LT(FixedWord(1), FixedWord(2)) << "the virtual operation is asked";
    std::map<CAddressOv, int> sorted{{CAddressOv("2:0:0"), 2}, {CAddressOv("1:0:0"), 1}};
    EXPECT_EQ(sorted.begin()->second, 1);
}

TEST(AddressOv, RunTimeClass) {
    const CAddressOv address;
    const CRuntimeClass* const type = address.GetRuntimeClass();
    EXPECT_EQ(type, RUNTIME_CLASS(CAddressOv));
    EXPECT_STREQ(type->m_lpszClassName, "CAddressOv");
    EXPECT_EQ(type->m_wSchema, 0u);
    EXPECT_EQ(type->m_nObjectSize, static_cast<int>(sizeof(CAddressOv)));
    EXPECT_TRUE(address.IsSerializable());
    EXPECT_TRUE(address.IsKindOf(RUNTIME_CLASS(CObject)));
    EXPECT_TRUE(address.IsKindOf(RUNTIME_CLASS(CAddressOv)));
    const std::unique_ptr<CObject> made(CRuntimeClass::CreateObject("CAddressOv"));
    auto* const madeAddress = dynamic_cast<CAddressOv*>(made.get());
    ASSERT_NE(madeAddress, nullptr);
    EXPECT_EQ(Shown(*madeAddress), "0000:00:00 n u p");
}

TEST(AddressOv, StoredBytes) {
    struct Row {
        const char* label;
        CAddressOv address;
        std::string bytes;
    };
    Row rows[] = {
        {"numbers", CAddressOv(0x1234u, 0x56u, 0x78u), "\x01\0\x34\x12\0\0\x56\0\0\0\x78\0\0\0"s},
        {"deferred flags are not stored", CAddressOv(), "\x01\0\0\0\0\0\0\0\0\0\0\0\0\0"s},
    };
    for (Row& row : rows) {
        SCOPED_TRACE(row.label);
        CArchiveMemoryStream stream;
        CArchive archive(stream, CArchive::store);
        row.address.Serialize(archive);
        EXPECT_EQ(stream.bytes(), row.bytes);
        EXPECT_EQ(stream.bytes().size(), 14u);
    }
    CArchiveMemoryStream stream;
    CArchive archive(stream, CArchive::store);
    CAddressOv(0x12345678u, 0x9ABCDEF0u, 0xFFFFFFFFu).Serialize(archive);
    EXPECT_EQ(stream.bytes(), "\x01\0\x78\x56\x34\x12\xF0\xDE\xBC\x9A\xFF\xFF\xFF\xFF"s) << "not cut";
}

CAddressOv& Load(CAddressOv& address, const std::string& bytes) {
    CArchiveMemoryStream stream(bytes);
    CArchive archive(stream, CArchive::load);
    address.Serialize(archive);
    EXPECT_EQ(stream.Left(), 0u);
    return address;
}

TEST(AddressOv, LoadingLeavesTheDeferredFlags) {
    CAddressOv deferred;
    EXPECT_EQ(Shown(Load(deferred, "\x01\0\x34\x12\x01\0\x56\0\0\0\x78\0\0\0"s)), "11234:56:78 n u p");
    CAddressOv plain(1u, 2u, 3u);
    EXPECT_EQ(Shown(Load(plain, "\x01\0\x34\x12\0\0\x56\0\0\0\x78\0\0\0"s)), "1234:56:78");
}

TEST(AddressOv, KeptAnyVersionWordLoads) {
    for (const std::string& version : {"\x02\0"s, "\0\0"s, "\xFF\xFF"s}) {
        SCOPED_TRACE(::testing::PrintToString(version));
        CAddressOv address;
        EXPECT_EQ(Load(address, version + "\x05\0\0\0\x06\0\0\0\x07\0\0\0"s), CAddressOv(5u, 6u, 7u));
    }
}

TEST(AddressOv, LoadingAnythingShorterRaisesTheArchiveError) {
    const std::string whole = "\x01\0\x34\x12\0\0\x56\0\0\0\x78\0\0\0"s;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        CAddressOv address;
        CArchiveMemoryStream stream(whole.substr(0, length));
        CArchive archive(stream, CArchive::load);
        try {
            address.Serialize(archive);
            ADD_FAILURE() << "loaded";
        } catch (const CArchiveException& error) {
            EXPECT_EQ(error.m_cause, CArchiveException::endOfFile);
        }
    }
}

}  // namespace
