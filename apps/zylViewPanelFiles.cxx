#include "zylViewPanelFiles.h"

#include <filesystem>

#include <zylFile.h>
#include <zylFileInformation.h>

#include <imgui.h>
#include <vtkNew.h>
#include <vtkPVFileInformation.h>

namespace {
constexpr float ListHeight = 180.0f;
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewPanelFiles::zylViewPanelFiles(const std::string& folder)
{
  this->Go(folder);
}

//--------------------------------------------------------------------------------------------------
void zylViewPanelFiles::Go(const std::string& folder)
{
  this->Folder = folder;
  this->Entries.clear();
  vtkNew<zylFileInformation> information;
  for (const auto& file : information->GetFilesInDirectory(folder.c_str()))
  {
    this->Entries.push_back({ file->GetFileName(), file->GetFullPath(), file->GetGroup(),
      vtkPVFileInformation::IsDirectory(file->GetFileType()) });
  }
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylViewPanelFiles::Draw()
{
  std::vector<std::string> chosen;
  std::string next;
  ImGui::TextUnformatted(this->Folder.c_str());
  ImGui::BeginChild("files", ImVec2(0.0f, ListHeight), true);
  if (ImGui::Selectable("[..]"))
  {
    next = std::filesystem::path(this->Folder).parent_path().string();
  }
  for (const Entry& entry : this->Entries)
  {
    const std::string label = entry.Folder ? "[" + entry.Name + "]" : entry.Name;
    if (ImGui::Selectable(label.c_str()))
    {
      next = entry.Folder ? entry.Path : "";
      chosen = entry.Folder    ? chosen
        : entry.Series.empty() ? std::vector<std::string>{ entry.Path }
                               : entry.Series;
    }
  }
  ImGui::EndChild();
  if (!next.empty())
  {
    this->Go(next);
  }
  return chosen;
}
