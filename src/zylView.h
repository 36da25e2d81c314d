/**
 * @class zylView
 * @brief Renders representations into the host application's own OpenGL context.
 *
 * The host owns the window, the context and its framebuffer; the view borrows them for one Render()
 * and hands them back as they were. What the host has drawn, color and depth, is the background:
 *
 *     auto view = vtkSmartPointer<zylView>::New();
 *     view->SetSourceFBO(0);            // the host draws into its window
 *     view->SetWindowSize(800, 600);
 *     view->AddRepresentation(representation);
 *     view->ResetCamera();
 *     // each frame, with the context current and the framebuffer bound:
 *     view->Render();
 *
 * Render(), screenshots, selections and the setup pairs draw in the context that is current. All
 * other calls, of this and the other classes, may come with this context current, another one, or
 * none, and touch no other than the view's: OpenGL objects that they drop while it is not current
 * are deleted at the view's next frame, those of a view that is deleted while another context of
 * its display is current at once. With none current they go with its context.
 *
 * Every call leaves the OpenGL state, the pending error and the host's objects as they were.
 * Transform feedback is paused meanwhile (from OpenGL 4.0 on); queries that are running count what
 * the view draws. What cannot be put aside - a display list being compiled, conditional rendering,
 * a current program that is deleted already - is reported once, and nothing is drawn until it is
 * over.
 *
 * Settings are changed in GetProperties() and GetLightKitProperties() and take effect at Update().
 * One thread; nothing is locked. Without a session the view does nothing and GetProxy() is null.
 */
#ifndef zylView_h
#define zylView_h

#include "zylExport.h"

#include <array>
#include <memory>
#include <string>

#include <vtkObject.h>
#include <vtkSmartPointer.h>

class vtkCallbackCommand;
class vtkCollection;
class vtkGraphicsFactory;
class vtkImageData;
class vtkSMProxy;
class vtkSMRenderViewProxy;
class zylHostView;
class zylPropertyCollection;
class zylRepresentation;
class zylSelection;
class zylShownRepresentations;

class ZYL_EXPORT zylView : public vtkObject
{
public:
  static zylView* New();
  vtkTypeMacro(zylView, vtkObject);

  /// The server-manager view (borrowed); null when there was no session at construction.
  vtkSMRenderViewProxy* GetProxy();

  ///@{
  /// General and light kit settings (borrowed, never null).
  zylPropertyCollection* GetProperties();
  zylPropertyCollection* GetLightKitProperties();
  ///@}

  ///@{
  /// Show a representation (shared) and update it, or take it out. Null, twice, or one that is not
  /// shown: nothing happens.
  void AddRepresentation(zylRepresentation* rep);
  void RemoveRepresentation(zylRepresentation* rep);
  ///@}

  /// The first representation whose dataset was loaded from a file of exactly this name, or null.
  vtkSmartPointer<zylRepresentation> FindRepresentationForFileName(std::string& fileName);

  /// Draw one frame. The host's context is current and its framebuffer bound.
  void Render();

  ///@{
  /// What frames a render: host image in, state put aside; picture out, state back. A call out of
  /// order is reported and carried out all the same.
  void PreRenderSetup();
  void PostRenderCleanup();
  ///@}

  ///@{
  /// The same for a selection, which copies no image. The two kinds of pairs may nest.
  void PreSelectSetup();
  void PostSelectCleanup();
  ///@}

  /// Apply the settings to the view.
  void Update();

  /// Name of the framebuffer object that holds the host's image; 0 is the window, a negative value
  /// the one that is bound for reading. The default is 1.
  void SetSourceFBO(int fbo);
  int GetSourceFBO() { return this->SourceFBO; }

  ///@{
  /// Fit the camera to what is visible, or to a box.
  void ResetCamera();
  void ResetCamera(double xmin, double xmax, double ymin, double ymax, double zmin, double zmax);
  void ResetCameraClippingRange();
  ///@}

  /// Look at `c` against the direction of `n`, starting at c + n; fits the camera and renders. A
  /// zero `n` is an error. Where the view-up direction lies along `n`, an axis takes its place.
  void ResetCameraToNormal(double cx, double cy, double cz, double nx, double ny, double nz);

  /// Look along an axis: 1 is +z, 2 -z, 3 -y, 4 +y, 5 +x, any other -x (where the camera is, seen
  /// from the center of what is visible); `flip` looks from the other side.
  void SetViewDir(int direction, bool flip);

  /// Take the camera from the host's matrices, 16 doubles each, row by row: the model-view matrix
  /// is first x second (either may be null), then the projection as OpenGL defines it, perspective
  /// or orthographic. Matrices that describe no camera are an error and change nothing.
  void SetCameraMatrices(const double* first, const double* second, const double* projection);

