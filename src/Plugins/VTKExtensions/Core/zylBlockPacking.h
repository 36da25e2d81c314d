/// @file zylBlockPacking.h
/// The form in which descriptions of blocks travel from a server.
#ifndef zylBlockPacking_h
#define zylBlockPacking_h

#include "vtkZYLBlockInformation.h"
#include "zylExport.h"

#include <vector>

class vtkClientServerStream;

/// Number of (minimum, maximum) pairs of an array: one for each component and, if there are
/// several, one for the magnitude.
constexpr int zylCountRanges(int components)
{
  return components >= 2 ? components + 1 : components;
}

/// Append the nodes to the message that is being written. Each text goes once.
ZYL_PRIVATE void zylPackBlocks(
  const std::vector<vtkZYLBlockInformation::Node>& nodes, vtkClientServerStream& stream);

/// Read what zylPackBlocks() wrote as the arguments from `argument` on of the first message.
/// Whether every value was there and within its bounds; that the nodes are a tree is not looked at.
ZYL_PRIVATE bool zylUnpackBlocks(const vtkClientServerStream& stream, int argument,
  std::vector<vtkZYLBlockInformation::Node>& nodes);

#endif
