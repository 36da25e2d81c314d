/// @file zylFuzz.h
/// What the fuzzers feed with arbitrary bytes. Each aborts when a promise of the code is broken.
/// The fuzzers (zylFuzzMain.cxx) call them for ever, zylFuzzCorpusTest for each file of corpus/.
#ifndef zylFuzz_h
#define zylFuzz_h

#include <cstddef>
#include <cstdint>

/// The index of time steps: any text.
void zylFuzzIndex(const std::uint8_t* data, std::size_t size);

/// The splitting of a block: three sizes, then the cells' part numbers.
void zylFuzzParts(const std::uint8_t* data, std::size_t size);

/// A plotfile: header, level header and data file, separated by a line "--". What passes the checks
/// is given to the toolkit's reader.
void zylFuzzPlotfile(const std::uint8_t* data, std::size_t size);

/// Saved settings: any text, read into a collection that has some.
void zylFuzzSettings(const std::uint8_t* data, std::size_t size);

#endif
