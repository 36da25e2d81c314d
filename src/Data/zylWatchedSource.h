/// @file zylWatchedSource.h
/// A source and whether something about it has changed. Private to the library.
#ifndef zylWatchedSource_h
#define zylWatchedSource_h

#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkSmartPointer.h>
#include <vtkType.h>

class vtkObject;
class vtkSMSourceProxy;

class ZYL_PRIVATE zylWatchedSource
{
public:
  zylWatchedSource() = default;
  ~zylWatchedSource();
  zylWatchedSource(const zylWatchedSource&) = delete;
  zylWatchedSource& operator=(const zylWatchedSource&) = delete;

  /// Watch another source (shared); null for none.
  void Set(vtkSMSourceProxy* source);
  vtkSMSourceProxy* Get() const { return this->Source; }

  ///@{
  /// Whether properties or commands were pushed, files reloaded, or data of this process modified
  /// since MarkSeen(). Asks the server nothing.
  bool HasChanged() const;
  void MarkSeen();
  ///@}

  ///@{
  /// All values of an information property of the source, gathered now; empty when the source has
  /// no such property or cannot be used any more, which is said with the name of the `operation`.
  std::vector<double> GetDoubles(const char* property, const char* operation) const;
  std::string GetText(const char* property, const char* operation) const;
  ///@}

private:
  void Changed(vtkObject*, unsigned long, void*);
  vtkMTimeType GetDataTime() const;
  bool Gather(const char* property, const char* operation) const;

  vtkSmartPointer<vtkSMSourceProxy> Source;
  unsigned long ObserverTag = 0;
  bool EventSeen = false;
  vtkMTimeType SeenDataTime = 0;
};

#endif
