/// @file zylReader.h
/// From file names to a reader proxy. Private to the library.
#ifndef zylReader_h
#define zylReader_h

#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class vtkMultiBlockDataSet;
class vtkSMSession;
class vtkSMSessionProxyManager;
class vtkSMSourceProxy;
class zylPropertyCollection;

/// The proxies of the readers for some files, or why there is none.
struct zylReaderChoice
{
  struct Reader
  {
    std::string Group;
    std::string Name;
  };
  std::vector<Reader> Readers; ///< the first is the one that ParaView takes
  std::string Error;           ///< empty when a reader was found
};

/// Ask ParaView's reader factory which readers claim the first of `fileNames`, paths on the server
/// of `session`, and are willing to read it. Those that do not claim the others are left out: files
/// of different kinds are no series. Behind the first there are only readers that survive a file
/// which is not theirs.
ZYL_PRIVATE zylReaderChoice zylChooseReaders(
  vtkSMSession* session, const std::vector<std::string>& fileNames);

/// A registered proxy `name` of `group` that has been given the file names in order, and those
/// array names of `settings` ("PartIdArrayName", "LevelMaskArrayName") that it asks for. Nothing is
/// read yet. Null when the session does not know the proxy, and when a library below the toolkit
/// throws: then `error` says what.
ZYL_PRIVATE vtkSmartPointer<vtkSMSourceProxy> zylMakeReader(vtkSMSessionProxyManager* manager,
  const std::string& group, const std::string& name, const std::vector<std::string>& fileNames,
  zylPropertyCollection* settings, std::string& error);

/// Have `source`, a "PVTrivialProducer" of this process, deliver `data` (shared) at `time`. False
/// when it is none, and for null data.
ZYL_PRIVATE bool zylSetData(vtkSMSourceProxy* source, vtkMultiBlockDataSet* data, double time);

/// The file names that `reader` has been given; empty for null and for sources without files.
ZYL_PRIVATE std::vector<std::string> zylGetFileNames(vtkSMSourceProxy* reader);

#endif