  void SetParallelProjection(bool on);
  ///@{
  /// Degrees.
  void Pitch(double angle);
  void Yaw(double angle);
  ///@}
  ///@{
  /// Zoom by a factor. Azimuth() does the same.
  void SetZoom(double factor);
  void Azimuth(double factor);
  ///@}

  /// RGB in [0, 1]. Seen where the host brings no color of its own.
  void SetBackground(double r, double g, double b);

  ///@{
  /// Size in pixels. Without area nothing is drawn; a negative size is an error.
  void SetWindowSize(int w, int h);
  void GetWindowSize(int size[2]);
  ///@}

  /// Draw into a part of the window, in pixels from its lower left corner.
  void SetViewport(int x, int y, int w, int h);

  /// On: render off screen only, and silence the toolkit's messages for good.
  void SetOffScreenRendering(bool on);

  /// Show the orientation axes, from the next Update() on.
  void SetOrientationAxis(bool on);

  ///@{
  /// How far surfaces, lines and points of the same place are kept apart in depth, in all views.
  void SetPolygonalOffset(double factor, double units);
  void SetLineOffset(double factor, double units);
  void SetPointOffset(double units);
  ///@}

  /// Bounds (xmin, xmax, ymin, ...) of the visible representations; false, and an inverted box,
  /// when there is none.
  bool GetBounds(double bounds[6]);

  /// The picture, host image included; null on failure.
  vtkSmartPointer<vtkImageData> CaptureImage();

  /// Write the picture to a file; the extension names the format. False, with a message, on
  /// failure.
  bool SaveScreenshot(const char* fileName);

  ///@{
  /// What lies under a rectangle of pixels, counted from the view's lower left corner, both corners
  /// included and in any order: all blocks, cells or points of which something is to be seen there;
  /// behind a single pixel the nearest. Hidden and clipped parts and what is behind others is not
  /// selected; what is transparent is. Never null; empty when nothing is there, and with a message
  /// when it cannot be told. Draws, in the current context, but leaves the host's picture alone.
  /// The first call after something has changed draws several passes, others a single one.
  vtkSmartPointer<zylSelection> SelectBlocks(int x0, int y0, int x1, int y1);
  vtkSmartPointer<zylSelection> SelectCells(int x0, int y0, int x1, int y1);
  vtkSmartPointer<zylSelection> SelectPoints(int x0, int y0, int x1, int y1);
  ///@}

  /// The point (x, y, z) of the surface under a pixel. False, and `point` untouched, when nothing
  /// is there, and with a message when it cannot be told. Draws as SelectCells() does.
  bool PickPointOnSurface(int x, int y, double point[3]);

  ///@{
  /// Whether what lies behind the host's own geometry is left out of selections and picks. Off, the
  /// default, they look through it. On, the depths that are in the framebuffer object of
  /// SetSourceFBO() at the call count, before Render() or after.
  void SetHostOccludesSelection(bool on) { this->HostOccludesSelection = on; }
  bool GetHostOccludesSelection() { return this->HostOccludesSelection; }
  ///@}

  ///@{
  /// Draw what is selected, of all representations or of `rep` only, in the selection color from
  /// the next Render() on; of each part of a representation the last selection counts. Null does
  /// nothing. Its edges are drawn until ClearHighlight(), or until other settings of the
  /// representation draw its blocks with others. See also
  /// zylBoundaryRepresentation::Highlight(), which stays. Both take and give back the current
  /// context as Render() does, without drawing.
  void HighlightSelection(zylRepresentation* rep, zylSelection* sel);
  void HighlightSelection(zylSelection* sel);
  void ClearHighlight();
  ///@}

protected:
  zylView();
  ~zylView() override;

  static void StartRenderCallback(
    vtkObject* caller, unsigned long event, void* clientData, void* callData);

private:
  zylView(const zylView&) = delete;
  void operator=(const zylView&) = delete;

  using Rectangle = std::array<int, 4>;

  bool CanDraw(const char* operation);
  vtkSmartPointer<zylSelection> Select(int kind, const Rectangle& rectangle);
  const int* GetOccluder() { return this->HostOccludesSelection ? &this->SourceFBO : nullptr; }
  template <class Action>
  void WithCamera(Action action);
  void ShowSelection(zylSelection* sel, vtkCollection* among, const std::string& mark);
  zylRepresentation* GetZYLRepresentation(vtkSMProxy* proxy);

  bool IgnoreHostContext = false;
  int SourceFBO = 1;
  bool HostOccludesSelection = false;
  std::unique_ptr<zylShownRepresentations> Shown;
  vtkSmartPointer<zylPropertyCollection> Properties;
  vtkSmartPointer<zylPropertyCollection> LightKitProperties;
  vtkSmartPointer<vtkGraphicsFactory> GraphicsFactory;
  bool InRenderSetup = false;
  bool InSelectSetup = false;
  vtkSmartPointer<vtkCallbackCommand> StartRenderCommand;
  std::unique_ptr<zylHostView> Host;
};

#endif
