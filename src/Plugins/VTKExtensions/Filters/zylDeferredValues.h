/**
 * @class zylDeferredValues
 * @brief Cell values of blocks that are brought into memory only while a block is worked on.
 *
 * A reader that feeds a filter which visits every block once need not hold all values of all blocks
 * at a time. It delivers such arrays with their name, type and number of tuples but without memory
 * (GetVoidPointer() is null), and the filter asks here, block by block, from several threads.
 * Private to the plugin.
 */
#ifndef zylDeferredValues_h
#define zylDeferredValues_h

#include <memory>

class vtkAbstractArray;
class vtkImageData;

class zylDeferredValues
{
public:
  /// Memory for the values of one block at a time, used again for the next; one for each thread.
  class Buffer
  {
  public:
    virtual ~Buffer() = default;
    /// The values of one of the block's arrays without memory; null if it is none of them.
    virtual const char* GetValues(vtkAbstractArray* array) const = 0;
  };

  virtual ~zylDeferredValues() = default;

  virtual std::unique_ptr<Buffer> MakeBuffer() const = 0;

  /// Bring all deferred values of `image` into `buffer`, which MakeBuffer() made. False when they
  /// cannot be read.
  virtual bool Read(vtkImageData* image, Buffer& buffer) const = 0;
};

#endif
