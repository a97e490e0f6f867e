#include "support/platform_windows_registry.h"

#include <gtest/gtest.h>

// clang-format off
#include <windows.h>
// clang-format on

#include "support/my_settings_store.h"

namespace carvello {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A branch of the registry of the test's own, looked at with the system's functions and removed afterwards.
class RegistrySettings : public ::testing::Test {
 protected:
  struct SValue {
    DWORD nType = REG_NONE;
    Bytes bytes;
    bool operator==(const SValue&) const = default;
  };

  void SetUp() override { RegDeleteTreeW(HKEY_CURRENT_USER, BranchWide().c_str()); }
  void TearDown() override {
    EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, BranchWide().c_str()), ERROR_SUCCESS);
    RegDeleteKeyW(HKEY_CURRENT_USER, BranchWide().c_str());
  }

  std::string Branch() const { return "Software\\Carvello test " + std::to_string(GetCurrentProcessId()); }
  std::string Key() const { return Branch() + "\\Halvarn (V3)\\Carvello"; }

  SValue Stored(const wchar_t* name) const {
    SValue value;
    DWORD size = 1024;
    value.bytes.resize(size);
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, KeyWide().c_str(), name, RRF_RT_ANY | RRF_NOEXPAND, &value.nType,
                           value.bytes.data(), &size),
              ERROR_SUCCESS);
    value.bytes.resize(size);
    return value;
  }
  void Store(const wchar_t* name, const SValue& value) const {
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, KeyWide().c_str(), name, value.nType, value.bytes.data(),
                              static_cast<DWORD>(value.bytes.size())),
              ERROR_SUCCESS);
  }

 private:
  static std::wstring Ascii(const std::string& text) { return {text.begin(), text.end()}; }
  std::wstring BranchWide() const { return Ascii(Branch()); }
  std::wstring KeyWide() const { return Ascii(Key()); }
};

TEST_F(RegistrySettings, NumbersAreDwords) {
  CRegistrySettings settings(Key());
  EXPECT_TRUE(settings.WriteInt("Bandwidth", 0x01020304));
  EXPECT_EQ(Stored(L"Bandwidth"), (SValue{REG_DWORD, {4, 3, 2, 1}}));
  EXPECT_EQ(settings.ReadInt("Bandwidth"), 0x01020304U);
}

TEST_F(RegistrySettings, TextsAreUtf16WithATerminatingZero) {
  CRegistrySettings settings(Key());
  EXPECT_TRUE(settings.WriteText("InputFile", "A\xC3\xA4\xF0\x9F\x93\xBB"));  // A, a-umlaut, a radio
  EXPECT_EQ(Stored(L"InputFile"), (SValue{REG_SZ, {'A', 0, 0xE4, 0, 0x3D, 0xD8, 0xFB, 0xDC, 0, 0}}));
  EXPECT_EQ(settings.ReadText("InputFile"), "A\xC3\xA4\xF0\x9F\x93\xBB");
  EXPECT_TRUE(settings.WriteText("OutputFolder", ""));
  EXPECT_EQ(Stored(L"OutputFolder"), (SValue{REG_SZ, {0, 0}}));
  EXPECT_EQ(settings.ReadText("OutputFolder"), "");
}

TEST_F(RegistrySettings, BytesAreBinary) {
  CRegistrySettings settings(Key());
  EXPECT_TRUE(settings.WriteBytes("B", {1, 0, 255}));
  EXPECT_EQ(Stored(L"B"), (SValue{REG_BINARY, {1, 0, 255}}));
  EXPECT_EQ(settings.ReadBytes("B"), (Bytes{1, 0, 255}));
  EXPECT_TRUE(settings.WriteBytes("None", {}));
  EXPECT_EQ(settings.ReadBytes("None"), Bytes{});
}

