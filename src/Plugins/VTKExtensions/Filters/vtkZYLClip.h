/**
 * @class vtkZYLClip
 * @brief ParaView's clip filter, for data in which not every block has the array to clip by.
 *
 * Some versions of the filter dereference null at the first block without it. This one reports an
 * error and leaves such a block out, as the others do.
 */
#ifndef vtkZYLClip_h
#define vtkZYLClip_h

#include "zylExport.h"

#include <vtkPVMetaClipDataSet.h>

class ZYL_EXPORT vtkZYLClip : public vtkPVMetaClipDataSet
{
public:
  static vtkZYLClip* New();
  vtkTypeMacro(vtkZYLClip, vtkPVMetaClipDataSet);

  using vtkPVMetaClipDataSet::ProcessRequest;
  int ProcessRequest(vtkInformation* request, vtkInformationVector** inputVector,
    vtkInformationVector* outputVector) override;

protected:
  vtkZYLClip() = default;
  ~vtkZYLClip() override = default;

private:
  vtkZYLClip(const vtkZYLClip&) = delete;
  void operator=(const vtkZYLClip&) = delete;
};

#endif
