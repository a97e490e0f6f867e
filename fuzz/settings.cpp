// Any stored value under every type that a setting is asked for: it is taken or it leaves the variable as it was, and
// what was taken can be stored and read again.
#include "support/my_settings_store.h"

#include "fuzz_checks.h"

using namespace carvello;

namespace {

// One value of all three kinds, whatever it is called.
class COneValue : public ISettingsBacking {
 public:
  bool WriteInt(std::string_view /*name*/, std::uint32_t value) override {
    m_nNumber = value;
    return true;
  }
  bool WriteText(std::string_view /*name*/, std::string_view value) override {
    m_strText = value;
    return true;
  }
  bool WriteBytes(std::string_view /*name*/, const std::vector<std::uint8_t>& value) override {
    m_bytes = value;
    return true;
  }
  std::optional<std::uint32_t> ReadInt(std::string_view /*name*/) const override { return m_nNumber; }
  std::optional<std::string> ReadText(std::string_view /*name*/) const override { return m_strText; }
  std::optional<std::vector<std::uint8_t>> ReadBytes(std::string_view /*name*/) const override { return m_bytes; }

 private:
  std::optional<std::uint32_t> m_nNumber;
  std::optional<std::string> m_strText;
  std::optional<std::vector<std::uint8_t>> m_bytes;
};

// The same value; also two that are no number.
template <typename Value>
bool Same(const Value& a, const Value& b) {
  return a == b || (a != a && b != b);
}

// Read, written and read again: the same value, or left alone the first time.
template <typename Value>
void Check(CMySettingsStore& store, Value untouched) {
  Value value = untouched;
  if (!store.Read("Value", value)) {
    fuzz::Require(Same(value, untouched));
    return;
  }
  Value again = untouched;
  fuzz::Require(store.Write("Value", value) && store.Read("Value", again) && Same(again, value));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::vector<std::uint8_t> value(bytes, bytes + count);
  CMySettingsStore store(std::make_unique<COneValue>());
  const auto keep_bytes = [&] { fuzz::Require(store.Write("Value", value.data(), value.size())); };
  keep_bytes();
  std::vector<std::uint8_t> same;
  fuzz::Require(store.Read("Value", same) && same == value);
  keep_bytes();
  Check(store, SSettingsRect{1, 2, 3, 4});
  keep_bytes();
  Check(store, 7.5);
  keep_bytes();
  Check(store, 7.5F);
  keep_bytes();
  std::int64_t wide = -1;
  if (store.Read(3, "Value", wide)) {
    std::int64_t again = 0;
    fuzz::Require(store.Write(3, "Value", wide) && store.Read(3, "Value", again) && again == wide);
  } else {
    fuzz::Require(wide == -1);
  }
  fuzz::Require(store.Write("Value", fuzz::Text(bytes, count)));
  Check(store, std::string("untouched"));
  if (count >= 4) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) number |= std::uint32_t{bytes[i]} << (8 * i);
    fuzz::Require(store.Write("Value", number));
    Check(store, std::uint32_t{5});
    Check(store, -5);
    bool on = false;
    fuzz::Require(store.Read("Value", on) && on == (number != 0));
  }
  return 0;
}
