#include "zylViewPanel.h"

#include "zylViewBlocks.h"
#include "zylViewCase.h"
#include "zylViewError.h"
#include "zylViewMessages.h"
#include "zylViewPanelBlocks.h"
#include "zylViewPanelDerived.h"
#include "zylViewPanelFiles.h"
#include "zylViewPanelSettings.h"
#include "zylViewScene.h"

#include <algorithm>
#include <filesystem>

#include <zylBoundaryRepresentation.h>
#include <zylCore.h>
#include <zylPropertyCollection.h>
#include <zylTimeController.h>
#include <zylView.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <backends/imgui_impl_glfw.h>
#include <backends/imgui_impl_opengl3.h>
#include <imgui.h>

namespace {
using Purpose = zylViewPanelFiles::Purpose;
constexpr float Width = 330.0f;
constexpr float MessagesHeight = 120.0f;
const ImVec4 Colors[] = { { 1.0f, 0.45f, 0.40f, 1.0f }, { 1.0f, 0.80f, 0.35f, 1.0f },
  { 0.85f, 0.88f, 0.92f, 1.0f } }; // of errors, warnings, notes

class Panel : public zylViewPanel
{
public:
  Panel(GLFWwindow* window, zylViewScene& scene);
  ~Panel() override;

  bool Draw(State& state) override;
  bool WantsMouse(double x, double y) const override;
  bool WantsKeys() const override { return ImGui::GetIO().WantTextInput; }

private:
  struct Part // of a dataset
  {
    zylViewPanelBlocks Blocks;
    zylViewPanelDerived Derived;
  };

  void DrawMenu(State& state);
  void DrawTime(State& state);
  void DrawCase(zylViewCase& one, Part& part);
  bool DrawColors(zylViewCase& one);
  void DrawFiles();
  void Use(Purpose purpose, const std::vector<std::string>& files);
  void DrawMessages();
  std::string GetFolder(Purpose purpose) const;

