/// @file zylViewRenderFixture.h
/// A view of a sphere in a host's window, and what its pictures must show.
#ifndef zylViewRenderFixture_h
#define zylViewRenderFixture_h

#include "zylHostTest.h"
#include "zylTest.h"

#include <array>

#include <vtkSMParaViewPipelineControllerWithRendering.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSessionProxyManager.h>

// A light sphere of radius 0.5 in the middle, seen along -z; its nearest point is at depth 0.09.
inline vtkSmartPointer<vtkSMProxy> ShowSphere(zylView* view)
{
  vtkSMSessionProxyManager* manager = zylCore::GetInstance()->GetSessionProxyManager();
  vtkSmartPointer<vtkSMSourceProxy> sphere;
  sphere.TakeReference(
    vtkSMSourceProxy::SafeDownCast(manager->NewProxy("sources", "SphereSource")));
  vtkNew<vtkSMParaViewPipelineControllerWithRendering> controller;
  controller->InitializeProxy(sphere);
  vtkSMPropertyHelper(sphere, "ThetaResolution").Set(64);
  vtkSMPropertyHelper(sphere, "PhiResolution").Set(64);
  vtkSMPropertyHelper(sphere, "Center").Set(2, -2.0); // the eye is at the origin
  sphere->UpdateVTKObjects();
  controller->RegisterPipelineProxy(sphere);
  vtkSmartPointer<vtkSMProxy> shown = controller->Show(sphere, 0, view->GetProxy());
  // near 1, far 4, 45 degrees
  const double t = 1.0 / std::tan(M_PI / 8);
  const double projection[16] = { t, 0, 0, 0, 0, t, 0, 0, 0, 0, -5.0 / 3, -8.0 / 3, 0, 0, -1, 0 };
  view->SetCameraMatrices(nullptr, nullptr, projection);
  return shown;
}

// Depth in [0, 1] of a point at distance z, by the projection above.
inline float DepthAt(double z)
{
  return static_cast<float>(((5.0 / 3 * z - 8.0 / 3) / z + 1) / 2);
}

class zylViewRender : public zylHostTest
{
protected:
  void Prepare() override { this->View = zylMakeView(); }
  void TearDown() override
  {
    this->View = nullptr;
    zylHostTest::TearDown();
  }

  // Blue background; a red quad nearer than the sphere on the left, a green one behind it on the
  // right.
  void PaintScene()
  {
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    this->Host->DrawQuad({ -1, -0.5f, 0, 0.5f }, DepthAt(1.2), { 1, 0, 0 });
    this->Host->DrawQuad({ 0, -0.5f, 1, 0.5f }, DepthAt(3.5), { 0, 1, 0 });
  }

  // That scene with the sphere in it, in a picture of `size` pixels.
  void ExpectScene(const std::string& what, int size = 300, bool depth = true)
  {
    const int half = size / 2;
    const int tenth = size / 10;
    EXPECT_TRUE(this->Host->PixelIs(2, 2, 0, 0, 255)) << what << ": background";
    EXPECT_TRUE(this->Host->PixelIs(half - tenth, half, 255, 0, 0)) << what << ": near quad";
    EXPECT_TRUE(this->Host->PixelIs(size - 3, half, 0, 255, 0)) << what << ": far quad";
    for (const std::array<int, 2> at :
      { std::array<int, 2>{ half + tenth, half }, { half - tenth, half + size * 27 / 100 } })
    {
      const std::array<int, 3> pixel = this->Host->Pixel(at[0], at[1]);
      EXPECT_TRUE(pixel[0] > 90 && pixel[1] > 90 && pixel[2] > 90)
        << what << ": sphere, " << pixel[0] << ' ' << pixel[1] << ' ' << pixel[2];
    }
    if (depth)
    {
      EXPECT_NEAR(this->Host->Depth(half + 1, half), DepthAt(1.5), 2e-3) << what;
      EXPECT_NEAR(this->Host->Depth(half - tenth, half), DepthAt(1.2), 1e-4) << what;
      EXPECT_NEAR(this->Host->Depth(size - 3, half), DepthAt(3.5), 1e-4) << what;
      EXPECT_NEAR(this->Host->Depth(2, 2), 1.0, 1e-6) << what;
    }
  }

  void Render()
  {
    this->Unchanged("Render", [this] { this->View->Render(); });
  }
  void RenderScene()
  {
    this->View->SetSourceFBO(this->Host->GetFramebuffer());
    this->PaintScene();
    this->Render();
  }
  // The scene, painted and rendered, is what is to be seen.
  void CheckScene(const std::string& what, int size = 300)
  {
    this->RenderScene();
    this->ExpectScene(what, size);
  }
  bool IsLight(int x, int y)
  {
    const auto pixel = this->Host->Pixel(x, y);
    return pixel[0] > 90 && pixel[1] > 90;
  }

  std::vector<std::array<int, 3>> Picture()
  {
    std::vector<std::array<int, 3>> pixels;
    for (int y = 0; y < 300; y += 7)
    {
      for (int x = 0; x < 300; x += 7)
      {
        pixels.push_back(this->Host->Pixel(x, y));
      }
    }
    return pixels;
  }

  vtkSmartPointer<zylView> View;
};

#endif
