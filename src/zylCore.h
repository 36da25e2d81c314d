/**
 * @class zylCore
 * @brief The process-wide entry point: starts ParaView's client layer and owns the session.
 *
 * The first GetInstance() initializes ParaView as a client process, creates a built-in session and
 * configures it: the server plugin, the library's proxy definitions, a few settings and the Python
 * interpreter. Connect() replaces the session by one on a server. Every other class reaches the
 * session through GetInstance().
 *
 *     zylCore* core = zylCore::GetInstance();
 *     core->Connect("cs://localhost:11111", 10); // optional
 *     auto dataset = vtkSmartPointer<zylDataSet>::New();
 *
 * All calls come from the one host thread that uses the library. The instance is released at
 * process exit; MPI is not started unless the host has started it.
 */
#ifndef zylCore_h
#define zylCore_h

#include "zylExport.h"

#include <set>
#include <string>
#include <vector>

#include <vtkObject.h>
#include <vtkOutputWindow.h>
#include <vtkSmartPointer.h>

class vtkDataObject;
class vtkSMSession;
class vtkSMSessionProxyManager;
class vtkSMSourceProxy;
class zylView;

class ZYL_EXPORT zylCore : public vtkObject
{
public:
  vtkTypeMacro(zylCore, vtkObject);

  /// The singleton (borrowed, never null), made on the first call.
  static zylCore* GetInstance();

  /// Plain construction without start-up; applications use GetInstance().
  static zylCore* New();

  ///@{
  /// The current session (borrowed) and its proxy manager; null before a successful start-up and
  /// after Disconnect().
  vtkSMSession* GetSession();
  vtkSMSessionProxyManager* GetSessionProxyManager();
  ///@}

  /// Replace the session by one on the server at `url` ("cs://host:port"), trying for at most
  /// `timeout` seconds to reach it, or by a new built-in one ("builtin:", always succeeds).
  ///
  /// When the server cannot be reached an error is logged. A built-in session then stays, with
  /// everything in it; a session on another server has been ended first, and there is none: check
  /// GetSession().
  ///
  /// Objects made in a session cannot be used once it has ended or its server is gone: their calls
  /// fail with an error ("the session in which it was made has ended", "the connection to the
  /// server is lost"), what they hold in this process (settings, the block tree, numbers) can still
  /// be asked for. Drop them, and make new ones in the next session.
  void Connect(const char* url, int timeout);

  /// End the session, if any. Connect("builtin:", 0) starts a built-in one again.
  void Disconnect();

  ///@{
  /// Seconds for which a call waits for a server that neither sends nor takes anything; then the
  /// connection is given up as if the server had died. 0: for ever. The default is 300: a server
  /// that works on something long may be silent, and looks like one that hangs. A machine or a
  /// network that has gone is noticed after half a minute whatever the limit.
  static void SetServerTimeLimit(int seconds);
  static int GetServerTimeLimit();
  ///@}

  ///@{
  /// The views alive in this process (borrowed). Views register themselves.
  void RegisterView(zylView* view);
  void UnRegisterView(zylView* view);
  std::set<zylView*>& GetRegisteredViews() { return this->RegisteredViews; }
  ///@}

  ///@{
  /// Load a plugin file into this process, or into the server of the session. False on failure.
  static bool LoadPlugin(const char* path);
  static bool LoadRemotePlugin(const char* path);
  ///@}

  /// Log to the file `name` (everything up to trace level when `verbose`, else warnings and errors)
  /// and the toolkit's error output to `name`.vtk.txt. Null does nothing.
  static void SetLogFile(const char* name, bool verbose);

  /// Silence every message of the toolkit and of the library, and stop the log file.
  static void SuppressWarnings();

  /// Set an environment variable of this process and say so on the standard output.
  static void SetEnvironmentVariable(const char* name, const char* value);

  ///@{
  /// The version: "0.2.0".
  static const char* GetZYLVersion();
  static int GetZYLMajorVersion();
  static int GetZYLMinorVersion();
  static int GetZYLBuildVersion();
  ///@}

  /// One description per file type the session can read, such as "VTK MultiBlock Files (*.vtm)".
  /// The last one the reader factory names is not listed.
  static std::vector<std::string> GetSupportedFileTypes();

  /// The names of the color-map presets, in preset order.
  static std::vector<std::string> GetAvailableColorMapNames();

  /// The data of output port 0 of `source`, brought to this process. `postGatherHelperName` names
  /// the algorithm that combines the parts of a parallel server (null: the first process's part).
  /// Filters are brought to the animation's time first; a source without input, such as a reader,
  /// is fetched at the time at which it was executed last. Null without source or session.
  static vtkSmartPointer<vtkDataObject> Fetch(
    vtkSMSourceProxy* source, const char* postGatherHelperName);

  /// 0 if `source` has a point array of that name, else 1 if it has such a cell array, else -1.
  static int GetArrayAssociation(const char* arrayName, vtkSMSourceProxy* source);

  /// List the registered readers, sources and filters on the standard output; whether there was
  /// any.
  static bool PrintObjects();

  /// List what is upstream of `source` on the standard output.
  static void PrintPipeline(vtkSMSourceProxy* source);

  /// Default color of highlighted and selected things, RGB in [0, 1].
  static double SelectionColor[3];
  /// The log file's name, empty when there is none.
  static std::string LogFile;
  /// Name of the default color map.
  static std::string DefaultColorMapName;

protected:
  zylCore();
  ~zylCore() override;

  /// Start the client layer and a built-in session. False when the arguments only asked for help.
  bool Initialize(int argc, char** argv);
  void ConfigureSession(vtkSMSession* session);
  void UseBuiltInSession();

  vtkSmartPointer<vtkSMSession> Session;
  std::set<zylView*> RegisteredViews;

private:
  zylCore(const zylCore&) = delete;
  void operator=(const zylCore&) = delete;

  bool Started = false; // this instance has brought ParaView up and takes it down
};

/// An output window that swallows everything.
class ZYL_EXPORT vtkSuppressOutputWindow : public vtkOutputWindow
{
public:
  static vtkSuppressOutputWindow* New();
  vtkTypeMacro(vtkSuppressOutputWindow, vtkOutputWindow);
  void DisplayText(const char*) override {}

protected:
  vtkSuppressOutputWindow() = default;
  ~vtkSuppressOutputWindow() override = default;

private:
  vtkSuppressOutputWindow(const vtkSuppressOutputWindow&) = delete;
  void operator=(const vtkSuppressOutputWindow&) = delete;
};

/// Releases the singleton when the last translation unit that includes this header is torn down.
class ZYL_EXPORT zylSingletonCleaner
{
public:
  zylSingletonCleaner();
  ~zylSingletonCleaner();
  zylSingletonCleaner(const zylSingletonCleaner&) = delete;
  void operator=(const zylSingletonCleaner&) = delete;
};
static const zylSingletonCleaner zylSingletonCleanerInstance;

#endif
