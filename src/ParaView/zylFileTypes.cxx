#include "ParaView/zylFileTypes.h"

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylSplitFileTypes(const std::string& types)
{
  std::vector<std::string> entries;
  const std::size_t head = types.find(')');
  if (head == std::string::npos)
  {
    return entries;
  }
  std::size_t start = head + 3;
  std::size_t end = types.find(";;", start);
  while (end != std::string::npos)
  {
    entries.push_back(types.substr(start, end - start));
    start = end + 2;
    end = types.find(';', start);
  }
  return entries;
}
