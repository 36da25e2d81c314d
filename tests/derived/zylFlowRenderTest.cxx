#include "zylFlowData.h"
#include "zylHostTest.h"
#include "zylStreamlineRepresentation.h"

class zylFlowRender : public zylHostTest
{
};

//--------------------------------------------------------------------------------------------------
// A green line along x through the middle of the picture, with one large red sphere on it.
TEST_F(zylFlowRender, DrawsLinesAndGlyphs)
{
  const auto data = zylLoad(zylFlowData::Make(zylFlowData::Uniform));
  auto view = zylMakeFlatView();
  vtkNew<zylStreamlineRepresentation> lines;
  zylPropertyCollection* shown = lines->GetSurfaceProperties();
  zylSet(shown, "Visibility", true, "Color", zylValues{ 0, 1, 0 }, "TubeRadius", 5.0,
    "GlyphVisibility", true, "GlyphColor", zylValues{ 1, 0, 0 });
  zylSet(lines->GetProperties(), "GlyphSpaceEvenly", true, "GlyphSpacing", 1.2, // at -0.6 and 0.6
    "GlyphScaleFactor", 0.5);
  zylFlowData::Trace(lines, data, { 0.0, 0.0, 0.0 });
  view->AddRepresentation(lines);
  view->SetViewDir(1, false);
  view->ResetCamera(-1.0, 1.0, -1.0, 1.0, -1.0, 1.0);
  const auto count = [this](bool red) {
    int pixels = 0;
    for (int i = 0; i < 300 * 300; i += 7)
    {
      const auto p = this->Host->Pixel(i % 300, i / 300);
      pixels += p[2] < 50 && (p[0] > 100) == red && (p[1] > 100) == !red;
    }
    return pixels;
  };
  const struct
  {
    const char* What;
    std::function<void()> Change;
    bool Glyphs, Lines;
  } steps[] = {
    { "both", [] {}, true, true },
    { "no glyphs", [&] { shown->Set("GlyphVisibility", false); }, false, true },
    { "glyphs alone", [&] { zylSet(shown, "GlyphVisibility", true, "Visibility", false); }, true,
      false },
    { "hidden", [&] { shown->Set("Visibility", true), lines->Hide(); }, false, false },
    { "shown", [&] { lines->Show(); }, true, true },
    { "freed", [&] { lines->FreeResources(); }, false, false },
    { "again", [] {}, true, true },
  };
  for (const auto& step : steps)
  {
    SCOPED_TRACE(step.What);
    step.Change();
    if (step.What != std::string("freed"))
    {
      lines->Update();
    }
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    this->Unchanged("Render", [&] { view->Render(); });
    EXPECT_TRUE(step.Glyphs ? count(true) > 50 : count(true) == 0);
    EXPECT_TRUE(step.Lines ? count(false) > 20 : count(false) == 0);
  }
}
