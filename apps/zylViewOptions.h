/// @file zylViewOptions.h
/// What the command line of zylview says, checked for form only; whether arrays, blocks and files
/// exist is found out later.
#ifndef zylViewOptions_h
#define zylViewOptions_h

#include "zylViewDerivedForms.h"
#include "zylViewForms.h"

#include <array>
#include <optional>
#include <set>
#include <string>
#include <vector>

struct zylViewOptions
{
  std::vector<std::string> Files; ///< empty: the built-in sample
  std::string ReaderGroup;        ///< empty: chosen by the file
  std::string ReaderName;
  std::string Connect;

  std::vector<std::pair<std::string, std::string>> Definitions; ///< name, expression

  bool List = false;
  bool ListColorMaps = false;
  bool ListFileTypes = false;

  std::string Output; ///< empty: a window
  int Width = 1200;
  int Height = 800;
  int Samples = 2; ///< pixels of the framebuffer for one of the picture, each way
  std::array<double, 3> BackgroundTop{ 0.56, 0.66, 0.78 };
  std::array<double, 3> BackgroundBottom{ 0.95, 0.96, 0.98 };

  bool Plain = false;                  ///< nothing but what is asked for
  std::string State;                   ///< a scene to open; empty: none
  std::string SaveState;               ///< where to save the scene at the end; empty: nowhere
  bool Trust = false;                  ///< expressions in the scene may be any program
  std::set<std::string> Given;         ///< the options that the user has written
  std::optional<std::size_t> Restored; ///< which dataset of the scene this is

  std::string Array; ///< empty: solid colors
  std::optional<std::array<double, 2>> Range;
  std::string ColorMap;          ///< empty: the library's default
  std::optional<bool> Legend;    ///< none: where colors want one
  int LegendPlace = 2;           ///< as the library counts them; 2 is the lower right corner
  bool DirectColors = false;     ///< the array has red, green and blue; set when that is known
  bool Fit = false;              ///< fill the window; set for flat data
  std::optional<double> Opacity; ///< none: 1, and no surfaces where something is derived
  bool MeshLines = false;
  bool FeatureLines = false;
  std::string ContourArray; ///< empty: none
  int NumberOfContours = 10;
  std::string GlyphArray; ///< empty: none
  double GlyphScale = 1.0;
  std::vector<zylViewClip> Clips;
  std::vector<zylViewSetting> BlockSettings;
  std::vector<zylViewDerived> Derived;      ///< kind by kind, each in the user's order
  std::vector<zylViewSetting> KindSettings; ///< of what is derived or measured
  bool Demo = false;
  bool Sample = false; ///< the built-in sample is shown; set when it is loaded

  std::optional<double> Time;
  int View = 0;                              ///< 0: a view from above one corner
  std::optional<std::array<double, 3>> From; ///< direction from the data to the eye
  std::array<double, 3> Up{ 0.0, 0.0, 1.0 };
  double Zoom = 1.0;

  bool Integrate = false;
  std::vector<std::pair<std::string, int>> Histograms; ///< variable, number of bins
  std::vector<double> ProbePoints;                     ///< x, y, z, ...
  bool PrintJson = false;
  /// Whether a window without anything of the user's in it shows the demonstration.
  bool ShowsDemo() const
  {
    return this->Output.empty() && !this->List && !this->Plain && !this->Measures() &&
      this->Derived.empty();
  }
  bool Measures() const
  {
    return this->Integrate || !this->Histograms.empty() || !this->ProbePoints.empty();
  }

  /// What holds whatever is shown in the window.
  zylViewOptions OfWindow() const
  {
    zylViewOptions own;
    own.Connect = this->Connect;
    own.Output = this->Output;
    own.Width = this->Width;
    own.Height = this->Height;
    own.Samples = this->Samples;
    own.BackgroundTop = this->BackgroundTop;
    own.BackgroundBottom = this->BackgroundBottom;
    own.SaveState = this->SaveState;
    own.Trust = this->Trust;
    own.Log = this->Log;
    own.Verbose = this->Verbose;
    own.Stats = this->Stats;
    own.Frames = this->Frames;
    return own;
  }

  std::string Log;
  bool Verbose = false;
  bool Stats = false;
  int Frames = 0; ///< close the window after so many; 0: when the user does
};

/// Fill `options` from the command line. Returns true when the program shall go on; otherwise help,
/// the version or a message has been printed and `exitCode` is set.
bool zylParseViewOptions(int argc, const char* const* argv, zylViewOptions& options, int& exitCode);

#endif
