/// @file zylViewPanelFiles.h
/// A list of the files where the data are read: here, or on the server.
#ifndef zylViewPanelFiles_h
#define zylViewPanelFiles_h

#include <string>
#include <vector>

class zylViewPanelFiles
{
public:
  explicit zylViewPanelFiles(const std::string& folder);

  /// What the user has chosen just now: a file, or a series; empty: nothing yet.
  std::vector<std::string> Draw();

private:
  struct Entry
  {
    std::string Name, Path;
    std::vector<std::string> Series; ///< if it is one
    bool Folder;
  };
  void Go(const std::string& folder);

  std::string Folder;
  std::vector<Entry> Entries; ///< as listed when the folder was entered
};

#endif
