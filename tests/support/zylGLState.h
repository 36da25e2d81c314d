/// @file zylGLState.h
/// The whole OpenGL state that a host can see in its context, as text, to compare before and after.
///
///     const zylGLState before = zylGLState::Read();
///     view->Render();
///     EXPECT_EQ("", zylGLState::Read().Difference(before));
#ifndef zylGLState_h
#define zylGLState_h

#include <string>
#include <utility>
#include <vector>

class zylGLState
{
public:
  /// Of the current context; the functions must be loaded. Leaves no error behind and changes
  /// nothing.
  static zylGLState Read();

  /// One line for each value that differs: "name: other -> this". Empty when nothing does.
  std::string Difference(const zylGLState& other) const;

  std::size_t Size() const { return this->Values.size(); }

private:
  std::vector<std::pair<std::string, std::string>> Values;
};

#endif
