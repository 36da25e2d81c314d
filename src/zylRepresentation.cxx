#include "zylRepresentation.h"

#include "zylDataSet.h"
#include "zylMultiClip.h"
#include "zylPropertyCollection.h"

#include <vtkLogger.h>

//--------------------------------------------------------------------------------------------------
zylRepresentation::zylRepresentation()
  : MultiClip(vtkSmartPointer<zylMultiClip>::New())
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylRepresentation()");
}

//--------------------------------------------------------------------------------------------------
zylRepresentation::~zylRepresentation()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "~zylRepresentation()");
}

//--------------------------------------------------------------------------------------------------
void zylRepresentation::SetDataSet(zylDataSet* dataSet)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "SetDataSet()");
  this->DataSet = dataSet;
}

//--------------------------------------------------------------------------------------------------
bool zylRepresentation::HasRepresentation(vtkSMProxy*)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "HasRepresentation()");
  return false;
}

//--------------------------------------------------------------------------------------------------
void zylRepresentation::FreeResources()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "FreeResources()");
}

//--------------------------------------------------------------------------------------------------
void zylRepresentation::Update()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "Update()");
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkCollection> zylRepresentation::GetPVRepresentations()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "GetPVRepresentations()");
  return vtkSmartPointer<vtkCollection>::New();
}

//--------------------------------------------------------------------------------------------------
zylDataSet* zylRepresentation::GetDataSet()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "GetDataSet()");
  return this->DataSet;
}

//--------------------------------------------------------------------------------------------------
void zylRepresentation::SetView(zylView* view)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "SetView()");
  if (this->View && this->View != view)
  {
    this->LeavingView = true;
    this->FreeResources();
    this->LeavingView = false;
  }
  this->View = view;
}

//--------------------------------------------------------------------------------------------------
zylView* zylRepresentation::GetView()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "GetView()");
  return this->View;
}

//--------------------------------------------------------------------------------------------------
void zylRepresentation::SetNumberOfClips(int number)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "SetNumberOfClips()");
  this->MultiClip->SetNumberOfClips(number);
}

//--------------------------------------------------------------------------------------------------
int zylRepresentation::GetNumberOfClips()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "GetNumberOfClips()");
  return this->MultiClip->GetNumberOfClips();
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylRepresentation::GetClipProperties(int i)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "GetClipProperties()");
  return this->MultiClip->GetProperties(i);
}
