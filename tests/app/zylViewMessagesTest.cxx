// What the terminal gets to see of the toolkit's messages.
#include "zylViewMessages.h"

#include <gtest/gtest.h>

//--------------------------------------------------------------------------------------------------
TEST(zylViewMessages, BecomeOneReadableLine)
{
  const std::pair<std::string, std::string> cases[] = {
    { "plain", "plain" },
    { "", "" },
    { "Error in UpdateTimeInformation: \n", "" },
    { "ERROR: In vtkReader.cxx, line 7\nvtkReader (0x55d0c8a0): no such file\n\n", "no such file" },
    { "vtkFileSeriesReader (000055): vtkReader (0x1): twice on its way", "twice on its way" },
    { "Reading failed:\n\t the   reason \n and its consequence", "the reason" },
    { "type M\x01\xff\xfe\x1b[1m here", "type M????[1m here" },
    { "B\xc3\xb6schung.vtu: \xe2\x82\xac", "B\xc3\xb6schung.vtu: \xe2\x82\xac" },
    { std::string(100000, 'x'), std::string(200, 'x') + "..." },
  };
  for (const auto& [message, line] : cases)
  {
    EXPECT_EQ(zylOneLine(message), line);
  }
}
