/// @file zylSelectionScene.h
/// A dataset in a view, seen from the front, to select in.
#ifndef zylSelectionScene_h
#define zylSelectionScene_h

#include "zylBoundaryRepresentation.h"
#include "zylHostTest.h"
#include "zylSelection.h"
#include "zylTest.h"
#include "zylView.h"

using zylIds = std::vector<int>;
constexpr double zylRowCenter[3] = { 1.5, 0.5, 0.5 };

// A dataset, shown in a view of its own.
struct zylSelectionScene
{
  vtkSmartPointer<zylDataSet> Data = vtkSmartPointer<zylDataSet>::New();
  vtkSmartPointer<zylBoundaryRepresentation> Boundary =
    vtkSmartPointer<zylBoundaryRepresentation>::New();
  vtkSmartPointer<zylView> View;

  explicit zylSelectionScene(vtkMultiBlockDataSet* data)
  {
    this->Data->InitializeFromVTKDataSet(data);
  }
  explicit zylSelectionScene(const std::string& file) { this->Data->LoadFromFile({ file }); }

  // All leaves, seen from the front; in parallel projection, `width` units fill a square view.
  void Show(int size, double width, const double center[3])
  {
    this->Boundary->SetDataSet(this->Data);
    for (const unsigned int block : this->Data->GetBlockIDs())
    {
      this->Surface(block)->Set("Visibility", true);
    }
    this->View = zylMakeView(size, size);
    this->View->AddRepresentation(this->Boundary);
    this->View->SetViewDir(1, false);
    this->View->SetParallelProjection(true);
    this->View->ResetCamera(
      center[0] - 1, center[0] + 1, center[1] - 1, center[1] + 1, center[2] - 1, center[2] + 1);
    this->View->SetZoom(2.0 * std::sqrt(3.0) / width);
  }
  zylPropertyCollection* Surface(int block) { return this->Boundary->GetSurfaceProperties(block); }
  zylIds Blocks(int x0, int y0, int x1, int y1)
  {
    return this->View->SelectBlocks(x0, y0, x1, y1)->GetBlocks(this->Boundary);
  }
  zylIds Blocks(int x, int y) { return this->Blocks(x, y, x, y); }
};

// Three unit cubes of 2 x 2 x 2 cells side by side, block 1 on the left. They fill a view in width:
// in one of 300 pixels each takes 100, from 100 upwards.
class zylSelectionRender : public zylHostTest
{
protected:
  void Prepare() override
  {
    this->Row = std::make_unique<zylSelectionScene>(zylTestData::MakeRow(3));
    this->Row->Show(300, 3.0, zylRowCenter);
  }
  void TearDown() override
  {
    this->Row = nullptr;
    zylHostTest::TearDown();
  }

  // Colors and depths at some places.
  std::vector<float> Picture(int size = 300, bool depths = true)
  {
    std::vector<float> values;
    for (int i = 5; i < size; i += size / 10)
    {
      for (int j = 5; j < size; j += size / 10)
      {
        const auto color = this->Host->Pixel(i, j);
        values.insert(values.end(), color.begin(), color.end());
        values.push_back(depths ? this->Host->Depth(i, j) : 0.0f);
      }
    }
    return values;
  }

  std::unique_ptr<zylSelectionScene> Row;
};

#endif
