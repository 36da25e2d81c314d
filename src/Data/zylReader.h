/// @file zylReader.h
/// From file names to a reader proxy. Private to the library.
#ifndef zylReader_h
#define zylReader_h

#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class vtkSMSession;
class vtkSMSessionProxyManager;
class vtkSMSourceProxy;
class zylPropertyCollection;

/// The proxy of the reader for a file, or why there is none.
struct zylReaderChoice
{
  std::string Group;
  std::string Name;
  std::string Error; ///< empty when a reader was found
};

/// Ask ParaView's reader factory which reader reads `fileName`, a path on the server of `session`.
ZYL_PRIVATE zylReaderChoice zylChooseReader(vtkSMSession* session, const std::string& fileName);

/// A registered proxy `name` of `group` that has been given the file names in order, and those
/// array names of `settings` ("PartIdArrayName", "LevelMaskArrayName") that it asks for. Nothing is
/// read yet. Null when the session does not know the proxy.
ZYL_PRIVATE vtkSmartPointer<vtkSMSourceProxy> zylMakeReader(vtkSMSessionProxyManager* manager,
  const std::string& group, const std::string& name, const std::vector<std::string>& fileNames,
  zylPropertyCollection* settings);

/// The file names that `reader` has been given; empty for null and for sources without files.
ZYL_PRIVATE std::vector<std::string> zylGetFileNames(vtkSMSourceProxy* reader);

#endif
