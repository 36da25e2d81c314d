/**
 * @class zylMultiClip
 * @brief A chain of clips with one output whose identity never changes.
 *
 * Every representation owns one and passes its data through it. Without clips the output is the
 * input.
 */
#ifndef zylMultiClip_h
#define zylMultiClip_h

#include "zylExport.h"

#include <vector>

#include <vtkObject.h>
#include <vtkSmartPointer.h>
#include <vtkWeakPointer.h>

class vtkSMSourceProxy;
class zylClipPipelineHelper;
class zylPropertyCollection;

class ZYL_EXPORT zylMultiClip : public vtkObject
{
public:
  static zylMultiClip* New();
  vtkTypeMacro(zylMultiClip, vtkObject);

  ///@{
  /// Number of clips; clips are dropped and added at the end. A negative number counts as 0.
  void SetNumberOfClips(int number);
  int GetNumberOfClips();
  ///@}

  /// Settings of clip `i` (borrowed), see zylClipPipelineHelper; null for an invalid index.
  zylPropertyCollection* GetProperties(int i);

  /// What to clip (borrowed), connected at once; the clips follow at the next Update().
  void SetInput(vtkSMSourceProxy* input);

  /// The output proxy (borrowed), made by the first SetInput(). Null, with an error, without input.
  vtkSMSourceProxy* GetOutput();

  /// Connect the clips and push their settings. An error without an input.
  void Update();

protected:
  zylMultiClip();
  ~zylMultiClip() override;

private:
  zylMultiClip(const zylMultiClip&) = delete;
  void operator=(const zylMultiClip&) = delete;

  std::vector<vtkSmartPointer<zylClipPipelineHelper>> Clips;
  vtkWeakPointer<vtkSMSourceProxy> Input;
  vtkSmartPointer<vtkSMSourceProxy> Output;
};

#endif
