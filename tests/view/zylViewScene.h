/// @file zylViewScene.h
/// A view that shows blocks in every way, and the public calls that may make or drop OpenGL
/// objects.
#ifndef zylViewScene_h
#define zylViewScene_h

#include "zylBoundaryRepresentation.h"
#include "zylDataSet.h"
#include "zylSelection.h"
#include "zylView.h"

#include <functional>
#include <vector>

#include <vtkSmartPointer.h>

/// A row of three blocks. The host's context is current when it is made.
struct zylViewScene
{
  zylViewScene() { this->Make(); }

  void Make();
  void ShowBlocks();
  void Color(bool on, bool legend);
  void Style(int style, double transparency);

  vtkSmartPointer<zylDataSet> Data;
  vtkSmartPointer<zylBoundaryRepresentation> Boundary;
  vtkSmartPointer<zylView> View;
  vtkSmartPointer<zylSelection> Selected; // lives longer than what is selected
};

struct zylViewCall
{
  const char* Name;
  std::function<void(zylViewScene&)> Run;
};

/// Every public call that may make or drop OpenGL objects, in an order in which each has some.
std::vector<zylViewCall> zylViewCalls();

#endif
