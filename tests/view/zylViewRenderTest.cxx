// The view in the context of a host: pictures, and the host's context and state kept.
#include "zylCore.h"
#include "zylHostTest.h"
#include "zylTestLog.h"
#include "zylView.h"

#include <vtkNew.h>
#include <vtkSMParaViewPipelineControllerWithRendering.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkSmartPointer.h>

class zylViewRender : public zylHostTest
{
protected:
  void SetUp() override
  {
    zylHostTest::SetUp();
    if (this->Host)
    {
      this->View = vtkSmartPointer<zylView>::New();
      this->View->SetSourceFBO(0);
      this->View->SetWindowSize(300, 300);
    }
  }

  // A white sphere of radius 0.5 in the middle, lit from the front.
  void ShowSphere(zylView* view)
  {
    vtkSMSessionProxyManager* manager = zylCore::GetInstance()->GetSessionProxyManager();
    vtkSmartPointer<vtkSMSourceProxy> sphere;
    sphere.TakeReference(
      vtkSMSourceProxy::SafeDownCast(manager->NewProxy("sources", "SphereSource")));
    vtkNew<vtkSMParaViewPipelineControllerWithRendering> controller;
    controller->InitializeProxy(sphere);
    vtkSMPropertyHelper(sphere, "ThetaResolution").Set(64);
    vtkSMPropertyHelper(sphere, "PhiResolution").Set(64);
    sphere->UpdateVTKObjects();
    controller->RegisterPipelineProxy(sphere);
    controller->Show(sphere, 0, view->GetProxy());
    view->SetViewDir(1, false);
  }

  vtkSmartPointer<zylView> View;
};

TEST_F(zylViewRender, DrawsOverTheHostsPicture)
{
  this->ShowSphere(this->View);
  this->Host->Clear(0.0f, 0.0f, 1.0f);
  this->Unchanged("Render", [this] { this->View->Render(); });
  this->Host->WritePicture("/tmp/zylv/picture.png");
  EXPECT_TRUE(this->Host->PixelIs(5, 5, 0, 0, 255));
  EXPECT_FALSE(this->Host->PixelIs(150, 150, 0, 0, 255));
}
