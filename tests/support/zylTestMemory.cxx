#include "zylTestMemory.h"

#include <fstream>

#include <malloc.h>
#include <unistd.h>

//--------------------------------------------------------------------------------------------------
long zylTestMemory::GetAllocated()
{
#if __GLIBC_PREREQ(2, 33)
  const auto info = mallinfo2();
#else
  const auto info = mallinfo();
#endif
  return static_cast<long>((info.uordblks + info.hblkhd) / 1024);
}

//--------------------------------------------------------------------------------------------------
long zylTestMemory::GetResident()
{
  malloc_trim(0);
  long pages = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> pages >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}
