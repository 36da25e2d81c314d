#include "zylViewPanel.h"

#include "zylViewBlocks.h"
#include "zylViewCase.h"
#include "zylViewDerived.h"
#include "zylViewError.h"
#include "zylViewPanelBlocks.h"
#include "zylViewPanelFiles.h"
#include "zylViewPanelSettings.h"
#include "zylViewScene.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>

#include <zylBoundaryRepresentation.h>
#include <zylCore.h>
#include <zylDataSet.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylPropertyCollection.h>
#include <zylTimeController.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <backends/imgui_impl_glfw.h>
#include <backends/imgui_impl_opengl3.h>
#include <imgui.h>

namespace {
constexpr float Width = 330.0f;

class Panel : public zylViewPanel
{
public:
  Panel(GLFWwindow* window, zylViewScene& scene);
  ~Panel() override;

  bool Draw() override;
  bool WantsMouse(double x, double y) const override;
  bool WantsKeys() const override { return ImGui::GetIO().WantTextInput; }

private:
  void DrawTime();
  void DrawCase(zylViewCase& one, zylViewPanelBlocks& blocks);
  bool DrawColors(zylViewCase& one);
  bool DrawClips(zylViewCase& one);
  bool DrawDerived(zylViewCase& one);
  bool AddDerived(zylViewCase& one, zylViewDerived::Shape shape);
  void DrawFiles();

