/**
 * @class zylTimeController
 * @brief The process-wide owner of the time of everything shown.
 *
 * Drives the animation scene and the time keeper of the session and announces every change of time
 * to its observers: event TimeChangedEvent (no call data) is invoked on the controller, and each
 * zylDataSet updates itself in response. Observers ask GetActiveTime(), which reads the scene.
 *
 * Failures are generic warnings of the toolkit; nothing is changed then.
 */
#ifndef zylTimeController_h
#define zylTimeController_h

#include "zylExport.h"

#include <vector>

#include <vtkObject.h>

class vtkSMAnimationSceneProxy;
class vtkSMProxy;

class ZYL_EXPORT zylTimeController : public vtkObject
{
public:
  vtkTypeMacro(zylTimeController, vtkObject);

  /// The singleton (borrowed, never null), made on the first call and released at process exit.
  static zylTimeController* GetInstance();

  /// Plain construction; applications use GetInstance().
  static zylTimeController* New();

  /// Invoked on the controller whenever it moves the time.
  static constexpr unsigned long TimeChangedEvent = 3219;

  /// The time of the animation scene; without a scene the last known time, 1e299 if there is none.
  double GetActiveTime();

  /// The time steps of all data of the session, ascending. Empty without session or data.
  std::vector<double> GetTimestepValues();

  ///@{
  /// Move to a time step. At either end the time stays, and the event is raised all the same.
  void GoToFirstTimeStep();
  void GoToLastTimeStep();
  void GoToNextTimeStep();
  void GoToPreviousTimeStep();
  ///@}

  /// Move to a time, which is not snapped here: every dataset shows its nearest time step. Nothing
  /// happens when it is the active time already.
  void GoToTime(double time);

  /// Re-apply the active time to the time keeper and the scene. No event.
  void Update();

  /// Let the animation scene play over the time steps of the data, as after a load.
  void UseDataTimeSteps();

  /// Collect the time steps of all sources anew.
  void UpdateTimeInformation();

protected:
  zylTimeController();
  ~zylTimeController() override;

private:
  zylTimeController(const zylTimeController&) = delete;
  void operator=(const zylTimeController&) = delete;

  void Step(const char* command);

  double ActiveTime = 1e299;
};

/// Releases the singleton when the last translation unit that includes this header is torn down.
class ZYL_EXPORT zylTimeControllerSingletonCleaner
{
public:
  zylTimeControllerSingletonCleaner();
  ~zylTimeControllerSingletonCleaner();
  zylTimeControllerSingletonCleaner(const zylTimeControllerSingletonCleaner&) = delete;
  void operator=(const zylTimeControllerSingletonCleaner&) = delete;
};
static const zylTimeControllerSingletonCleaner zylTimeControllerSingletonCleanerInstance;

#endif
