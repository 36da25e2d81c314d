#include "Data/zylWatchedSource.h"

#include "ParaView/zylSession.h"

#include <vtkCommand.h>
#include <vtkPVTrivialProducer.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

//--------------------------------------------------------------------------------------------------
zylWatchedSource::~zylWatchedSource()
{
  this->Set(nullptr);
}

//--------------------------------------------------------------------------------------------------
void zylWatchedSource::Set(vtkSMSourceProxy* source)
{
  if (source == this->Source)
  {
    return;
  }
  if (this->Source)
  {
    this->Source->RemoveObserver(this->ObserverTag);
  }
  this->Source = source;
  if (source)
  {
    // Pushed properties, commands and reloads all raise it.
    this->ObserverTag =
      source->AddObserver(vtkCommand::ModifiedEvent, this, &zylWatchedSource::Changed);
  }
}

//--------------------------------------------------------------------------------------------------
void zylWatchedSource::Changed(vtkObject*, unsigned long, void*)
{
  this->EventSeen = true;
}

//--------------------------------------------------------------------------------------------------
// When data of this process that the source gives were changed; 0 for other sources.
vtkMTimeType zylWatchedSource::GetDataTime() const
{
  auto* producer = this->Source
    ? vtkPVTrivialProducer::SafeDownCast(this->Source->GetClientSideObject())
    : nullptr;
  return producer ? producer->GetMTime() : 0;
}

//--------------------------------------------------------------------------------------------------
bool zylWatchedSource::HasChanged() const
{
  return this->EventSeen || this->GetDataTime() != this->SeenDataTime;
}

//--------------------------------------------------------------------------------------------------
void zylWatchedSource::MarkSeen()
{
  this->EventSeen = false;
  this->SeenDataTime = this->GetDataTime();
}

//--------------------------------------------------------------------------------------------------
bool zylWatchedSource::Gather(const char* property, const char* operation) const
{
  if (!zylIsUsable(this->Source, operation) || !this->Source->GetProperty(property))
  {
    return false;
  }
  this->Source->UpdatePropertyInformation();
  return true;
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylWatchedSource::GetDoubles(const char* property, const char* operation) const
{
  return this->Gather(property, operation)
    ? vtkSMPropertyHelper(this->Source, property).GetDoubleArray()
    : std::vector<double>();
}

//--------------------------------------------------------------------------------------------------
std::string zylWatchedSource::GetText(const char* property, const char* operation) const
{
  if (!this->Gather(property, operation))
  {
    return "";
  }
  vtkSMPropertyHelper helper(this->Source, property);
  const char* text = helper.GetNumberOfElements() > 0 ? helper.GetAsString(0) : nullptr;
  return text ? text : "";
}