  zylViewScene& Scene;
  std::vector<Part> Parts;
  zylViewPanelFiles Files;
  std::vector<zylViewMessages::Line> Messages;
  std::size_t NumberOfMessages = 0; // so far
  bool Changed = false;
  float Height = 0.0f;
  ImVec2 Corner{ 0.0f, 0.0f }, Size{ 0.0f, 0.0f }; // in units of the window system
};

//--------------------------------------------------------------------------------------------------
Panel::Panel(GLFWwindow* window, zylViewScene& scene)
  : Scene(scene)
{
  ImGui::CreateContext();
  ImGui::GetIO().IniFilename = nullptr; // nothing is left in the folder
  float x = 1.0f, y = 1.0f;
  glfwGetWindowContentScale(window, &x, &y);
  ImGui::GetIO().FontGlobalScale = x;
  ImGui::GetStyle().ScaleAllSizes(x);
  ImGui_ImplGlfw_InitForOpenGL(window, true); // calls the callbacks that are there
  ImGui_ImplOpenGL3_Init("#version 150");
}

//--------------------------------------------------------------------------------------------------
Panel::~Panel()
{
  ImGui_ImplOpenGL3_Shutdown();
  ImGui_ImplGlfw_Shutdown();
  ImGui::DestroyContext();
}

//--------------------------------------------------------------------------------------------------
// The toolkit knows where the mouse was at the last frame; a click may come before the next one.
bool Panel::WantsMouse(double x, double y) const
{
  const ImVec2 ratio = ImGui::GetIO().DisplayFramebufferScale;
  const double right = x / ratio.x - this->Corner.x, down = y / ratio.y - this->Corner.y;
  const bool inside = right >= 0.0 && down >= 0.0 && right < this->Size.x && down < this->Size.y;
  return inside || ImGui::IsAnyItemActive() ||
    ImGui::IsPopupOpen("", ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel);
}

//--------------------------------------------------------------------------------------------------
bool Panel::Draw(State& state)
{
  this->Changed = false;
  ImGui_ImplOpenGL3_NewFrame();
  ImGui_ImplGlfw_NewFrame();
  ImGui::NewFrame();
  const float scale = ImGui::GetIO().FontGlobalScale;
  const float height = ImGui::GetIO().DisplaySize.y;
  ImGui::SetNextWindowPos(ImVec2(0.0f, 0.0f), ImGuiCond_Once);
  ImGui::SetNextWindowSize(ImVec2(this->Height > 0.0f ? this->Size.x : Width * scale, height),
    height != this->Height ? ImGuiCond_Always : ImGuiCond_Once);
  this->Height = height;
  ImGui::Begin("zylview", nullptr, ImGuiWindowFlags_MenuBar);
  this->Corner = ImGui::GetWindowPos();
  this->Size = ImGui::GetWindowSize();
  ImGui::PushItemWidth(-0.45f * Width * scale);
  this->DrawMenu(state);
  this->DrawMessages();
  this->DrawFiles();
  this->DrawTime(state);
  this->Parts.resize(this->Scene.GetCases().size());
  for (std::size_t i = 0; i < this->Parts.size(); ++i)
  {
    ImGui::PushID(static_cast<int>(i));
    this->DrawCase(*this->Scene.GetCases()[i], this->Parts[i]);
    ImGui::PopID();
  }
  ImGui::PopItemWidth();
  ImGui::End();
  ImGui::Render();
  ImGui_ImplOpenGL3_RenderDrawData(ImGui::GetDrawData());
  if (this->Changed)
  {
    this->Scene.Update();
  }
  return this->Changed;
}

//--------------------------------------------------------------------------------------------------
void Panel::DrawMenu(State& state)
{
  if (!ImGui::BeginMenuBar())
  {
    return;
  }
  if (ImGui::BeginMenu("Scene"))
  {
    const std::pair<const char*, Purpose> files[] = { { "Open data ...", Purpose::OpenData },
      { "Open a scene ...", Purpose::OpenScene }, { "Save the scene ...", Purpose::SaveScene },
      { "Save a picture ...", Purpose::SavePicture } };
    for (const auto& [name, purpose] : files)
    {
      if (ImGui::MenuItem(name))
      {
        this->Files.Show(purpose, this->GetFolder(purpose));
      }
    }
    if (ImGui::MenuItem("Read the files again", "F5"))
    {
      this->Scene.Reload();
      this->Changed = true;
    }
    state.Closing = ImGui::MenuItem("Quit", "q");
    ImGui::EndMenu();
  }
  ImGui::EndMenuBar();
}

//--------------------------------------------------------------------------------------------------
// Beside the data, which may be the server's, or where the program was started.
std::string Panel::GetFolder(Purpose purpose) const
{
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path data = this->Scene.GetCases().front()->GetOptions().Files.front();
  const bool beside = purpose == Purpose::OpenData && data.has_parent_path();
  return (beside ? fs::absolute(data, error).parent_path() : fs::current_path(error)).string();
}

//--------------------------------------------------------------------------------------------------
void Panel::DrawFiles()
{
  const Purpose purpose = this->Files.GetPurpose();
  if (purpose != Purpose::None)
  {
    const auto files = this->Files.Draw();
    if (!files.empty())
    {
      this->Files.Show(Purpose::None, "");
      this->Use(purpose, files);
    }
    ImGui::Separator();
  }
}

//--------------------------------------------------------------------------------------------------
void Panel::Use(Purpose purpose, const std::vector<std::string>& files)
{
  try
  {
    switch (purpose)
    {
      case Purpose::None:
        break;
      case Purpose::OpenData:
        this->Scene.AddFiles(files);
        this->Changed = true;
        break;
      case Purpose::OpenScene:
        this->Scene.OpenState(files.front());
        this->Changed = true;
        break;
      case Purpose::SaveScene:
        this->Scene.SaveState(files.front());
        zylSay("saved " + files.front());
        break;
      case Purpose::SavePicture:
        this->Scene.SavePicture(files.front());
        zylSay("saved " + files.front());
        break;
    }
  }
  catch (const zylViewError& error)
  {
    zylSay(error.what());
  }
}

//--------------------------------------------------------------------------------------------------
void Panel::DrawTime(State& state)
{
  const auto steps = zylTimeController::GetInstance()->GetTimestepValues();
  if (steps.size() < 2)
  {
    return;
  }
  const auto count = static_cast<int>(steps.size());
  const double now = zylTimeController::GetInstance()->GetActiveTime();
  int step = std::max(
    static_cast<int>(std::upper_bound(steps.begin(), steps.end(), now) - steps.begin()), 1);
  const int shown = step;
  const std::pair<const char*, int> moves[] = { { "|<", 1 }, { "<", shown > 1 ? shown - 1 : count },
    { ">", shown < count ? shown + 1 : 1 }, { ">|", count } };
  for (const auto& [label, target] : moves)
  {
    step = ImGui::Button(label) ? target : step;
    ImGui::SameLine();
  }
  if (ImGui::Button(state.Playing ? "pause" : "play"))
  {
    state.Playing = !state.Playing;
  }
  ImGui::SameLine();
  ImGui::Text("time %g", now);
  ImGui::SliderInt("step", &step, 1, count);
  if (step != shown)
  {
    this->Scene.GoToStep(step);
    this->Changed = true;
  }
}

//--------------------------------------------------------------------------------------------------
void Panel::DrawCase(zylViewCase& one, Part& part)
{
  const std::string name =
    std::filesystem::path(one.GetOptions().Files.front()).filename().string();
  const bool reveal = one.GetMarks().TakeReveal();
  if (!ImGui::CollapsingHeader(name.c_str(), ImGuiTreeNodeFlags_DefaultOpen))
  {
    return;
  }
  zylView* view = this->Scene.GetView();
  this->Changed = this->DrawColors(one) || this->Changed;
  this->Changed = part.Blocks.DrawTree(one, reveal) || this->Changed;
  this->Changed = part.Blocks.DrawSettings(one) || this->Changed;
  this->Changed = zylViewPanelDerived::DrawClips(one.GetBoundary(), one) || this->Changed;
  this->Changed = part.Derived.DrawVariables(one) || this->Changed;
  this->Changed = part.Derived.DrawDerived(one, view, reveal) || this->Changed;
}

//--------------------------------------------------------------------------------------------------
bool Panel::DrawColors(zylViewCase& one)
{
  bool changed = false;
  std::string variable = one.GetVariable();
  std::vector<std::string> arrays{ "" };
  const auto known = zylViewPanelDerived::GetChoices(one);
  arrays.insert(arrays.end(), known.begin(), known.end());
  if (zylEditChoice("color by", variable, arrays))
  {
    one.ColorBy(variable);
    changed = true;
  }
  auto displays = one.GetColored();
  if (displays.empty())
  {
    return changed;
  }
  std::string map = displays.front()->GetString("ColorMapName");
  if (zylEditChoice("color map", map, zylCore::GetAvailableColorMapNames()))
  {
    for (zylPropertyCollection* display : displays)
    {
      display->Set("ColorMapName", map);
    }
    changed = true;
  }
  auto range = one.GetColorRange();
  const auto speed = static_cast<float>(0.005 * (range[1] - range[0]));
  if (ImGui::DragScalarN("range", ImGuiDataType_Double, range.data(), 2, speed) &&
    range[0] < range[1])
  {
    one.SetColorRange(range);
    changed = true;
  }
  for (const bool all : { false, true })
  {
    if (ImGui::Button(all ? "all steps" : "this step"))
    {
      this->Scene.RescaleColors(all);
      changed = true;
    }
    ImGui::SameLine();
  }
  ImGui::NewLine();
  return changed;
}

//--------------------------------------------------------------------------------------------------
// The newest first.
void Panel::DrawMessages()
{
  const std::size_t count = zylViewMessages::GetCount();
  if (count != this->NumberOfMessages) // something new is to be seen
  {
    this->NumberOfMessages = count;
    this->Messages = zylViewMessages::GetList();
    ImGui::SetNextItemOpen(true);
  }
  if (!this->Messages.empty() && ImGui::CollapsingHeader("Messages"))
  {
    ImGui::BeginChild("messages", ImVec2(0.0f, MessagesHeight), true);
    for (auto message = this->Messages.rbegin(); message != this->Messages.rend(); ++message)
    {
      ImGui::PushStyleColor(ImGuiCol_Text, Colors[static_cast<int>(message->Kind)]);
      ImGui::TextWrapped("%s", message->Text.c_str());
      ImGui::PopStyleColor();
    }
    ImGui::EndChild();
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::unique_ptr<zylViewPanel> zylNewPanel(GLFWwindow* window, zylViewScene& scene)
{
  return std::make_unique<Panel>(window, scene);
}
