#include "zylViewPanel.h"

//--------------------------------------------------------------------------------------------------
std::unique_ptr<zylViewPanel> zylNewPanel(GLFWwindow*, zylViewScene&)
{
  return nullptr;
}
