#include "zylViewPanelFiles.h"

#include <algorithm>
#include <filesystem>

#include <zylFile.h>
#include <zylFileInformation.h>

#include <imgui.h>
#include <vtkNew.h>
#include <vtkPVFileInformation.h>

namespace fs = std::filesystem;

namespace {
constexpr float ListHeight = 180.0f;
constexpr const char* Titles[] = { "", "Open data", "Open a scene", "Save the scene",
  "Save a picture" };
constexpr const char* Names[] = { "", "", "", "scene.json", "picture.png" };
} // namespace

//--------------------------------------------------------------------------------------------------
void zylViewPanelFiles::Show(Purpose purpose, const std::string& folder)
{
  this->For = purpose;
  std::string(Names[static_cast<int>(purpose)]).copy(this->Name, sizeof this->Name - 1);
  this->Name[std::string(Names[static_cast<int>(purpose)]).size()] = '\0';
  this->Go(folder);
}

//--------------------------------------------------------------------------------------------------
bool zylViewPanelFiles::IsSaving() const
{
  return this->For == Purpose::SaveScene || this->For == Purpose::SavePicture;
}

//--------------------------------------------------------------------------------------------------
void zylViewPanelFiles::Go(const std::string& folder)
{
  this->Folder = folder;
  this->Entries.clear();
  this->For == Purpose::OpenData ? this->List() : this->ListHere();
}

//--------------------------------------------------------------------------------------------------
void zylViewPanelFiles::List()
{
  vtkNew<zylFileInformation> information;
  for (const auto& file : information->GetFilesInDirectory(this->Folder.c_str()))
  {
    this->Entries.push_back({ file->GetFileName(), file->GetFullPath(), file->GetGroup(),
      vtkPVFileInformation::IsDirectory(file->GetFileType()) });
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewPanelFiles::ListHere()
{
  std::error_code error;
  const std::string kind = this->For == Purpose::SavePicture ? ".png" : ".json";
  for (const auto& entry : fs::directory_iterator(this->Folder, error))
  {
    const bool folder = entry.is_directory(error);
    if (folder || entry.path().extension() == kind)
    {
      this->Entries.push_back(
        { entry.path().filename().string(), entry.path().string(), {}, folder });
    }
  }
  std::sort(this->Entries.begin(), this->Entries.end(), [](const Entry& a, const Entry& b) {
    return a.Folder != b.Folder ? a.Folder : a.Name < b.Name;
  });
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylViewPanelFiles::Draw()
{
  std::vector<std::string> chosen;
  std::string next;
  ImGui::Separator();
  ImGui::TextUnformatted(Titles[static_cast<int>(this->For)]);
  ImGui::TextWrapped("%s", this->Folder.c_str());
  ImGui::BeginChild("files", ImVec2(0.0f, ListHeight), true);
  if (ImGui::Selectable("[..]"))
  {
    next = fs::path(this->Folder).parent_path().string();
  }
  for (const Entry& entry : this->Entries)
  {
    const std::string label = entry.Folder ? "[" + entry.Name + "]" : entry.Name;
    if (!ImGui::Selectable(label.c_str()))
    {
      continue;
    }
    if (entry.Folder)
    {
      next = entry.Path;
    }
    else if (this->IsSaving())
    {
      this->Name[entry.Name.copy(this->Name, sizeof this->Name - 1)] = '\0';
    }
    else
    {
      chosen = entry.Series.empty() ? std::vector<std::string>{ entry.Path } : entry.Series;
    }
  }
  ImGui::EndChild();
  // A path of its own is one; the server's is written as here.
  const bool entered =
    ImGui::InputText("##name", this->Name, sizeof this->Name, ImGuiInputTextFlags_EnterReturnsTrue);
  ImGui::SameLine();
  if ((ImGui::Button(this->IsSaving() ? "save" : "open") || entered) && this->Name[0] != '\0')
  {
    chosen = { (fs::path(this->Folder) / this->Name).string() };
  }
  ImGui::SameLine();
  const bool closed = ImGui::Button("close");
  if (!next.empty())
  {
    this->Go(next);
  }
  if (closed)
  {
    this->For = Purpose::None;
  }
  return chosen;
}
