#include "zylViewOptions.h"

#include "zylViewError.h"
#include "zylViewUsage.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <tuple>

#include <CLI/CLI.hpp>

namespace {
//--------------------------------------------------------------------------------------------------
[[noreturn]] void Bad(const std::string& message)
{
  throw zylViewError(zylViewBadArguments, message);
}

template <std::size_t N>
std::array<double, N> Tuple(const std::string& text, const char* option)
{
  const auto values = zylParseNumbers(text, N, std::string(option) + " " + text);
  std::array<double, N> tuple{};
  std::copy(values.begin(), values.end(), tuple.begin());
  return tuple;
}

void SetSize(const std::string& text, zylViewOptions& options)
{
  char rest = 0;
  if (std::sscanf(text.c_str(), "%dx%d%c", &options.Width, &options.Height, &rest) != 2 ||
    options.Width < 1 || options.Height < 1 || options.Width > 16384 || options.Height > 16384)
  {
    Bad("--size '" + text + "' is not of the form WIDTHxHEIGHT (1 to 16384)");
  }
}

void SetBackground(const std::string& text, zylViewOptions& options)
{
  const auto colon = text.find(':');
  options.BackgroundTop = Tuple<3>(text.substr(0, colon), "--background");
  options.BackgroundBottom = colon == std::string::npos
    ? options.BackgroundTop
    : Tuple<3>(text.substr(colon + 1), "--background");
}

void SetReader(const std::string& text, zylViewOptions& options)
{
  const auto slash = text.find('/');
  if (slash == std::string::npos || slash == 0 || slash + 1 == text.size())
  {
    Bad("--reader '" + text + "' is not of the form GROUP/NAME");
  }
  options.ReaderGroup = text.substr(0, slash);
  options.ReaderName = text.substr(slash + 1);
}

void SetRange(const std::string& text, zylViewOptions& options)
{
  options.Range = Tuple<2>(text, "--range");
  if (!((*options.Range)[0] < (*options.Range)[1]))
  {
    Bad("--range '" + text + "' is empty: the first number must be the smaller one");
  }
}

void SetUp(const std::string& text, zylViewOptions& options)
{
  const std::string axes = "xyz";
  const auto axis = text.empty() ? std::string::npos : axes.find(text.back());
  if (axis != std::string::npos && (text.size() == 1 || (text.size() == 2 && text[0] == '-')))
  {
    options.Up = {};
    options.Up[axis] = text.size() == 1 ? 1.0 : -1.0;
    return;
  }
  options.Up = Tuple<3>(text, "--up");
  if (options.Up == std::array<double, 3>{})
  {
    Bad("--up '" + text + "' is no direction");
  }
}

void SetContours(const std::string& text, zylViewOptions& options)
{
  std::tie(options.ContourArray, options.NumberOfContours) =
    zylParseNameAndCount(text, "--contours", 2, 1000, "the number of contour lines");
}

void SetGlyphs(const std::string& text, zylViewOptions& options)
{
  std::tie(options.GlyphArray, options.GlyphScale) = zylParseNameAndNumber(text, "--glyphs");
}

// A repeated option comes as one text, a line for each time: calls add(line) for each.
template <class Function>
auto EachLine(Function add)
{
  return [add](const std::string& text) {
    for (const std::string& line : CLI::detail::split(text, '\n'))
    {
      add(line);
    }
  };
}

//--------------------------------------------------------------------------------------------------
void AddDerivedOptions(CLI::App& app, zylViewOptions& o)
{
  const char* const group = "Derived";
  for (const zylViewDerivedForm& form : zylGetDerivedForms())
  {
    const auto add = [&o, shape = form.Shape](const std::string& text) {
      const auto derived = zylParseDerived(shape, text);
      o.Derived.insert(o.Derived.end(), derived.begin(), derived.end());
    };
    app.add_option_function<std::string>(form.Option, EachLine(add), form.Help)
      ->join()
      ->type_name(form.Form)
      ->group(group);
  }
  const auto set = [&o](const std::string& text) {
    o.KindSettings.push_back(zylParseKindSetting(text));
  };
  app.add_option_function<std::string>("--set", EachLine(set), "Setting of a kind, see below")
    ->join()
    ->type_name("KIND.PROPERTY=VALUE")
    ->group(group);
}

//--------------------------------------------------------------------------------------------------
void AddNumberOptions(CLI::App& app, zylViewOptions& o)
{
  const char* const group = "Numbers (without --output no window is opened)";
  app
    .add_flag(
      "--integrate", o.Integrate, "Integrals of all arrays over the data and over what is derived")
    ->group(group);
  const auto histogram = [&o](const std::string& text) {
    o.Histograms.push_back(
      zylParseNameAndCount(text, "--histogram", 1, 10000000, "the number of bins"));
  };
  app
    .add_option_function<std::string>("--histogram", EachLine(histogram),
      "How many points have values in each bin; default: over --range or the array's range")
    ->join()
    ->type_name("NAME:BINS")
    ->group(group);
  const auto probe = [&o](const std::string& text) {
    const auto point = zylParseNumbers(text, 3, "--probe " + text);
    o.ProbePoints.insert(o.ProbePoints.end(), point.begin(), point.end());
  };
  app.add_option_function<std::string>("--probe", EachLine(probe), "Values at a point")
    ->join()
    ->type_name("X,Y,Z")
    ->group(group);
  app.add_flag("--json", o.PrintJson, "Print the numbers for machines")->group(group);
}

//--------------------------------------------------------------------------------------------------
void AddDataOptions(CLI::App& app, zylViewOptions& o)
{
  const char* const group = "Data";
  app.add_option("FILES", o.Files,
    "Result files; those of one kind are one series, other kinds stand beside it");
  app.option_defaults()->take_last(); // what is written twice is corrected
  app
    .add_option_function<std::string>(
      "--reader", [&o](const std::string& t) { SetReader(t, o); },
      "Reader to use, GROUP/NAME, as sources/PVDReader; default: by the file")
    ->group(group);
  app.add_option("--connect", o.Connect, "Server to load on, as cs://host:11111")->group(group);
  app
    .add_option_function<double>(
      "--time", [&o](double t) { o.Time = t; }, "Time to show; the nearest time step is taken")
    ->group(group);
  const auto define = [&o](const std::string& line) {
    o.Definitions.push_back(zylParseDefinition(line));
  };
  app
    .add_option_function<std::string>("--define", EachLine(define),
      "New point variable from others, as 'speed=mag(Velocity)' (repeatable)")
    ->join()
    ->type_name("NAME=EXPRESSION")
    ->group(group);
  app.add_flag("--list", o.List, "List blocks, arrays, ranges and time steps, and exit")
    ->group(group);
  app.add_flag("--list-colormaps", o.ListColorMaps, "List the color maps, and exit")->group(group);
  app.add_flag("--list-file-types", o.ListFileTypes, "List readable file types, and exit")
    ->group(group);
}

//--------------------------------------------------------------------------------------------------
void AddDisplayOptions(CLI::App& app, zylViewOptions& o)
{
  const char* const group = "Display";
  const auto text = [&](const char* name, void (*set)(const std::string&, zylViewOptions&),
                      const char* help) {
    const auto call = [&o, set](const std::string& t) { set(t, o); };
    return app.add_option_function<std::string>(name, call, help)->group(group);
  };
  app.add_option("--array", o.Array, "Color by NAME, or by NAME_X, _Y, _Z or _Magnitude")
    ->group(group);
  text("--range", SetRange, "Color range LOW,HIGH; default: the array's range in the shown blocks");
  app.add_option("--colormap", o.ColorMap, "Color map, see --list-colormaps")->group(group);
  const auto legend = [&o](std::int64_t count) { o.Legend = count > 0; };
  app.add_flag_function("--legend,!--no-legend", legend, "Show the color legend, or none")
    ->group(group);
  app.add_flag("--plain", o.Plain, "Solid gray surfaces, no legend: nothing but what is asked for")
    ->group(group);
  app
    .add_option_function<double>(
      "--opacity", [&o](double opacity) { o.Opacity = opacity; },
      "Opacity of the blocks' surfaces, 0 to 1")
    ->check(CLI::Range(0.0, 1.0))
    ->group(group);
  app.add_flag("--mesh-lines", o.MeshLines, "Draw the mesh")->group(group);
  app.add_flag("--feature-lines", o.FeatureLines, "Draw sharp edges and borders")->group(group);
  text("--contours", SetContours, "NAME:N, N contour lines of a point array over its range");
  text("--glyphs", SetGlyphs, "NAME:SCALE, arrows along a point vector array, SCALE long");
  const auto clip = [&o](const std::string& line) { o.Clips.push_back(zylParseClip(line)); };
  app.add_option_function<std::string>("--clip", EachLine(clip), "Cut away, see below")
    ->join()
    ->group(group);
  const auto block = [&o](const std::string& line) {
    o.BlockSettings.push_back(zylParseBlockSetting(line));
  };
  app
    .add_option_function<std::string>(
      "--block", EachLine(block), "Setting of single blocks, see below")
    ->join()
    ->group(group);
  app
    .add_flag("--demo", o.Demo,
      "Choose colors, contours, arrows and a clip that suit the data, where not given")
    ->group(group);
}

//--------------------------------------------------------------------------------------------------
void AddPictureOptions(CLI::App& app, zylViewOptions& o)
{
  const char* const group = "Picture";
  app.add_option("--output", o.Output, "Write a PNG instead of opening a window; needs no display")
    ->group(group);
  app
    .add_option_function<std::string>(
      "--size", [&o](const std::string& t) { SetSize(t, o); },
      "Size of window or picture in pixels, WIDTHxHEIGHT; default 1200x800")
    ->group(group);
  app
    .add_option_function<std::string>(
      "--background", [&o](const std::string& t) { SetBackground(t, o); },
      "R,G,B from 0 to 1, or two colors TOP:BOTTOM")
    ->group(group);
  app.add_option("--samples", o.Samples, "Smooth the edges of a picture: N x N samples a pixel")
    ->check(CLI::Range(1, 8))
    ->capture_default_str()
    ->group(group);
  app
    .add_option("--view", o.View,
      "Standard view: 1 from +z, 2 from -z, 3 from -y, 4 from +y, 5 from +x, 6 from -x")
    ->check(CLI::Range(1, 6))
    ->group(group);
  app
    .add_option_function<std::string>(
      "--from", [&o](const std::string& t) { o.From = Tuple<3>(t, "--from"); },
      "Look from this direction, X,Y,Z")
    ->group(group);
  app
    .add_option_function<std::string>(
      "--up", [&o](const std::string& t) { SetUp(t, o); },
      "What is up: x, y, z, -x, -y, -z or a direction X,Y,Z; default z")
    ->group(group);
  app.add_option("--zoom", o.Zoom, "Magnify the fitted view")
    ->check(CLI::Range(0.01, 1000.0))
    ->group(group);
}

//--------------------------------------------------------------------------------------------------
void AddSceneOptions(CLI::App& app, zylViewOptions& o)
{
  const char* const group = "Scene";
  app.add_option("--state", o.State, "Open a saved scene; FILES take the place of those it names")
    ->group(group);
  app.add_option("--save-state", o.SaveState, "Save the scene at the end, as JSON")->group(group);
  app
    .add_flag("--trust", o.Trust,
      "Run any program that the scene's variables are made of, not only arithmetic")
    ->group(group);
}

// A scene says what is shown; how it is opened, where and by whom it is looked at is left open.
void CheckScene(const CLI::App& app, zylViewOptions& options)
{
  const std::set<std::string> open{ "--state", "--save-state", "--trust", "--output", "--size",
    "--samples", "--background", "--connect", "--time", "--log", "--verbose", "--stats", "--frames",
    "FILES" };
  for (const CLI::Option* option : app.get_options())
  {
    const std::string name = option->get_name();
    if (option->count() > 0)
    {
      options.Given.insert(name);
      if (!options.State.empty() && open.count(name) == 0)
      {
        Bad(name + " does not go with --state: the scene says what is shown");
      }
    }
  }
}

//--------------------------------------------------------------------------------------------------
void AddReportOptions(CLI::App& app, zylViewOptions& o)
{
  const char* const group = "Reports";
  app.add_option("--log", o.Log, "Write the library's log to FILE (and FILE.vtk.txt)")
    ->group(group);
  app.add_flag("--verbose", o.Verbose, "Print the library's messages; with --log, trace it too")
    ->group(group);
  app.add_flag("--stats", o.Stats, "Print the times of load, update, first frame and frame")
    ->group(group);
  app.add_option("--frames", o.Frames, "Close the window after so many frames")
    ->check(CLI::Range(1, 1000000))
    ->group(group);
  const auto version = [] {
    std::puts("zylview " ZYL_APP_VERSION);
    throw CLI::Success();
  };
  app.add_flag_callback("--version", version, "Print the version and exit")->group(group);
}
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylParseViewOptions(int argc, const char* const* argv, zylViewOptions& options, int& exitCode)
{
  CLI::App app{ zylViewDescription, "zylview" };
  app.footer(zylViewFooter);
  AddDataOptions(app, options);
  AddDisplayOptions(app, options);
  AddDerivedOptions(app, options);
  AddNumberOptions(app, options);
  AddPictureOptions(app, options);
  AddSceneOptions(app, options);
  AddReportOptions(app, options);
  try
  {
    app.parse(argc, argv);
    CheckScene(app, options);
    return true;
  }
  catch (const CLI::Success& success)
  {
    exitCode = app.exit(success);
  }
  catch (const CLI::ParseError& error)
  {
    std::string text = error.what();
    text = text.substr(0, text.find('\n'));
    std::fprintf(stderr, "zylview: %s (see zylview --help)\n", text.c_str());
    exitCode = zylViewBadArguments;
  }
  catch (const zylViewError& error)
  {
    std::fprintf(stderr, "zylview: %s (see zylview --help)\n", error.what());
    exitCode = error.Code;
  }
  return false;
}
