/// @file zylHostFramebuffer.h
/// What is asked of the host's framebuffers. Needs a current context whose functions are loaded.
/// Private to the library.
#ifndef zylHostFramebuffer_h
#define zylHostFramebuffer_h

#include "zylExport.h"

#include <vector>

namespace zylHostFramebuffer {
/// The internal format of the depth buffer that is bound to `target`; 0 when there is none.
ZYL_PRIVATE unsigned int DepthFormat(unsigned int target);

/// While it lives, what is drawn does not land in the host's other color attachments.
class ZYL_PRIVATE SingleDrawBuffer
{
public:
  SingleDrawBuffer();
  ~SingleDrawBuffer();
  SingleDrawBuffer(const SingleDrawBuffer&) = delete;
  SingleDrawBuffer& operator=(const SingleDrawBuffer&) = delete;

private:
  std::vector<unsigned int> Saved;
};
} // namespace zylHostFramebuffer

#endif
