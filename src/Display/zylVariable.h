/// @file zylVariable.h
/// From the name of a variable in a setting to an array in the data: "pressure", or "velocity_X"
/// for a component of "velocity". Private to the library.
#ifndef zylVariable_h
#define zylVariable_h

#include "Plugins/VTKExtensions/Core/vtkZYLBlockInformation.h"
#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class zylArrayInformation;
class zylMultiBlockTree;

struct ZYL_PRIVATE zylVariable
{
  std::string Array;                                ///< name of the array
  std::string Suffix;                               ///< "X", "Y", "Z", "Magnitude" or ""
  int Component = -1;                               ///< -1: magnitude, or the only one
  int Association = -1;                             ///< 0 points, 1 cells, -1 not found
  vtkSmartPointer<zylArrayInformation> Information; ///< over the blocks asked for; or null

  bool IsFound() const { return this->Association >= 0; }
};

/// Take a component suffix off a name, whatever arrays there are. Nothing is looked for.
ZYL_PRIVATE zylVariable zylSplitVariable(const std::string& full);

/// What a name may be.
enum class zylVariableName
{
  Array,     ///< the name of an array
  Component, ///< the name of an array or, where there is none, of one with a component suffix
};

///@{
/// Find a variable in the leaf blocks among `blocks` (flat indices; if there is no leaf among them,
/// in all that lies below them; if there are none, in everything). Point arrays win over cell
/// arrays whatever the order of the blocks.
ZYL_PRIVATE zylVariable zylFindVariable(const std::string& full, zylVariableName form,
  const zylMultiBlockTree* tree, const std::vector<int>& blocks);
ZYL_PRIVATE zylVariable zylFindVariable(const std::string& full, zylVariableName form,
  const std::vector<vtkZYLBlockInformation::Node>& nodes, const std::vector<int>& blocks);
///@}

#endif
