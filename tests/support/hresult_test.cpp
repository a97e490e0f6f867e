#include "support/hresult.h"

#include <gtest/gtest.h>

#include <new>

namespace carvello {
namespace {

TEST(ThrowHResult, OutOfMemoryRaisesTheMemoryException) {
  EXPECT_THROW(ThrowHResult(kOutOfMemory), std::bad_alloc);
}

TEST(ThrowHResult, EveryOtherCodeTravelsInTheException) {
  for (const std::uint32_t code : {kInvalidArgument, kFailure, kPointer, 0x80040154U}) {
    try {
      ThrowHResult(code);
    } catch (const CHResultError& error) {
      EXPECT_EQ(error.Code(), code);
      continue;
    }
    ADD_FAILURE() << "nothing raised for " << code;
  }
}

TEST(ThrowHResult, TheMessageTellsWhatWasDone) {
  EXPECT_STREQ(CHResultError(kInvalidArgument, "Reading the clock").what(),
               "Reading the clock: invalid argument (error 80070057)");
  EXPECT_STREQ(CHResultError(kFailure).what(), "failure (error 80004005)");
}

}  // namespace
}  // namespace carvello
