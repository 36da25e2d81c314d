/// @file zylViewLoader.h
/// From the files of the command line to a loaded dataset, or to one line that says why not.
#ifndef zylViewLoader_h
#define zylViewLoader_h

#include "zylViewProgress.h"

#include <string>

#include <vtkSmartPointer.h>

class zylDataSet;
class zylViewMessages;
class zylViewTimes;
struct zylViewOptions;

class zylViewLoader
{
public:
  /// All borrowed. What a file needs is filled into the options; `alive` see zylViewProgress.
  zylViewLoader(zylViewOptions& options, zylViewMessages& messages, zylViewTimes& times,
    const zylViewProgress::Alive& alive);

  ///@{
  /// Connect if asked to; name the built-in sample where there are no files. Throw zylViewError.
  void Connect();
  void NameSample();
  ///@}
  /// Load. Needs no OpenGL. Throws zylViewError.
  vtkSmartPointer<zylDataSet> Load();

private:
  std::string SampleFile();
  vtkSmartPointer<zylDataSet> LoadFiles();
  /// Why a file could not be read: ": reason" or nothing. `heard` is what went to the terminal.
  std::string Explain(zylDataSet* dataset, const std::string& heard) const;

  zylViewOptions& Options;
  zylViewMessages& Messages;
  zylViewTimes& Times;
  const zylViewProgress::Alive& Alive;
};

#endif
