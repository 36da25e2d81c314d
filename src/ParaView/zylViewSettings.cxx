#include "ParaView/zylViewSettings.h"

#include "ParaView/zylPropertyTable.h"
#include "zylPropertyCollection.h"

#include <vtkLogger.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>
#include <vtkSMSessionProxyManager.h>

namespace {
constexpr zylPropertyRow GeneralRows[] = {
  zylPropertyRow::Bool("RenderAnnotations", false).To("ShowAnnotation"),
  zylPropertyRow::Int("RemoteRenderThreshold", 20).To("RemoteRenderThreshold"),
  zylPropertyRow::Int("NetworkPreset", 2), // see Compressors
};

constexpr zylPropertyRow LightKitRows[] = {
  zylPropertyRow::Bool("UseLight", true),
  zylPropertyRow::Double("KeyLightWarmth", 0.6),
  zylPropertyRow::Double("KeyLightIntensity", 0.75),
  zylPropertyRow::Double("KeyLightElevation", 50),
  zylPropertyRow::Double("KeyLightAzimuth", 10),
  zylPropertyRow::Double("FillLightWarmth", 0.4),
  zylPropertyRow::Double("FillLightK:F Ratio", 3),
  zylPropertyRow::Double("FillLightElevation", -75),
  zylPropertyRow::Double("FillLightAzimuth", -10),
  zylPropertyRow::Double("BackLightWarmth", 0.5),
  zylPropertyRow::Double("BackLightK:B Ratio", 3.5),
  zylPropertyRow::Double("BackLightElevation", 0),
  zylPropertyRow::Double("BackLightAzimuth", 110),
  zylPropertyRow::Double("HeadLightWarmth", 0.5),
  zylPropertyRow::Double("HeadLightK:H Ratio", 3),
  zylPropertyRow::Bool("MaintainLuminance", false),
};

// "CompressorConfig" for the network presets 1 to 5.
constexpr const char* Compressors[] = { "vtkZlibImageCompressor 0 9 3 1",
  "vtkZlibImageCompressor 0 6 2 0", "vtkLZ4Compressor 0 5", "vtkLZ4Compressor 0 3", "" };
constexpr int CompressorCount = sizeof(Compressors) / sizeof(Compressors[0]);
} // namespace

//--------------------------------------------------------------------------------------------------
void zylViewSettings::Declare(zylPropertyCollection* general, zylPropertyCollection* lightKit)
{
  zylDeclare(general, GeneralRows);
  zylDeclare(lightKit, LightKitRows);
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::Push(
  zylPropertyCollection* general, zylPropertyCollection* lightKit, vtkSMProxy* view)
{
  zylPush(general, GeneralRows, view);
  if (general->Has("NetworkPreset"))
  {
    const int preset = general->GetInt("NetworkPreset");
    if (preset >= 1 && preset <= CompressorCount)
    {
      vtkSMPropertyHelper(view, "CompressorConfig").Set(Compressors[preset - 1]);
    }
  }
  for (const std::string& name : lightKit->GetPropertyNames())
  {
    zylPushProperty(lightKit->GetProperty(name), view, name.c_str());
  }
  view->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::SetOffset(
  vtkSMSessionProxyManager* manager, const char* name, const std::vector<double>& values)
{
  vtkSMProxy* settings = manager ? manager->GetProxy("settings", "RenderViewSettings") : nullptr;
  if (!settings)
  {
    vtkLogF(ERROR, "No RenderViewSettings found");
    return;
  }
  vtkSMPropertyHelper(settings, name).Set(values.data(), static_cast<unsigned int>(values.size()));
  settings->UpdateVTKObjects();
}