  zylViewScene& Scene;
  std::vector<zylViewPanelBlocks> Blocks; // of each dataset
  std::unique_ptr<zylViewPanelFiles> Files;
  std::string Message; // why the last thing did not work
  bool Changed = false;
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
bool Panel::Draw()
{
  this->Changed = false;
  this->Blocks.resize(this->Scene.GetCases().size());
  ImGui_ImplOpenGL3_NewFrame();
  ImGui_ImplGlfw_NewFrame();
  ImGui::NewFrame();
  const float scale = ImGui::GetIO().FontGlobalScale;
  ImGui::SetNextWindowPos(ImVec2(0.0f, 0.0f), ImGuiCond_Once);
  ImGui::SetNextWindowSize(ImVec2(Width * scale, ImGui::GetIO().DisplaySize.y), ImGuiCond_Once);
  ImGui::Begin("zylview");
  this->Corner = ImGui::GetWindowPos();
  this->Size = ImGui::GetWindowSize();
  ImGui::PushItemWidth(-0.45f * Width * scale);
  this->DrawTime();
  const auto& cases = this->Scene.GetCases();
  for (std::size_t i = 0; i < cases.size(); ++i)
  {
    ImGui::PushID(static_cast<int>(i));
    this->DrawCase(*cases[i], this->Blocks[i]);
    ImGui::PopID();
  }
  this->DrawFiles();
  if (!this->Message.empty())
  {
    ImGui::TextWrapped("%s", this->Message.c_str());
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
void Panel::DrawTime()
{
  const auto steps = zylTimeController::GetInstance()->GetTimestepValues();
  if (steps.size() < 2)
  {
    return;
  }
  const double now = zylTimeController::GetInstance()->GetActiveTime();
  int step = std::max(
    static_cast<int>(std::upper_bound(steps.begin(), steps.end(), now) - steps.begin()), 1);
  if (ImGui::SliderInt("step", &step, 1, static_cast<int>(steps.size())))
  {
    this->Scene.GoToStep(step);
    this->Changed = true;
  }
}

//--------------------------------------------------------------------------------------------------
void Panel::DrawCase(zylViewCase& one, zylViewPanelBlocks& blocks)
{
  const std::string name =
    std::filesystem::path(one.GetOptions().Files.front()).filename().string();
  if (!ImGui::CollapsingHeader(name.c_str(), ImGuiTreeNodeFlags_DefaultOpen))
  {
    return;
  }
  this->Changed = this->DrawColors(one) || this->Changed;
  this->Changed = blocks.DrawTree(one) || this->Changed;
  this->Changed = blocks.DrawSettings(one) || this->Changed;
  if (ImGui::TreeNode("Clips"))
  {
    this->Changed = this->DrawClips(one) || this->Changed;
    ImGui::TreePop();
  }
  this->Changed = this->DrawDerived(one) || this->Changed;
}

//--------------------------------------------------------------------------------------------------
bool Panel::DrawColors(zylViewCase& one)
{
  bool changed = false;
  std::string variable = one.GetVariable();
  std::vector<std::string> arrays{ "" };
  const auto known = one.GetBlocks().GetArrayNames();
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
  if (ImGui::Button("this step"))
  {
    this->Scene.RescaleColors(false);
    changed = true;
  }
  ImGui::SameLine();
  if (ImGui::Button("all steps"))
  {
    this->Scene.RescaleColors(true);
    changed = true;
  }
  return changed;
}

//--------------------------------------------------------------------------------------------------
bool Panel::DrawClips(zylViewCase& one)
{
  bool changed = false;
  zylBoundaryRepresentation* boundary = one.GetBoundary();
  for (int i = 0; i < boundary->GetNumberOfClips(); ++i)
  {
    if (ImGui::TreeNode(reinterpret_cast<void*>(static_cast<std::intptr_t>(i)), "clip %d", i + 1))
    {
      changed =
        zylEditSettings({ boundary->GetClipProperties(i) }, one.GetBlocks().GetArrayNames()) ||
        changed;
      ImGui::TreePop();
    }
  }
  if (ImGui::Button("add a plane"))
  {
    double bounds[6];
    boundary->SetNumberOfClips(boundary->GetNumberOfClips() + 1);
    zylPropertyCollection* clip = boundary->GetClipProperties(boundary->GetNumberOfClips() - 1);
    clip->Set("ClipMode", 2);
    if (boundary->GetBounds(bounds))
    {
      const double center[3] = { (bounds[0] + bounds[1]) / 2.0, (bounds[2] + bounds[3]) / 2.0,
        (bounds[4] + bounds[5]) / 2.0 };
      clip->Set("PlaneCenter", center, 3);
    }
    changed = true;
  }
  ImGui::SameLine();
  if (boundary->GetNumberOfClips() > 0 && ImGui::Button("remove the last"))
  {
    boundary->SetNumberOfClips(boundary->GetNumberOfClips() - 1);
    changed = true;
  }
  return changed;
}

//--------------------------------------------------------------------------------------------------
bool Panel::DrawDerived(zylViewCase& one)
{
  bool changed = false;
  const auto arrays = one.GetBlocks().GetArrayNames();
  if (ImGui::Button("add a cut"))
  {
    changed = this->AddDerived(one, zylViewDerived::Shape::Cut) || changed;
  }
  ImGui::SameLine();
  if (ImGui::Button("add an isosurface"))
  {
    changed = this->AddDerived(one, zylViewDerived::Shape::Isosurface) || changed;
  }
  for (const auto& entry : one.GetDerived().GetEntries())
  {
    const std::string name = entry.Kind + " " + std::to_string(entry.Number);
    if (!ImGui::TreeNode(name.c_str()))
    {
      continue;
    }
    changed = zylEditSettings({ entry.Representation->GetProperties() }, arrays) || changed;
    for (const zylDerivedDisplay& display : zylGetDerivedDisplays())
    {
      if (ImGui::TreeNode(display.Name))
      {
        changed = zylEditSettings({ (entry.Representation->*display.Get)() }, arrays) || changed;
        ImGui::TreePop();
      }
    }
    ImGui::TreePop();
  }
  return changed;
}

//--------------------------------------------------------------------------------------------------
// Through the middle of the data, or of the values that color them.
bool Panel::AddDerived(zylViewCase& one, zylViewDerived::Shape shape)
{
  zylViewDerived wish;
  wish.Kind = shape;
  if (shape == zylViewDerived::Shape::Cut)
  {
    double b[6] = { 0, 0, 0, 0, 0, 0 };
    one.GetDataSet()->GetBounds(b);
    wish.Values = { (b[0] + b[1]) / 2.0, (b[2] + b[3]) / 2.0, (b[4] + b[5]) / 2.0, 1.0, 0.0, 0.0 };
  }
  else
  {
    const auto range = one.GetColorRange();
    wish.Variable = one.GetVariable();
    wish.Values = { (range[0] + range[1]) / 2.0 };
  }
  try
  {
    one.GetDerived().Add(wish, this->Scene.GetView());
    this->Message.clear();
    return true;
  }
  catch (const zylViewError& error)
  {
    this->Message = error.what();
    return false;
  }
}

//--------------------------------------------------------------------------------------------------
void Panel::DrawFiles()
{
  if (!ImGui::CollapsingHeader("Open a file"))
  {
    return;
  }
  if (!this->Files)
  {
    this->Files = std::make_unique<zylViewPanelFiles>(std::filesystem::current_path().string());
  }
  const auto files = this->Files->Draw();
  if (!files.empty())
  {
    this->Message = this->Scene.AddFiles(files);
    this->Changed = true;
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::unique_ptr<zylViewPanel> zylNewPanel(GLFWwindow* window, zylViewScene& scene)
{
  return std::make_unique<Panel>(window, scene);
}
