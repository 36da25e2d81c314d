// Compiled once per fuzzer with ZYL_FUZZ naming the function.
#include "zylFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  ZYL_FUZZ(data, size);
  return 0;
}
