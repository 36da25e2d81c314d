#include "Host/zylHostObstacle.h"

#include "Host/zylHostErrors.h"
#include "Host/zylHostPixelState.h"

#include <vtk_glew.h>

namespace {
int GetInt(GLenum name)
{
  GLint value = 0;
  glGetIntegerv(name, &value);
  return value;
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::string zylFindHostObstacle()
{
  const zylHostErrors errors;
  const int version = 10 * GetInt(GL_MAJOR_VERSION) + GetInt(GL_MINOR_VERSION);
  if (zylHostPixelState::IsCompatible() && GetInt(GL_LIST_INDEX) != 0)
  {
    return "a display list is being compiled";
  }
  const GLuint program = GetInt(GL_CURRENT_PROGRAM);
  GLint deleted = GL_FALSE;
  if (program)
  {
    glGetProgramiv(program, GL_DELETE_STATUS, &deleted);
  }
  if (deleted)
  {
    return "the current program is deleted as soon as another one is used";
  }
  // The rest cannot be asked for, but calls that change nothing fail while it is so.
  zylHostErrors::Clear();
  glBeginConditionalRender(0, GL_QUERY_WAIT);
  if (glGetError() == GL_INVALID_OPERATION)
  {
    return "conditional rendering is active";
  }
  if (version < 40)
  {
    glUseProgram(program);
    if (glGetError() == GL_INVALID_OPERATION)
    {
      return "transform feedback is active";
    }
  }
  return "";
}
