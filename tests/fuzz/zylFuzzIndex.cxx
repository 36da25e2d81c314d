#include "zylFuzz.h"

#include "zylTimeStepIndex.h"

#include <cmath>
#include <cstdlib>

void zylFuzzIndex(const std::uint8_t* data, std::size_t size)
{
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::vector<zylTimeStep> steps;
  std::vector<std::string> errors;
  const bool good = zylParseTimeStepIndex(text, steps, errors);
  if (!good && (errors.size() != 1 || !steps.empty()))
  {
    std::abort();
  }
  for (const zylTimeStep& step : steps)
  {
    if (!std::isfinite(step.Time) || steps[zylNearestTimeStep(steps, step.Time)].Time != step.Time)
    {
      std::abort();
    }
  }
}
