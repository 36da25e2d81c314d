#include "zylViewHelp.h"

#include <vtkTextActor.h>
#include <vtkTextProperty.h>

namespace {
constexpr const char* HelpText = "left drag        turn\n"
                                 "click            select (Ctrl: more, or less)\n"
                                 "Ctrl + drag      select in a rectangle (Shift: more)\n"
                                 "double click     turn about that point\n"
                                 "rest             outline and numbers (Shift + i: off, on)\n"
                                 "i                the numbers on the terminal\n"
                                 "middle drag      pan (also Shift + left)\n"
                                 "wheel            zoom to the cursor\n"
                                 "r                show everything\n"
                                 "0                opening view\n"
                                 "1 ... 6          standard views (Shift: opposite)\n"
                                 "t                free turning, upright turning\n"
                                 "n                next array (Shift: previous)\n"
                                 "m                next color map\n"
                                 "l, e             legend, edges of the mesh\n"
                                 "b                background\n"
                                 "p                picture to a file\n"
                                 "s                save the scene to a file\n"
                                 "F5               read the files again\n"
                                 "right, left      next, previous time step\n"
                                 "space            play, pause\n"
                                 "v                color range of this step (Shift: of all)\n"
                                 "Tab              panel\n"
                                 "h                this help\n"
                                 "c                cancel what is being done\n"
                                 "q, Escape        quit";
} // namespace

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkTextActor> zylNewHelp()
{
  auto help = vtkSmartPointer<vtkTextActor>::New();
  help->SetInput(HelpText);
  help->SetPosition(16, 16);
  vtkTextProperty* text = help->GetTextProperty();
  text->SetFontFamilyToCourier();
  text->SetFontSize(16);
  text->SetColor(1.0, 1.0, 1.0);
  text->SetBackgroundColor(0.1, 0.12, 0.16);
  text->SetBackgroundOpacity(0.75);
  return help;
}
