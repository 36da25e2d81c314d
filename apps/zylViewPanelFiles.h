/// @file zylViewPanelFiles.h
/// A list of files to choose from, or to name one beside: data where they are read, here or on the
/// server; scenes and pictures always here.
#ifndef zylViewPanelFiles_h
#define zylViewPanelFiles_h

#include <string>
#include <vector>

class zylViewPanelFiles
{
public:
  enum class Purpose
  {
    None, ///< nothing is shown
    OpenData,
    OpenScene,
    SaveScene,
    SavePicture
  };

  /// Show the files of a folder for a purpose.
  void Show(Purpose purpose, const std::string& folder);
  Purpose GetPurpose() const { return this->For; }

  /// What the user has chosen just now: a file, or a series; empty: nothing yet. After that nothing
  /// is shown.
  std::vector<std::string> Draw();

private:
  struct Entry
  {
    std::string Name, Path;
    std::vector<std::string> Series; ///< if it is one
    bool Folder;
  };
  void Go(const std::string& folder);
  void List();
  void ListHere();
  bool IsSaving() const;

  Purpose For = Purpose::None;
  std::string Folder;
  std::vector<Entry> Entries; ///< as listed when the folder was entered
  char Name[256] = "";        ///< typed
};

#endif
