// What a representation shows and answers follows from its data and settings alone: after any
// sequence of changes it is what a new representation with the same settings shows and answers.
#include "zylArrayInformation.h"
#include "zylBoundaryRepresentation.h"
#include "zylDataSet.h"
#include "zylGLObjects.h"
#include "zylHostTest.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylTimeController.h"
#include "zylView.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>

#include <vtkDataSet.h>
#include <vtkDoubleArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>

namespace {
constexpr int Blocks = 3;
constexpr int Size = 300;

using Settings = zylPropertyCollection* (zylBoundaryRepresentation::*)(int);
using Information = vtkSmartPointer<zylArrayInformation> (zylBoundaryRepresentation::*)(int);

const struct
{
  const char* Name;
  Settings GetSettings;
  Information GetInformation;
} Kinds[] = {
  { "surface", &zylBoundaryRepresentation::GetSurfaceProperties,
    &zylBoundaryRepresentation::GetSurfaceColorVariableInformation },
  { "contour", &zylBoundaryRepresentation::GetContourProperties,
    &zylBoundaryRepresentation::GetContourColorVariableInformation },
  { "feature line", &zylBoundaryRepresentation::GetFeatureLineProperties,
    &zylBoundaryRepresentation::GetFeatureLineColorVariableInformation },
  { "mesh line", &zylBoundaryRepresentation::GetMeshLineProperties,
    &zylBoundaryRepresentation::GetMeshLineColorVariableInformation },
  { "glyph", &zylBoundaryRepresentation::GetVectorGlyphProperties,
    &zylBoundaryRepresentation::GetVectorGlyphColorVariableInformation },
};

// Good values and bad ones.
const struct
{
  const char* Name;
  std::vector<std::string> Values;
} Texts[] = {
  { "ColorVariableName",
    { "pressure", "velocity_X", "velocity_Magnitude", "quality", "nothing", "" } },
  { "ColorMapName", { "Cool to Warm", "Grayscale", "KAAMS", "No such map" } },
  { "ColorLegendTitle", { "", "Title" } },
  { "ContourVariableName", { "pressure", "quality", "" } },
  { "VectorVariable", { "velocity", "pressure", "nothing", "quality" } },
  { "ScaleVariable", { "pressure", "nothing" } },
};
const struct
{
  const char* Name;
  std::vector<int> Values;
} Numbers[] = {
  { "ColorMode", { 0, 1, 1 } },
  { "ColorMapStyle", { 0, 1 } },
  { "NumberOfColors", { 5, 0 } },
  { "DisplayStyle", { 0, 0, 1, 2 } },
  { "NumberOfContours", { 5, 1, 0 } },
  { "GlyphSizeMode", { 0, 1 } },
};
const std::vector<std::vector<double>> Ranges = { { 0, 1 }, { 0, 3 }, { 2, 1 } };
const double Times[] = { 0.0, 1.0, 2.5 };
const char* const ClipVariables[] = { "pressure", "velocity_X", "quality", "" };

// The row of cubes, in turn as it is, with an array that is named like a component, and without
// point scalars.
vtkSmartPointer<vtkMultiBlockDataSet> MakeData(int which)
{
  auto data = zylTestData::MakeRow(Blocks);
  for (unsigned int i = 0; i < data->GetNumberOfBlocks() && which != 0; ++i)
  {
    vtkPointData* points = vtkDataSet::SafeDownCast(data->GetBlock(i))->GetPointData();
    if (which == 1)
    {
      vtkNew<vtkDoubleArray> array;
      array->SetName("velocity_X");
      array->SetNumberOfTuples(points->GetNumberOfTuples());
      array->Fill(i);
      points->AddArray(array);
    }
    else
    {
      points->RemoveArray("pressure");
    }
  }
  return data;
}

// A series of these, with every step a little further along y.
const std::string& WriteSeries()
{
  static const std::string file = [] {
    const std::string folder = zylTestData::MakeFolder();
    std::ofstream pvd(folder + "/series.pvd");
    pvd << "<VTKFile type=\"Collection\"><Collection>";
    for (int step = 0; step < 3; ++step)
    {
      auto data = MakeData(step);
      for (unsigned int i = 0; i < data->GetNumberOfBlocks(); ++i)
      {
        vtkPoints* points = vtkPointSet::SafeDownCast(data->GetBlock(i))->GetPoints();
        for (vtkIdType p = 0; p < points->GetNumberOfPoints(); ++p)
        {
          double at[3];
          points->GetPoint(p, at);
          points->SetPoint(p, at[0], at[1] + 0.2 * step, at[2]);
        }
      }
      const std::string name = "step" + std::to_string(step) + ".vtm";
      zylTestData::Write(data, folder + "/" + name);
      pvd << "<DataSet timestep=\"" << Times[step] << "\" file=\"" << name << "\"/>";
    }
    pvd << "</Collection></VTKFile>";
    return folder + "/series.pvd";
  }();
  return file;
}
} // namespace

