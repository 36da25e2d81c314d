/// @file zylViewLegend.h
/// Legends as large as the window makes them readable, a margin away from its edges. The library
/// leaves their sizes to the host, who knows the window.
#ifndef zylViewLegend_h
#define zylViewLegend_h

class zylPropertyCollection;
class zylRepresentation;
class zylView;

/// The legends of all that `representation` shows, of the sizes and at the place that `settings`
/// (the display that has the legend; null: nothing is done) has for a window of 1200 x 800. Call
/// again after every update and change of size, in pixels of which `pixelRatio` make up one of a
/// usual screen, each way.
void zylFitLegends(zylView* view, zylRepresentation* representation,
  zylPropertyCollection* settings, int width, int height, int pixelRatio);

#endif
