/// @file zylTestMemory.h
/// The memory of this process, in kilobytes.
#ifndef zylTestMemory_h
#define zylTestMemory_h

namespace zylTestMemory {
/// What was asked for and not given back, code and drivers included.
long GetAllocated();

/// What the process has in memory once it has given back what it can.
long GetResident();
} // namespace zylTestMemory

#endif