class zylHistory : public zylHostTest
{
protected:
  using Picture = std::vector<std::array<int, 3>>;

  void SetUp() override
  {
    zylHostTest::SetUp();
    if (!this->Host)
    {
      return;
    }
    this->Host->UseFramebuffer(Size, Size);
    ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(MakeData(0)));
    ASSERT_TRUE(this->Series->LoadFromFile({ WriteSeries() }));
    this->View = this->NewView();
    this->Boundary->SetDataSet(this->Data);
    this->View->AddRepresentation(this->Boundary);
    this->Place(this->View);
  }

  vtkSmartPointer<zylView> NewView()
  {
    auto view = vtkSmartPointer<zylView>::New();
    view->SetSourceFBO(this->Host->GetFramebuffer());
    view->SetWindowSize(Size, Size);
    view->GetLightKitProperties()->Set("UseLight", false);
    view->Update();
    view->SetParallelProjection(true);
    return view;
  }

  void Place(zylView* view)
  {
    view->SetViewDir(1, false);
    view->ResetCamera(0.0, 3.0, -1.0, 2.0, 0.0, 1.0);
  }

  int Draw(int count) { return static_cast<int>(this->Random() % count); }
  template <class Values>
  auto& Choose(const Values& values)
  {
    return values[this->Draw(static_cast<int>(std::size(values)))];
  }

  // One change; what it was, to tell which sequence failed.
  std::string Change()
  {
    const int block = this->Draw(Blocks + 1);
    const auto& kind = this->Choose(Kinds);
    zylPropertyCollection* settings = (this->Boundary->*kind.GetSettings)(block);
    std::ostringstream text;
    text << kind.Name << ' ' << block << ' ';
    const auto set = [&](const char* name, auto value) {
      if (settings->Has(name))
      {
        settings->Set(name, value);
        text << name << ' ' << value;
      }
    };
    switch (this->Draw(14))
    {
      case 0:
      case 1:
        set("Visibility", this->Draw(4) != 0);
        break;
      case 2:
      case 3:
      case 4: {
        const auto& row = this->Choose(Texts);
        set(row.Name, this->Choose(row.Values));
        break;
      }
      case 5:
      case 6: {
        const auto& row = this->Choose(Numbers);
        set(row.Name, this->Choose(row.Values));
        break;
      }
      case 7:
        settings->Set("ColorMapRange", this->Choose(Ranges).data(), 2);
        text << "range";
        break;
      case 8:
        set("ColorLegendVisibility", this->Draw(2) == 0);
        break;
      case 9: {
        const int style = this->Draw(2) ? 1 : 4;
        this->Draw(2) ? this->Boundary->Highlight({ block }, style)
                      : this->Boundary->ClearHighlights();
        text << "highlight " << style;
        break;
      }
      case 10: {
        const bool interpolate = this->Draw(2) == 0;
        this->Data->GetProperties()->Set("InterpolateCellDataToPointData", interpolate);
        this->Data->Update();
        text << "interpolate " << interpolate;
        break;
      }
      case 11:
      case 12:
        text << this->ChangeClip();
        break;
      default:
        text << this->ChangeData();
        break;
    }
    return text.str() + "\n";
  }

  // Other data of this process, or another time of the series.
  std::string ChangeData()
  {
    if (this->Data == this->Series)
    {
      const double time = this->Draw(3) ? this->Choose(Times) : 0.1 * this->Draw(40);
      zylTimeController::GetInstance()->GoToTime(time);
      return "time " + std::to_string(time);
    }
    const int which = this->Draw(3);
    EXPECT_TRUE(this->Data->InitializeFromVTKDataSet(MakeData(which)));
    return "data " + std::to_string(which);
  }

  std::string ChangeClip()
  {
    const int count = this->Boundary->GetNumberOfClips();
    if (count == 0 || this->Draw(4) == 0)
    {
      const int wanted = this->Draw(3);
      this->Boundary->SetNumberOfClips(wanted);
      return "clips " + std::to_string(wanted);
    }
    const int i = this->Draw(count);
    const int mode = this->Draw(6);
    const double place = 0.25 + 0.5 * this->Draw(6);
    zylPropertyCollection* clip = this->Boundary->GetClipProperties(i);
    const double center[] = { place, 0.3, 0.4 };
    const double direction[] = { 1.0, this->Draw(2) ? 0.0 : 1.0, 0.0 };
    clip->Set("ClipMode", mode);
    clip->Set("Invert", this->Draw(2) == 0);
    clip->Set("ScalarVariable", std::string(this->Choose(ClipVariables)));
    clip->Set("ScalarUpperThreshold", place);
    for (const char* name : { "PlaneCenter", "CylinderCenter", "SphereCenter", "BoxLength" })
    {
      clip->Set(name, center, 3);
    }
    clip->Set("PlaneNormal", direction, 3);
    clip->Set("CylinderAxis", direction, 3);
    clip->Set("CylinderRadius", 0.25);
    return "clip " + std::to_string(i) + " mode " + std::to_string(mode) + " by '" +
      clip->GetString("ScalarVariable") + "' at " + std::to_string(place);
  }

  // Every block drawn, colored by an array: so that changes are seen.
  void Start()
  {
    this->Boundary->SetNumberOfClips(0);
    for (int block = 1; block <= Blocks; ++block)
    {
      for (const auto& kind : Kinds)
      {
        zylPropertyCollection* settings = (this->Boundary->*kind.GetSettings)(block);
        settings->Set("Visibility", &kind != &Kinds[2] && this->Draw(2) == 0);
        settings->Set("ColorMode", 1);
        settings->Set("ColorVariableName", std::string("pressure"));
      }
      this->Boundary->GetContourProperties(block)->Set("ContourVariableName", "pressure");
      const double offEdges[] = { 0.1, 2.7 };
      this->Boundary->GetContourProperties(block)->Set("ContourRange", offEdges, 2);
      this->Boundary->GetVectorGlyphProperties(block)->Set("VectorVariable", "velocity");
      this->Boundary->GetVectorGlyphProperties(block)->Set("ScaleFactor", 0.5);
    }
  }

  Picture Render(zylView* view)
  {
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    view->Render();
    Picture picture;
    for (int y = 1; y < Size; y += 4)
    {
      for (int x = 1; x < Size; x += 4)
      {
        picture.push_back(this->Host->Pixel(x, y));
      }
    }
    return picture;
  }

  static std::string Answers(zylBoundaryRepresentation* boundary)
  {
    std::ostringstream text;
    double bounds[6];
    text << boundary->IsVisible() << '\n';
    text << boundary->GetBounds(bounds);
    for (const double bound : bounds)
    {
      text << ' ' << bound;
    }
    for (const auto& kind : Kinds)
    {
      for (int block = 0; block <= Blocks; ++block)
      {
        text << '\n' << kind.Name << ' ' << block;
        if (auto array = (boundary->*kind.GetInformation)(block))
        {
          text << ' ' << array->GetName();
          for (unsigned int c = 0; c <= array->GetNumberOfComponents(); ++c)
          {
            double range[2];
            array->GetComponentRange(c, range);
            text << " [" << range[0] << ", " << range[1] << ']';
          }
        }
      }
    }
    return text.str();
  }

  // Compare with a new representation of the same settings in a view of its own.
  void Compare(const std::string& story)
  {
    this->Boundary->Update();
    const Picture used = this->Render(this->View);
    this->WritePicture(story, "used");
    const std::string answers = Answers(this->Boundary);

    auto view = this->NewView();
    vtkNew<zylBoundaryRepresentation> fresh;
    fresh->SetDataSet(this->Data);
    for (const auto& kind : Kinds)
    {
      for (int block = 0; block <= Blocks; ++block)
      {
        (fresh.Get()->*kind.GetSettings)(block)->DeepCopy(
          (this->Boundary.Get()->*kind.GetSettings)(block));
      }
    }
    fresh->GetHighlightProperties()->DeepCopy(this->Boundary->GetHighlightProperties());
    fresh->SetNumberOfClips(this->Boundary->GetNumberOfClips());
    for (int i = 0; i < fresh->GetNumberOfClips(); ++i)
    {
      fresh->GetClipProperties(i)->DeepCopy(this->Boundary->GetClipProperties(i));
    }
    view->AddRepresentation(fresh);
    this->Place(view);
    EXPECT_TRUE(this->Render(view) == used) << story;
    this->WritePicture(story, "fresh");
    EXPECT_EQ(answers, Answers(fresh)) << story;
    view->RemoveRepresentation(fresh);
  }

  void WritePicture(const std::string& story, const char* name)
  {
    if (const char* folder = std::getenv("ZYL_TEST_PICTURES"))
    {
      const auto lines = std::count(story.begin(), story.end(), '\n');
      this->Host->WritePicture(
        std::string(folder) + "/history" + std::to_string(lines) + name + ".png");
    }
  }

  std::mt19937 Random{ 7 };
  const vtkSmartPointer<zylDataSet> Memory = vtkSmartPointer<zylDataSet>::New();
  const vtkSmartPointer<zylDataSet> Series = vtkSmartPointer<zylDataSet>::New();
  zylDataSet* Data = Memory; // one of these
  vtkNew<zylBoundaryRepresentation> Boundary;
  vtkSmartPointer<zylView> View;
};

