/// @file zylGLObjects.h
/// Objects of a host in its context: of every kind, with names from 1 on as far as they are free,
/// so that whoever deletes by the names of another context hits them.
///
///     const zylGLObjects objects(200);
///     representation->Update();
///     EXPECT_EQ("", objects.Missing());
#ifndef zylGLObjects_h
#define zylGLObjects_h

#include <string>
#include <vector>

class zylGLObjects
{
public:
  /// Makes `count` of each kind in the current context, which is left as it was.
  explicit zylGLObjects(int count);
  ~zylGLObjects(); ///< leaves them to the context
  zylGLObjects(const zylGLObjects&) = delete;
  zylGLObjects& operator=(const zylGLObjects&) = delete;

  /// One line for each object that does not exist any more or, for buffers, holds something else.
  /// The context must be current, and is left as it was.
  std::string Missing() const;

  /// A name of a kind, such as "vertex array".
  unsigned int Name(const std::string& kind, std::size_t index) const;

  /// How many objects of any kind have a name below `limit` in the current context.
  static int Count(unsigned int limit = 4096);

private:
  std::vector<std::vector<unsigned int>> Names;
};

#endif
