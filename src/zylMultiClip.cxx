#include "zylMultiClip.h"

#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
#include "zylClipPipelineHelper.h"
#include "zylPropertyCollection.h"

#include <algorithm>

#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylMultiClip);

//--------------------------------------------------------------------------------------------------
zylMultiClip::zylMultiClip() = default;

//--------------------------------------------------------------------------------------------------
zylMultiClip::~zylMultiClip()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "~zylMultiClip");
  zylUnregister(this->Output);
}

//--------------------------------------------------------------------------------------------------
void zylMultiClip::SetNumberOfClips(int number)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "SetNumberOfClips");
  const auto count = static_cast<std::size_t>(std::max(number, 0));
  while (this->Clips.size() > count)
  {
    this->Clips.pop_back();
  }
  while (this->Clips.size() < count)
  {
    this->Clips.push_back(vtkSmartPointer<zylClipPipelineHelper>::New());
  }
}

//--------------------------------------------------------------------------------------------------
int zylMultiClip::GetNumberOfClips()
{
  return static_cast<int>(this->Clips.size());
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylMultiClip::GetProperties(int i)
{
  return i >= 0 && i < this->GetNumberOfClips() ? this->Clips[i]->GetProperties() : nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylMultiClip::SetInput(vtkSMSourceProxy* input)
{
  this->Input = input;
  if (input && !zylIsAlive(this->Output)) // none yet, or of a session that has ended
  {
    this->Output = zylProxyBuilder(input->GetSessionProxyManager(), "filters", "PassThrough")
                     .Input(input)
                     .Make();
  }
  zylConnect(this->Output, input);
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylMultiClip::GetOutput()
{
  if (!this->Input)
  {
    vtkLogF(ERROR, "No Input");
    return nullptr;
  }
  return this->Output;
}

//--------------------------------------------------------------------------------------------------
void zylMultiClip::Update()
{
  if (!this->Input)
  {
    vtkLogF(ERROR, "No Input");
    return;
  }
  if (!zylIsUsable(this->Input, "Update()"))
  {
    return;
  }
  vtkSMSourceProxy* last = this->Input;
  for (zylClipPipelineHelper* clip : this->Clips)
  {
    clip->SetInput(last);
    last = clip->GetOutput();
  }
  zylConnect(this->Output, last);
  for (zylClipPipelineHelper* clip : this->Clips)
  {
    clip->Update();
  }
}