//--------------------------------------------------------------------------------------------------
TEST_F(zylHistory, LeavesNoTrace)
{
  const char* wanted = std::getenv("ZYL_TEST_SEQUENCES");
  const int sequences = wanted ? std::atoi(wanted) : 10;
  for (int sequence = 0; sequence < sequences && !this->HasFailure(); ++sequence)
  {
    this->Random.seed(sequence);
    this->Data = sequence % 2 ? this->Series : this->Memory;
    this->Boundary->SetDataSet(this->Data);
    this->Start();
    std::string story = "sequence " + std::to_string(sequence) + "\n";
    for (int step = 0; step < 5 && !this->HasFailure(); ++step)
    {
      for (int i = 0; i < 4; ++i)
      {
        story += this->Change();
        if (i % 2)
        {
          this->Boundary->Update();
        }
      }
      this->Compare(story);
    }
  }
}

// Data that change while they are shown, as over time, do not pile up in the host's context.
TEST_F(zylHistory, KeepsNothingOfFormerData)
{
  this->Start();
  for (int block = 1; block <= Blocks; ++block)
  {
    for (const auto& kind : Kinds)
    {
      (this->Boundary->*kind.GetSettings)(block)->Set("Visibility", true);
    }
  }
  std::vector<int> counts;
  for (int i = 0; i < 6; ++i)
  {
    ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(MakeData(0)));
    this->Boundary->Update();
    this->Render(this->View);
    counts.push_back(zylGLObjects::Count());
  }
  EXPECT_EQ(counts.back(), counts[2]) << ::testing::PrintToString(counts);
}
