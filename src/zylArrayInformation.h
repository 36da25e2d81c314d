/**
 * @class zylArrayInformation
 * @brief Name, number of components and value ranges of one data array of a block.
 *
 * There is one (minimum, maximum) pair per component and one more at index GetNumberOfComponents():
 * the range of the magnitude, for arrays of two or more components ((0, 0) for scalars).
 */
#ifndef zylArrayInformation_h
#define zylArrayInformation_h

#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkObject.h>

class ZYL_EXPORT zylArrayInformation : public vtkObject
{
public:
  static zylArrayInformation* New();
  vtkTypeMacro(zylArrayInformation, vtkObject);

  void SetName(const std::string& name) { this->Name = name; }
  std::string GetName() const { return this->Name; }

  /// A new number discards all ranges; the same number keeps them.
  void SetNumberOfComponents(unsigned int number);
  unsigned int GetNumberOfComponents() const { return this->NumberOfComponents; }

  ///@{
  /// Range of component c in [0, GetNumberOfComponents()], the last one being the magnitude's.
  /// Beyond it an error is reported and nothing changes.
  void SetComponentRange(unsigned int c, double range[2]);
  void GetComponentRange(unsigned int c, double range[2]);
  ///@}

protected:
  zylArrayInformation() = default;
  ~zylArrayInformation() override = default;

private:
  zylArrayInformation(const zylArrayInformation&) = delete;
  void operator=(const zylArrayInformation&) = delete;

  bool IsValidComponent(unsigned int c);

  std::string Name;
  unsigned int NumberOfComponents = 0;
  std::vector<double> Ranges = { 0.0, 0.0 };
};

#endif
