// The files of a scene: loading, saving, what is in them.
#include "zylViewBlocks.h"
#include "zylViewCamera.h"
#include "zylViewCase.h"
#include "zylViewError.h"
#include "zylViewLoader.h"
#include "zylViewMessages.h"
#include "zylViewNumbers.h"
#include "zylViewOptions.h"
#include "zylViewProgress.h"
#include "zylViewScene.h"
#include "zylViewState.h"

#include <filesystem>
#include <optional>
#include <utility>

#include <zylCore.h>
#include <zylDataSet.h>
#include <zylView.h>

//--------------------------------------------------------------------------------------------------
void zylViewScene::Load()
{
  zylViewLoader loader(this->Options, this->Messages, this->Times, this->Alive);
  loader.Connect();
  if (this->State != nullptr)
  {
    this->LoadScene();
  }
  else
  {
    loader.NameSample();
    this->LoadFiles(this->Options);
  }
  zylViewProgress progress("loading the time step", this->Alive);
  this->GoToTime();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::LoadFiles(const zylViewOptions& all)
{
  for (const auto& files : zylGroupFiles(all))
  {
    zylViewOptions options = all;
    options.Files = files;
    auto dataset = zylViewLoader(options, this->Messages, this->Times, this->Alive).Load();
    this->Cases.push_back(std::make_unique<zylViewCase>(options, dataset));
  }
}

//--------------------------------------------------------------------------------------------------
// What cannot be loaded is said; the rest of the scene is shown all the same.
void zylViewScene::LoadScene()
{
  std::optional<zylViewError> failure;
  for (std::size_t i = 0; i < this->State->GetNumberOfDataSets(); ++i)
  {
    zylViewOptions options = this->State->GetDataSet(i, this->Options);
    options.Restored = i;
    try
    {
      zylViewLoader loader(options, this->Messages, this->Times, this->Alive);
      loader.NameSample();
      auto dataset = loader.Load();
      this->Cases.push_back(std::make_unique<zylViewCase>(options, dataset));
      this->State->RestoreDataSet(i, *this->Cases.back());
    }
    catch (const zylViewError& error)
    {
      if (failure)
      {
        zylSay(failure->what());
      }
      failure.emplace(error);
    }
  }
  if (failure && this->Cases.empty())
  {
    throw zylViewError(*failure);
  }
  if (failure)
  {
    zylSay(failure->what());
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::PrintList()
{
  for (const auto& one : this->Cases)
  {
    zylPrintDataSet(one->GetDataSet());
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::PrintNumbers()
{
  for (const auto& one : this->Cases)
  {
    if (one->GetOptions().Measures())
    {
      zylPrintNumbers(one->GetOptions(), one->GetBlocks(), one->GetDataSet(), one->GetDerived());
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::SaveState(const std::string& file)
{
  zylViewOptions options = this->Options;
  options.Samples = this->PixelRatio;
  options.Width = this->Width / this->PixelRatio;
  options.Height = this->Height / this->PixelRatio;
  if (!zylViewState::Write(file, this->Cases, this->View, *this->Camera, options))
  {
    throw zylViewError(zylViewFailed, "cannot write '" + file + "'");
  }
}

//--------------------------------------------------------------------------------------------------
std::string zylViewScene::GetName() const
{
  std::string names;
  for (const auto& one : this->Cases)
  {
    const auto& files = one->GetOptions().Files;
    names += names.empty() ? "" : ", ";
    names += std::filesystem::path(files.front()).filename().string();
    names += files.size() > 1 ? " ..." : "";
  }
  return names;
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Reload()
{
  zylViewProgress progress("reading the files again", this->Alive);
  for (const auto& one : this->Cases)
  {
    one->Reload();
  }
  if (this->IsCanceled())
  {
    zylSay("the files are not read again: canceled");
  }
  this->ShowTime();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::AddFiles(const std::vector<std::string>& files)
{
  const std::size_t before = this->Cases.size();
  try
  {
    zylViewOptions options = this->Options.OfWindow();
    options.Files = files;
    this->LoadFiles(options);
    for (std::size_t i = before; i < this->Cases.size(); ++i)
    {
      zylViewCase& one = *this->Cases[i];
      one.ReadBlocks();
      one.ChooseLook();
      one.Derive();
      one.MakeBoundary();
      one.AddTo(this->View);
    }
    if (this->Options.Sample)
    {
      this->Options.Sample = false;
      this->Cases.front()->RemoveFrom(this->View);
      this->Cases.erase(this->Cases.begin());
      this->Camera->Follow(this->Cases.front()->GetOptions());
    }
  }
  catch (const zylViewError& error)
  {
    for (std::size_t i = before; i < this->Cases.size(); ++i)
    {
      this->Cases[i]->RemoveFrom(this->View);
    }
    this->Cases.resize(before);
    zylSay(error.what());
  }
  this->Update();
  this->OpenCamera();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::SavePicture(const std::string& file)
{
  if (!this->View->SaveScreenshot(file.c_str()))
  {
    throw zylViewError(zylViewFailed, "cannot write '" + file + "'");
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::OpenState(const std::string& file)
{
  auto state = std::make_unique<zylViewState>(file);
  if (state->GetServer() != this->Options.Connect)
  {
    throw zylViewError(
      zylViewFailed, "'" + file + "' is of another server: open it with zylview --state");
  }
  zylViewOptions options = this->Options.OfWindow();
  options.Given = { "--size", "--samples", "--connect" };
  state->GetWindow(options);
  auto cases = std::exchange(this->Cases, {});
  const zylViewState* before = std::exchange(this->State, state.get());
  std::swap(this->Options, options);
  try
  {
    this->LoadScene();
    for (const auto& one : this->Cases)
    {
      one->Define();
      one->ReadBlocks();
    }
    this->GoToTime();
    for (const auto& one : this->Cases)
    {
      one->ReadBlocks();
      one->Derive();
      one->MakeBoundary();
      state->RestoreDisplays(*one->GetOptions().Restored, *one);
      one->ShowNewBlocks();
    }
  }
  catch (const zylViewError&)
  {
    std::swap(this->Options, options);
    std::swap(this->Cases, cases);
    this->State = before;
    throw;
  }
  for (const auto& one : cases)
  {
    one->RemoveFrom(this->View);
  }
  for (const auto& one : this->Cases)
  {
    one->AddTo(this->View);
  }
  this->Opened = std::move(state);
  this->Grounds.clear();
  this->Camera->Follow(this->Cases.front()->GetOptions());
  this->Update();
  this->Opened->RestoreView(this->View, *this->Camera);
}