TEST_F(RegistrySettings, TheStoresOwnTypesAreLaidOutAsBinaryAndNumbers) {
  CMySettingsStore store(std::make_unique<CRegistrySettings>(Key()));
  EXPECT_TRUE(store.Write("CentreFreq", std::int64_t{7'100'000}));
  EXPECT_EQ(Stored(L"CentreFreq"), (SValue{REG_BINARY, {0x60, 0x56, 0x6C, 0, 0, 0, 0, 0}}));
  EXPECT_TRUE(store.Write("D", 1.5));
  EXPECT_EQ(Stored(L"D"), (SValue{REG_BINARY, {0, 0, 0, 0, 0, 0, 0xF8, 0x3F}}));
  EXPECT_TRUE(store.Write("F", -2.0F));
  EXPECT_EQ(Stored(L"F"), (SValue{REG_BINARY, {0, 0, 0, 0xC0}}));
  EXPECT_TRUE(store.Write("UTC", true));
  EXPECT_EQ(Stored(L"UTC"), (SValue{REG_DWORD, {1, 0, 0, 0}}));
  EXPECT_TRUE(store.Write(0, "Bandwidth", 5));
  EXPECT_EQ(Stored(L"000-Bandwidth"), (SValue{REG_DWORD, {5, 0, 0, 0}}));
  EXPECT_TRUE(store.Write(1000, "Bandwidth", -1));
  EXPECT_EQ(Stored(L"1000-Bandwidth"), (SValue{REG_DWORD, {0xFF, 0xFF, 0xFF, 0xFF}}));
}

TEST_F(RegistrySettings, ADoubleStoredAsNaNReadsWithSuccessAndTheVariableUnchanged) {
  CMySettingsStore store(std::make_unique<CRegistrySettings>(Key()));
  Store(L"D", {REG_BINARY, {0, 0, 0, 0, 0, 0, 0xF8, 0x7F}});
  double value = 4.25;
  EXPECT_TRUE(store.Read("D", value));
  EXPECT_EQ(value, 4.25);
}

TEST_F(RegistrySettings, ABinaryValueShorterThanTheRequestedSizeIsRejected) {
  CMySettingsStore store(std::make_unique<CRegistrySettings>(Key()));
  Store(L"CentreFreq", {REG_BINARY, Bytes(7)});
  std::int64_t value = 1;
  EXPECT_FALSE(store.Read("CentreFreq", value));
  EXPECT_EQ(value, 1);
}

TEST_F(RegistrySettings, ValuesOfAnotherTypeCountAsMissing) {
  CRegistrySettings settings(Key());
  settings.WriteInt("Int", 1);
  settings.WriteText("Text", "words");
  settings.WriteBytes("Bytes", {1, 2, 3, 4});
  EXPECT_EQ(settings.ReadInt("Text"), std::nullopt);
  EXPECT_EQ(settings.ReadInt("Bytes"), std::nullopt);
  EXPECT_EQ(settings.ReadText("Int"), std::nullopt);
  EXPECT_EQ(settings.ReadText("Bytes"), std::nullopt);
  EXPECT_EQ(settings.ReadBytes("Int"), std::nullopt);
  EXPECT_EQ(settings.ReadBytes("none"), std::nullopt);
  Store(L"Expandable", {REG_EXPAND_SZ, {'a', 0, 0, 0}});
  EXPECT_EQ(settings.ReadText("Expandable"), std::nullopt);
  Store(L"Odd", {REG_DWORD, {1, 2}});
  EXPECT_EQ(settings.ReadInt("Odd"), std::nullopt);
}

TEST_F(RegistrySettings, ATextThatAnotherProgramLeftWithoutItsZeroIsReadWhole) {
  CRegistrySettings settings(Key());
  Store(L"Text", {REG_SZ, {'a', 0, 'b', 0}});
  EXPECT_EQ(settings.ReadText("Text"), "ab");
}

TEST_F(RegistrySettings, ATextThatAnotherProgramLeftWithoutAnyCharacterIsEmpty) {
  CRegistrySettings settings(Key());
  Store(L"None", {REG_SZ, {}});
  EXPECT_EQ(settings.ReadText("None"), "");
  Store(L"Half", {REG_SZ, {'a'}});
  EXPECT_EQ(settings.ReadText("Half"), "");
}

TEST_F(RegistrySettings, AKeyThatCannotBeMadeKeepsNothing) {
  CRegistrySettings settings(Branch() + "\\" + std::string(300, 'x'));  // names of keys end at 255 characters
  EXPECT_FALSE(settings.WriteInt("a", 1));
  EXPECT_FALSE(settings.WriteText("a", "b"));
  EXPECT_FALSE(settings.WriteBytes("a", {}));
  EXPECT_EQ(settings.ReadInt("a"), std::nullopt);
  CRegistrySettings here(Key());  // something for the end of the test to remove
}

TEST_F(RegistrySettings, ASecondCopyOfTheProgramSeesWhatTheFirstWrote) {
  CRegistrySettings first(Key());
  CRegistrySettings second(Key());
  first.WriteText("OutputFolder", std::string(5000, 'x'));
  EXPECT_EQ(second.ReadText("OutputFolder"), std::string(5000, 'x'));
}

}  // namespace
}  // namespace carvello
