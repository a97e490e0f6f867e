// The library with each instruction set, through its entry points. A loaded library picks its set once, so each set
// gets a copy of the file, which the system takes for another library.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>

#include "library_instance.h"

namespace carvello::test {
namespace {

// As Diagnostics names them.
std::string KernelsOf(const DspBinding& library) {
  const std::uint32_t hInstance = library.AllocInstance(L"Carvello");
  library.DownconvertInit(hInstance, 48000, 24000);
  char text[512] = "";
  library.Diagnostics(hInstance, text, sizeof text);
  library.ReleaseInstance(hInstance);
  const std::string strText = text;
  const std::size_t nEnd = strText.find(" kernels\n");
  const std::size_t nStart = strText.rfind(' ', nEnd - 1) + 1;
  return strText.substr(nStart, nEnd - nStart);
}

bool AreSameBits(const Samples& a, const Samples& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(a[0])) == 0;
}

class Variants : public testing::Test {
 protected:
  void SetUp() override {
    std::string strFolder = (std::filesystem::temp_directory_path() / "carvello-test-XXXXXX").string();
    ASSERT_NE(mkdtemp(strFolder.data()), nullptr);
    m_Folder = strFolder;
    if (const char* pszBefore = std::getenv("CARVELLO_ISA")) m_strBefore = pszBefore;
  }
  void TearDown() override {
    m_Bindings.clear();
    if (m_strBefore) {
      setenv("CARVELLO_ISA", m_strBefore->c_str(), 1);
    } else {
      unsetenv("CARVELLO_ISA");
    }
    std::filesystem::remove_all(m_Folder);
  }

  // A library of its own that has been asked for this set.
  const DspBinding& Library(const std::string& isa) {
    const std::filesystem::path copy = m_Folder / (isa + ".so");
    std::filesystem::copy_file(DspLibraryPath(), copy);
    setenv("CARVELLO_ISA", isa.c_str(), 1);
    m_Bindings.push_back(std::make_unique<DspBinding>());
    EXPECT_EQ(BindDsp(*m_Bindings.back(), copy.string()), 1u);
    KernelsOf(*m_Bindings.back());  // the first use picks the set
    return *m_Bindings.back();
  }

 private:
  std::filesystem::path m_Folder;
  std::optional<std::string> m_strBefore;
  std::vector<std::unique_ptr<DspBinding>> m_Bindings;
};

struct SOutputs {
  Samples shifted;
  Samples decimated;
};

SOutputs OutputsOf(const DspBinding& library, std::uint32_t nIn, std::uint32_t nOut, const Samples& input) {
  const std::uint32_t hInstance = library.AllocInstance(L"Carvello");
  library.DownconvertInit(hInstance, nIn, nOut);
  SOutputs outputs;
  const auto nCount = static_cast<std::uint32_t>(input.size());
  outputs.shifted.resize(nCount);
  library.NCO(hInstance, -123457, nIn, input.data(), nCount, outputs.shifted.data());
  outputs.decimated.resize(nCount);
  std::uint32_t nGiven = 0;
  library.DownconvertRun(hInstance, outputs.shifted.data(), nCount, outputs.decimated.data(), &nGiven);
  outputs.decimated.resize(nGiven);
  library.ReleaseInstance(hInstance);
  return outputs;
}

TEST_F(Variants, AllOfThisProcessorGiveTheSameBits) {
  const Samples input = Noise(1 << 19);
  const DspBinding& plain = Library("plain");
  ASSERT_EQ(KernelsOf(plain), "plain");
  const DspBinding& avx2 = Library("avx2");  // or plain, where the processor has no other
  const DspBinding& avx512 = Library("avx512");
  const std::pair<std::uint32_t, std::uint32_t> pairs[] = {
      {2000000, 10000}, {2400000, 192000}, {1000000, 7919}, {192000, 190000}, {10000000, 1000000}};
  for (const auto& [nIn, nOut] : pairs) {
    SCOPED_TRACE(std::to_string(nIn) + " to " + std::to_string(nOut));
    const SOutputs expected = OutputsOf(plain, nIn, nOut, input);
    for (const DspBinding* pLibrary : {&avx2, &avx512}) {
      const SOutputs outputs = OutputsOf(*pLibrary, nIn, nOut, input);
      EXPECT_TRUE(AreSameBits(expected.shifted, outputs.shifted)) << KernelsOf(*pLibrary);
      EXPECT_TRUE(AreSameBits(expected.decimated, outputs.decimated)) << KernelsOf(*pLibrary);
    }
  }
}

TEST_F(Variants, AnUnknownNameIsNoReasonForASlowOne) {
  const std::string strBest = KernelsOf(Library("avx512"));
  EXPECT_EQ(KernelsOf(Library("no-such-set")), strBest);
}

}  // namespace
}  // namespace carvello::test
